#include "editor/widgets/vector_control.h"

#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "math/vector.h"

namespace mw {
namespace {

double Sign(double v) {
    return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0);
}

}  // namespace

double DialAngleAt(DialKind kind, double x, double y, int w, int h) {
    double dx = kind == DialKind::LeftRight ? x - (w - 1) / 2.0 : x;
    double dy = (h - 1) / 2.0 - y;
    if (kind == DialKind::UpDown && x < 0) {
        dx = 0;
        dy = Sign(dy);
    }
    if (dx == 0) return 90.0 * Sign(dy);
    double angle = std::atan(dy / dx) * kDegreesPerRadian;
    if (dx < 0) angle += 180.0 * Sign(dy + 0.0000001);
    return angle;
}

double SnapDialAngle(double degrees) {
    const double m = std::fabs(degrees);
    double snapped = 180.0;
    if (m < 22.5) {
        snapped = 0.0;
    } else if (m < 57.5) {
        snapped = 45.0;
    } else if (m < 112.5) {
        snapped = 90.0;
    } else if (m < 157.5) {
        snapped = 135.0;
    }
    return degrees < 0 ? -snapped : snapped;
}

QPointF DialLineStart(DialKind kind, int w, int h) {
    return kind == DialKind::LeftRight ? QPointF((w - 1) / 2.0, (h - 1) / 2.0)
                                       : QPointF(0, (h - 1) / 2.0);
}

QPointF DialLineEnd(DialKind kind, double degrees, int w, int h) {
    const double a = degrees / kDegreesPerRadian;
    if (kind == DialKind::LeftRight)
        return {(w - 1) / 2.0 * (1 + std::cos(a)), (h - 1) / 2.0 * (1 - std::sin(a))};
    return {(w - 1) * std::cos(a), (h - 1) / 2.0 - (w - 1) * std::sin(a)};
}

VectorControl::VectorControl(DialKind kind, QWidget* parent) : QWidget(parent), kind_(kind) {
    setMinimumSize(48, 48);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::CrossCursor);
    setFocusPolicy(Qt::NoFocus);
}

void VectorControl::SetAngle(double degrees) {
    if (angle_ == degrees) return;
    angle_ = degrees;
    update();
}

void VectorControl::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const int w = width(), h = height();
    p.fillRect(rect(), palette().base());
    p.setPen(QPen(palette().mid().color(), 1));
    const QPointF centre = DialLineStart(kind_, w, h);
    // The dial: its rim, its cross lines and the 45-degree marks.
    if (kind_ == DialKind::LeftRight) {
        const double r = (w - 1) / 2.0;
        p.drawEllipse(centre, r - 1, r - 1);
        p.drawLine(QPointF(0, centre.y()), QPointF(w - 1, centre.y()));
        p.drawLine(QPointF(centre.x(), 0), QPointF(centre.x(), h - 1));
    } else {
        const double r = w - 2;
        p.drawEllipse(centre, r, r);
        p.drawLine(centre, QPointF(w - 1, centre.y()));
    }
    p.setPen(QPen(palette().midlight().color(), 1, Qt::DotLine));
    for (double mark : {45.0, 135.0, -45.0, -135.0}) {
        if (kind_ == DialKind::UpDown && std::fabs(mark) > 90) continue;
        p.drawLine(centre, DialLineEnd(kind_, mark, w, h));
    }
    p.setPen(QPen(palette().mid().color(), 1));
    p.drawRect(QRectF(0.5, 0.5, w - 1, h - 1));
    // The direction.
    p.setPen(QPen(palette().highlight().color(), 2));
    p.drawLine(centre, DialLineEnd(kind_, angle_, w, h));
    p.setBrush(palette().highlight());
    p.drawEllipse(centre, 2.5, 2.5);
}

void VectorControl::PickAt(QPointF position, Qt::KeyboardModifiers modifiers) {
    double angle = DialAngleAt(kind_, position.x(), position.y(), width(), height());
    // Shift alone snaps; Shift with Ctrl or Alt does not.
    if (modifiers == Qt::ShiftModifier) angle = SnapDialAngle(angle);
    SetAngle(angle);
    emit Change(angle);
}

void VectorControl::mousePressEvent(QMouseEvent* e) {
    button_ = e->button();
    if (button_ == Qt::LeftButton) PickAt(e->position(), e->modifiers());
}

void VectorControl::mouseMoveEvent(QMouseEvent* e) {
    if (button_ == Qt::LeftButton) PickAt(e->position(), e->modifiers());
}

void VectorControl::mouseReleaseEvent(QMouseEvent* e) {
    const bool wasLeft = button_ == Qt::LeftButton && e->button() == Qt::LeftButton;
    if (e->button() == button_) button_ = Qt::NoButton;
    if (wasLeft) emit ChangeDone();
}

}  // namespace mw
