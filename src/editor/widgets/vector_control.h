// VectorControl: a small dial in which a direction is picked with the mouse. The left/right
// dial is a full circle, angle 0 to the right and counterclockwise positive; the up/down
// dial is a half circle whose centre is the middle of its left edge and whose radius is its
// full width. A left-button press or drag sets the angle under the pointer; with Shift alone
// it snaps to 0, 45, 90, 135 or 180 degrees (either sign).
#pragma once

#include <QPointF>
#include <QWidget>

namespace mw {

enum class DialKind { LeftRight, UpDown };

// The angle in degrees (-180 to 180) for the pointer at (x, y) of a w x h dial.
double DialAngleAt(DialKind kind, double x, double y, int w, int h);
// The angle snapped to the nearest dial mark by its magnitude (57.5 parts 45 from 90).
double SnapDialAngle(double degrees);
// Where the dial's direction line starts and ends for an angle.
QPointF DialLineStart(DialKind kind, int w, int h);
QPointF DialLineEnd(DialKind kind, double degrees, int w, int h);

class VectorControl : public QWidget {
    Q_OBJECT
  public:
    explicit VectorControl(DialKind kind, QWidget* parent = nullptr);

    DialKind kind() const { return kind_; }
    double angle() const { return angle_; }
    // Shows an angle (degrees) without raising Change.
    void SetAngle(double degrees);

    QSize sizeHint() const override { return {72, 72}; }

  signals:
    // The user picked an angle (degrees).
    void Change(double degrees);
    // The button was released: one drag is done.
    void ChangeDone();

  protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

  private:
    void PickAt(QPointF position, Qt::KeyboardModifiers modifiers);

    DialKind kind_;
    double angle_ = 0.0;
    Qt::MouseButton button_ = Qt::NoButton;
};

}  // namespace mw
