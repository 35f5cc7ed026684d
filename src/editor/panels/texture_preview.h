// The textures panel's picture: one of the viewport's model textures drawn in an OpenGL
// widget of its own, whose context shares the viewport's textures. After each picture the
// viewport's context is made current again; when that fails the user is told to save and
// quit, since the viewport can no longer draw.
#pragma once

#include <QOpenGLWidget>
#include <functional>

namespace mw {

class Prompts;
class Viewport;

// The lines of the message shown when the viewport's context cannot be restored.
QString RestoreFailureMessage();

class TexturePreview : public QOpenGLWidget {
    Q_OBJECT
  public:
    TexturePreview(Viewport& viewport, Prompts& prompts, QWidget* parent = nullptr);

    // The model texture to show; -1 clears the picture.
    void SetTexture(int t);
    int texture() const { return texture_; }

    // Makes the viewport's context current again; true when that worked. Tests replace it.
    std::function<bool()> restoreViewport;

  protected:
    void initializeGL() override;
    void paintGL() override;

  private:
    void RestoreViewport();

    Viewport& viewport_;
    Prompts& prompts_;
    int texture_ = -1;
    bool drawn_ = false;
};

}  // namespace mw
