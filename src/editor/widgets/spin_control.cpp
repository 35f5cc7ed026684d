#include "editor/widgets/spin_control.h"

#include <QCursor>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "editor/widgets/number_format.h"

namespace mw {

inline constexpr int kRepeatDelay = 500;
inline constexpr int kRepeatInterval = 25;

// The up/down pair: the upper half steps up, the lower half down; a drag changes the value
// continuously.
class SpinButtons : public QWidget {
  public:
    explicit SpinButtons(spinControl& spin) : QWidget(&spin), spin_(spin) {
        setFixedWidth(16);
        setCursor(Qt::SizeVerCursor);
        setAccessibleName("Step");
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        const int half = height() / 2;
        for (int i = 0; i < 2; ++i) {
            QStyleOptionButton option;
            option.initFrom(this);
            option.rect = QRect(0, i * half, width(), i == 0 ? half : height() - half);
            if (pressed_ == (i == 0 ? 1 : -1)) option.state |= QStyle::State_Sunken;
            style()->drawControl(QStyle::CE_PushButtonBevel, &option, &p, this);
            option.rect.adjust(3, 2, -3, -2);
            style()->drawPrimitive(
                i == 0 ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown, &option, &p,
                this);
        }
    }
    void mousePressEvent(QMouseEvent* e) override {
        if (e->button() != Qt::LeftButton || !isEnabled()) return;
        pressPoint_ = e->globalPosition().toPoint();
        moved_ = false;
        pressed_ = e->position().y() < height() / 2.0 ? 1 : -1;
        update();
        spin_.PressButton(pressed_, static_cast<int>(e->position().y()));
    }
    void mouseMoveEvent(QMouseEvent* e) override {
        if (pressed_ == 0) return;
        const QPoint global = e->globalPosition().toPoint();
        if (!moved_ && std::abs(global.x() - pressPoint_.x()) < 2 &&
            std::abs(global.y() - pressPoint_.y()) < 2) {
            return;
        }
        moved_ = true;
        // At an edge the pointer jumps to the other one and the drag goes on from there.
        const int y = static_cast<int>(e->position().y());
        const int to = spin_.DragTo(y);
        if (to >= 0) QCursor::setPos(mapToGlobal(QPoint(static_cast<int>(e->position().x()), to)));
    }
    void mouseReleaseEvent(QMouseEvent*) override {
        if (pressed_ == 0) return;
        pressed_ = 0;
        update();
        spin_.ReleaseButton();
    }

  private:
    spinControl& spin_;
    QPoint pressPoint_;
    bool moved_ = false;
    int pressed_ = 0;
};

spinControl::spinControl(QWidget* parent) : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    text_ = new QLineEdit(this);
    text_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    text_->installEventFilter(this);
    setFocusProxy(text_);
    layout->addWidget(text_, 1);
    buttons_ = new SpinButtons(*this);
    layout->addWidget(buttons_);
    tmrSpin_ = new QTimer(this);
    tmrSpin_->setInterval(kRepeatInterval);
    connect(tmrSpin_, &QTimer::timeout, this, &spinControl::RepeatTick);
    UpdateMaxLength();
    text_->setText(QString::fromStdString(FormatNumber(value_, format_.toStdString())));
}

QString spinControl::text() const {
    return text_->text();
}

void spinControl::SetValue(float value) {
    value_ = std::clamp(value, min_, max_);
    Show();
}

void spinControl::SetMin(float min) {
    min_ = min;
    UpdateMaxLength();
    SetValue(value_);
}

void spinControl::SetMax(float max) {
    max_ = max;
    UpdateMaxLength();
    SetValue(value_);
}

void spinControl::SetRange(float min, float max) {
    min_ = min;
    max_ = max;
    UpdateMaxLength();
    SetValue(value_);
}

void spinControl::SetFormat(const QString& format) {
    format_ = format;
    UpdateMaxLength();
    Show();
}

void spinControl::Configure(float min, float max, const QString& format, float step, float power) {
    spinChange_ = step;
    spinPower_ = power;
    format_ = format;
    SetRange(min, max);
}

// The text holds the format's length, and one more for a sign when the range has negatives.
void spinControl::UpdateMaxLength() {
    text_->setMaxLength(static_cast<int>(format_.size()) + (min_ < 0 || max_ < 0 ? 1 : 0));
}

void spinControl::Show() {
    const QString shown = QString::fromStdString(FormatNumber(value_, format_.toStdString()));
    if (shown == shown_) {
        if (text_->text() != shown) text_->setText(shown);
        return;
    }
    shown_ = shown;
    text_->setText(shown);
    text_->setCursorPosition(static_cast<int>(shown.size()));
    emit Change();
}

void spinControl::Step(int direction) {
    SetValue(value_ + static_cast<float>(direction) * spinChange_);
}

void spinControl::PressButton(int direction, int y) {
    pressed_ = true;
    direction_ = direction;
    countdown_ = kRepeatDelay;
    fired_ = false;
    dragY_ = y;
    tmrSpin_->start();
    Step(direction);
}

void spinControl::RepeatTick() {
    if (!pressed_) return;
    if (countdown_ > 0) {
        countdown_ -= kRepeatInterval;
        fired_ = false;
        return;
    }
    Step(direction_);
    fired_ = true;
}

bool spinControl::repeating() const {
    return tmrSpin_->isActive();
}

int spinControl::DragTo(int y) {
    if (!pressed_) return -1;
    if (!fired_) tmrSpin_->stop();
    const int height = buttons_->height();
    if (y <= 0 || y >= height - 1) {
        // The pointer wraps to the other edge; the next move continues from there.
        dragY_ = y <= 0 ? height - 2 : 1;
        return dragY_;
    }
    const int d = y - dragY_;
    if (d == 0) return -1;
    const float amount = std::pow(static_cast<float>(std::abs(d)), spinPower_) * spinChange_;
    SetValue(value_ - (d > 0 ? amount : -amount));
    dragY_ = y;
    return -1;
}

void spinControl::ReleaseButton() {
    tmrSpin_->stop();
    pressed_ = false;
    fired_ = false;
    emit ChangeDone();
}

void spinControl::Commit() {
    // Any typed text is a change (typing -180 over -180.00 flips a wrapping angle), even one
    // that reads exactly as the value it gives.
    const bool typed = text_->text() != shown_;
    const QString before = shown_;
    SetValue(static_cast<float>(ParseTypedNumber(text_->text().toStdString())));
    if (typed && shown_ == before) emit Change();
}

bool spinControl::eventFilter(QObject* watched, QEvent* event) {
    if (watched != text_) return false;
    switch (event->type()) {
        case QEvent::KeyPress: {
            auto* key = static_cast<QKeyEvent*>(event);
            if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
                Commit();
                text_->selectAll();
                return true;
            }
            const QString typed = key->text();
            const bool allowed =
                key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab ||
                key->key() == Qt::Key_Backspace || key->key() == Qt::Key_Delete ||
                key->key() == Qt::Key_Left || key->key() == Qt::Key_Right ||
                key->key() == Qt::Key_Home || key->key() == Qt::Key_End ||
                (typed.size() == 1 && QString("0123456789,-.").contains(typed[0])) ||
                (key->modifiers() & Qt::ControlModifier);
            return !allowed;
        }
        case QEvent::FocusIn:
            QTimer::singleShot(0, text_, &QLineEdit::selectAll);
            break;
        case QEvent::FocusOut:
            Commit();
            emit ChangeDone();
            break;
        default:
            break;
    }
    return false;
}

}  // namespace mw
