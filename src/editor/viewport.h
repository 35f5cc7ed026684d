// The main viewport: the renderer in a QOpenGLWidget, steered with the mouse in the four
// modes (Selection, Zoom, Rotate, Pan), with picking and dragging of sub-objects.
#pragma once

#include <QOpenGLWidget>
#include <functional>

#include "view/renderer.h"

namespace mw {

class frmOOF;

class Viewport : public QOpenGLWidget {
    Q_OBJECT
  public:
    explicit Viewport(frmOOF& window, QWidget* parent = nullptr);
    ~Viewport() override;

    Renderer& renderer() { return renderer_; }
    Camera& camera() { return camera_; }

    // Fits the camera to the model and redraws.
    void FitView();
    // Draws one frame with picking at a pixel and returns the sub-object there, or -1.
    int PickAt(int x, int y);
    // Sets the cursor of a mouse mode.
    void SetModeCursor(ViewMode mode);

  signals:
    void contextMenuRequested(QPoint globalPos);

  protected:
    void initializeGL() override;
    void resizeGL(int w, int h) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

  private:
    FrameInput Input() const;
    void WrapCursor(bool horizontal, bool vertical);

    frmOOF& window_;
    Renderer renderer_;
    Camera camera_;
    Qt::MouseButton button_ = Qt::NoButton;
    bool dragging_ = false;
    bool reanchorX_ = false, reanchorY_ = false;
    bool glReady_ = false;
};

}  // namespace mw
