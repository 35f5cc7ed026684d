// The textures panel's picture: one model texture drawn in an OpenGL widget of its own, from
// the pictures the model's textures hold (uploaded into this widget's own context).
#pragma once

#include <QOpenGLWidget>

#include "view/renderer.h"

namespace mw {

class ModelTextures;

class TexturePreview : public QOpenGLWidget {
    Q_OBJECT
  public:
    explicit TexturePreview(const ModelTextures& textures, QWidget* parent = nullptr);
    ~TexturePreview() override;

    // The model texture to show; -1 clears the picture.
    void SetTexture(int t);
    int texture() const { return texture_; }

  protected:
    void initializeGL() override;
    void paintGL() override;

  private:
    const ModelTextures& textures_;
    Renderer renderer_;
    int texture_ = -1;
    int uploaded_ = -1;  // the texture the context holds
    bool glReady_ = false;
};

}  // namespace mw
