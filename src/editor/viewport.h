// The main viewport: the renderer in a QOpenGLWidget, steered with the mouse in the four
// modes (Selection, Zoom, Rotate, Pan), with picking and dragging of sub-objects. It owns the
// camera and the rotator angles and follows everything else: the document (a new model fits
// the camera, an edit rebuilds what it changed, display settings apply), the model's textures
// (uploaded as they change) and the playback timer (animated textures, rotators).
#pragma once

#include <QOpenGLWidget>
#include <vector>

#include "gamedata/texture_loader.h"
#include "view/animation.h"
#include "view/renderer.h"

namespace mw {

class Document;
class ModelTextures;
class Playback;
class Prompts;

class Viewport : public QOpenGLWidget {
    Q_OBJECT
  public:
    Viewport(Document& doc, const ModelTextures& textures, Playback& playback, Prompts& prompts,
             QWidget* parent = nullptr);
    ~Viewport() override;

    Renderer& renderer() { return renderer_; }
    Camera& camera() { return camera_; }
    const std::vector<float>& viewAngles() const { return viewAngles_; }
    bool glReady() const { return glReady_; }

    // Fits the camera to the model and redraws.
    void FitView();
    // Draws one frame with picking at a pixel and returns the sub-object there, or -1.
    int PickAt(int x, int y);

    // Selection-mode mouse handling, as the mouse events drive it.
    void HoverSubObject(int s);
    void DropSubObject(bool dragging, bool shift);

  signals:
    void contextMenuRequested(QPoint globalPos);

  protected:
    void initializeGL() override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

  private:
    void connectSignals();
    // The model's textures and lists, once there is a context.
    void UploadTextures();
    void UploadGlow();
    void LoadBackground();
    void FollowDisplay();
    void ShowModeCursor();
    // One tick of the animation timer: animated textures and rotators move; redraws when
    // something moved.
    void Advance(float elapsed);
    void RebuildLists(const std::vector<int>& records);
    void FollowRadius();
    FrameInput Input() const;
    void WrapCursor(bool horizontal, bool vertical);

    Document& doc_;
    const ModelTextures& textures_;
    Prompts& prompts_;
    Renderer renderer_;
    Camera camera_;
    // The textures as shown: their animation clocks run here.
    LoadedTextures shown_;
    DisplaySettings applied_;  // the display the GL state was last set for
    std::vector<float> viewAngles_;
    float fittedRadius_ = 0.0f;
    Qt::MouseButton button_ = Qt::NoButton;
    bool dragging_ = false;
    bool reanchorX_ = false, reanchorY_ = false;
    bool glReady_ = false;
};

}  // namespace mw
