#include "editor/viewport.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <cmath>

#include "editor/main_window.h"
#include "view/gl.h"

namespace mw {
namespace {

// A cursor coordinate at or past one edge of the screen jumps to just inside the other.
bool WrapToOtherEdge(int& coord, int low, int high) {
    if (coord >= high) {
        coord = low + 1;
    } else if (coord <= low) {
        coord = high - 1;
    } else {
        return false;
    }
    return true;
}

}  // namespace

Viewport::Viewport(frmOOF& window, QWidget* parent) : QOpenGLWidget(parent), window_(window) {
    setMouseTracking(true);
    setMinimumSize(200, 150);
}

Viewport::~Viewport() {
    if (glReady_) {
        makeCurrent();
        renderer_.ReleaseGL();
        doneCurrent();
    }
}

void Viewport::initializeGL() {
    if (!renderer_.InitGLState()) window_.Notice("Failure creating Fonts");
    glReady_ = true;
    window_.ViewportReady();
}

void Viewport::resizeGL(int, int) {}

FrameInput Viewport::Input() const {
    FrameInput in;
    in.camera = camera_;
    in.display = window_.display();
    in.selection = window_.selection();
    in.curFrame = window_.curFrame();
    in.viewAngles = window_.viewAngles();
    return in;
}

void Viewport::paintGL() {
    const qreal ratio = devicePixelRatioF();
    const ModelData& model = window_.model();
    renderer_.ResizeViewport(static_cast<int>(std::lround(width() * ratio)),
                             static_cast<int>(std::lround(height() * ratio)),
                             ProjectionPlanes(camera_.Zoom, model.Header.Radius));
    renderer_.RenderFrame(model, Input());
}

int Viewport::PickAt(int x, int y) {
    if (!glReady_) return -1;
    makeCurrent();
    FrameInput in = Input();
    const qreal ratio = devicePixelRatioF();
    in.pick = true;
    in.mouseX = static_cast<int>(std::lround(x * ratio));
    in.mouseY = static_cast<int>(std::lround(y * ratio));
    renderer_.ResizeViewport(static_cast<int>(std::lround(width() * ratio)),
                             static_cast<int>(std::lround(height() * ratio)),
                             ProjectionPlanes(camera_.Zoom, window_.model().Header.Radius));
    renderer_.RenderFrame(window_.model(), in);
    doneCurrent();
    update();
    return renderer_.PickedSubObject();
}

void Viewport::FitView() {
    camera_.FitView(window_.model().Header.Radius);
    update();
}

void Viewport::SetModeCursor(ViewMode mode) {
    switch (mode) {
        case ViewMode::Selection:
            setCursor(Qt::ArrowCursor);
            break;
        case ViewMode::Zoom:
            setCursor(Qt::SizeVerCursor);
            break;
        case ViewMode::Rotate:
            setCursor(Qt::ClosedHandCursor);
            break;
        case ViewMode::Pan:
            setCursor(Qt::SizeAllCursor);
            break;
    }
}

void Viewport::mousePressEvent(QMouseEvent* e) {
    const float x = static_cast<float>(std::lround(e->position().x()));
    const float y = static_cast<float>(std::lround(e->position().y()));
    button_ = e->button();
    dragging_ = false;
    camera_.Anchor(x, y);
    if (e->button() == Qt::RightButton) {
        emit contextMenuRequested(e->globalPosition().toPoint());
        return;
    }
    if (e->button() == Qt::LeftButton && window_.display().Mode == ViewMode::Selection &&
        window_.selection().modelReady) {
        window_.SelectSubObject(PickAt(static_cast<int>(x), static_cast<int>(y)));
    }
}

void Viewport::WrapCursor(bool horizontal, bool vertical) {
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) return;
    const QRect area = screen->geometry();
    int x = QCursor::pos().x(), y = QCursor::pos().y();
    const bool movedX = horizontal && WrapToOtherEdge(x, area.left(), area.right());
    const bool movedY = vertical && WrapToOtherEdge(y, area.top(), area.bottom());
    reanchorX_ = reanchorX_ || movedX;
    reanchorY_ = reanchorY_ || movedY;
    if (movedX || movedY) QCursor::setPos(x, y);
}

void Viewport::mouseMoveEvent(QMouseEvent* e) {
    const float x = static_cast<float>(std::lround(e->position().x()));
    const float y = static_cast<float>(std::lround(e->position().y()));
    if (e->buttons() == Qt::NoButton) button_ = Qt::NoButton;
    if (button_ != Qt::LeftButton) return;
    const ViewMode mode = window_.display().Mode;
    if (mode == ViewMode::Selection) {
        if (!window_.selection().modelReady || window_.selection().curSOBJ == -1) return;
        dragging_ = true;
        window_.HoverSubObject(PickAt(static_cast<int>(x), static_cast<int>(y)));
        return;
    }
    // The first move after a wrap continues from where the cursor came back in.
    if (reanchorX_) {
        camera_.ReanchorX(x);
        reanchorX_ = false;
    }
    if (reanchorY_) {
        camera_.ReanchorY(y);
        reanchorY_ = false;
    }
    camera_.Drag(mode, x, y, window_.model().Header.Radius);
    WrapCursor(mode != ViewMode::Zoom, true);
    update();
}

void Viewport::mouseReleaseEvent(QMouseEvent* e) {
    if (button_ == Qt::LeftButton) {
        window_.DropSubObject(dragging_, (e->modifiers() & Qt::ShiftModifier) != 0);
    }
    button_ = Qt::NoButton;
    dragging_ = false;
}

}  // namespace mw
