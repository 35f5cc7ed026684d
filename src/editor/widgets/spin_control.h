// spinControl: the number field of every panel and dialog. A text box with an up/down
// button pair: type a number (Enter or leaving the box commits), click a button (one step at
// once, then after 500 ms a step every 25 ms), or drag on the buttons, where the change grows
// with a power of the distance and the pointer wraps at the buttons' edges so a drag never
// ends. The value stays within [Min, Max] and is shown through the format.
#pragma once

#include <QString>
#include <QWidget>

class QLineEdit;
class QTimer;

namespace mw {

class SpinButtons;

class spinControl : public QWidget {
    Q_OBJECT
  public:
    explicit spinControl(QWidget* parent = nullptr);

    float Value() const { return value_; }
    // Sets the value (clamped) and shows it; raises Change when the shown text changes.
    void SetValue(float value);
    float Min() const { return min_; }
    float Max() const { return max_; }
    void SetMin(float min);
    void SetMax(float max);
    void SetRange(float min, float max);
    float SpinChange() const { return spinChange_; }
    void SetSpinChange(float step) { spinChange_ = step; }
    float SpinPower() const { return spinPower_; }
    void SetSpinPower(float power) { spinPower_ = power; }
    const QString& Format_() const { return format_; }
    void SetFormat(const QString& format);

    // Range, format, step and power at once, as the panels give them.
    void Configure(float min, float max, const QString& format, float step, float power);

    QLineEdit& textBox() { return *text_; }
    QString text() const;

    // The button pair's handlers, driven by the mouse (and by tests).
    // A press on a button (+1 up, -1 down) at height y of the button pair.
    void PressButton(int direction, int y);
    // The pointer dragged to height y; returns the height it is to jump to at an edge, or -1.
    int DragTo(int y);
    void ReleaseButton();
    // One tick of the 25 ms repeat timer.
    void RepeatTick();
    bool repeating() const;

  signals:
    void Change();
    void ChangeDone();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Show();
    void Step(int direction);
    void Commit();
    void UpdateMaxLength();

    float value_ = 0.0f;
    float min_ = 0.0f;
    float max_ = 1.0f;
    float spinChange_ = 0.01f;
    float spinPower_ = 1.0f;
    QString format_ = "0.00";
    QString shown_;  // the text the value was last shown as
    QLineEdit* text_ = nullptr;
    SpinButtons* buttons_ = nullptr;
    QTimer* tmrSpin_ = nullptr;
    int direction_ = 0;
    int countdown_ = 0;
    bool fired_ = false;
    bool pressed_ = false;
    int dragY_ = 0;
};

}  // namespace mw
