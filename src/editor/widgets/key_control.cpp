#include "editor/widgets/key_control.h"

#include <QLabel>

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>
#include <QToolTip>
#include <cmath>
#include "editor/widgets/value_label.h"

namespace mw {
namespace {

constexpr int kButtonWidth = 22;
constexpr int kLabelWidth = 60;
constexpr int kGap = 4;
constexpr int kTrackHeight = 18;
constexpr int kSlideHeight = 16;
constexpr int kMarkHalfHeight = 7;
const QColor kPositionMark(214, 96, 32);
const QColor kRotationMark(40, 90, 200);
const QColor kSelection(0, 0, 0);

bool InFrames(int frame) {
    return frame >= 0 && frame < keyControl::kFrames;
}

}  // namespace

keyControl::keyControl(QWidget* parent) : QWidget(parent) {
    setObjectName("keyControl");
    setAccessibleName("Timeline");
    setMouseTracking(true);
    setMinimumSize(200, kTrackHeight + kSlideHeight + 8);
    backColor_ = palette().color(QPalette::Button);
    keyTrackColor_ = palette().color(QPalette::Light);
    keyFillColor_ = palette().color(QPalette::Button);
    slideTrackColor_ = palette().color(QPalette::Light);

    cmdPrev_ = new QToolButton(this);
    cmdPrev_->setObjectName("cmdTimelinePrevious");
    cmdPrev_->setArrowType(Qt::LeftArrow);
    cmdPrev_->setToolTip("Previous Frame");
    cmdPrev_->setAccessibleName("Timeline Previous Frame");
    cmdNext_ = new QToolButton(this);
    cmdNext_->setObjectName("cmdTimelineNext");
    cmdNext_->setArrowType(Qt::RightArrow);
    cmdNext_->setToolTip("Next Frame");
    cmdNext_->setAccessibleName("Timeline Next Frame");
    lblCurrentFrame_ = new QLabel(this);
    lblCurrentFrame_->setObjectName("lblCurrentFrame");
    lblCurrentFrame_->setAlignment(Qt::AlignCenter);
    SetValueCaption(lblCurrentFrame_, "Timeline Frame");
    connect(cmdPrev_, &QToolButton::clicked, this, &keyControl::PrevFrame);
    connect(cmdNext_, &QToolButton::clicked, this, &keyControl::NextFrame);
    ShowFrame();
}

bool keyControl::HasPANI(int frame) const {
    return InFrames(frame) && pani_[static_cast<std::size_t>(frame)];
}

bool keyControl::HasRANI(int frame) const {
    return InFrames(frame) && rani_[static_cast<std::size_t>(frame)];
}

void keyControl::AddKey(int frame, const QString& type) {
    if (!InFrames(frame)) return;
    const auto f = static_cast<std::size_t>(frame);
    if (type == "PANI" && (filter_ == 0 || filter_ == 1)) {
        pani_[f] = true;
    } else if (type == "RANI" && (filter_ == 0 || filter_ == 2)) {
        rani_[f] = true;
    } else {
        return;
    }
    update();
}

void keyControl::DeleteKey(int frame, const QString& type) {
    if (!InFrames(frame)) return;
    const auto f = static_cast<std::size_t>(frame);
    if (type == "PANI") pani_[f] = false;
    if (type == "RANI") rani_[f] = false;
    if (frame == selected_) selected_ = -1;
    update();
}

void keyControl::DeleteKeys() {
    pani_.fill(false);
    rani_.fill(false);
    selected_ = -1;
    update();
}

void keyControl::SelectKey(int frame) {
    if (!HasPANI(frame) && !HasRANI(frame)) return;
    selected_ = frame;
    update();
}

int keyControl::WholeFrame() const {
    return static_cast<int>(std::trunc(frame_));
}

void keyControl::NextFrame() {
    frame_ = WholeFrame() == max_ ? static_cast<float>(min_) : static_cast<float>(WholeFrame() + 1);
    ShowFrame();
    emit FrameChange(WholeFrame());
}

void keyControl::PrevFrame() {
    frame_ = WholeFrame() == min_ ? static_cast<float>(max_) : static_cast<float>(WholeFrame() - 1);
    ShowFrame();
    emit FrameChange(WholeFrame());
}

void keyControl::SetCurKeyFrame(float frame) {
    frame_ = frame;
    ShowFrame();
}

void keyControl::SetMinMax(int min, int max) {
    min_ = min;
    max_ = max;
    // Marks and the selection marker are drawn from the flags at the new scale.
    ShowFrame();
}

void keyControl::ShowFrame() {
    ShowValue(lblCurrentFrame_, QString("%1/%2").arg(WholeFrame()).arg(max_));
    update();
}

void keyControl::SetBackColor(const QColor& c) {
    backColor_ = c;
    update();
}

void keyControl::SetKeyTrackColor(const QColor& c) {
    keyTrackColor_ = c;
    update();
}

void keyControl::SetKeyFillColor(const QColor& c) {
    keyFillColor_ = c;
    update();
}

void keyControl::SetSlideTrackColor(const QColor& c) {
    slideTrackColor_ = c;
    update();
}

QRect keyControl::KeyTrackRect() const {
    const int left = kButtonWidth + kGap;
    const int right = width() - kButtonWidth - kLabelWidth - 2 * kGap;
    const int top = (height() - kTrackHeight - kSlideHeight - 2) / 2;
    return {left, top, std::max(right - left, 2), kTrackHeight};
}

QRect keyControl::SlideTrackRect() const {
    const QRect track = KeyTrackRect();
    return {track.left(), track.bottom() + 3, track.width(), kSlideHeight};
}

QRect keyControl::SliderRect() const {
    const QRect slide = SlideTrackRect();
    const int travel = std::max(slide.width() - kSliderWidth, 0);
    const float r = range() == 0 ? 0.0f : static_cast<float>(WholeFrame() - min_) / range();
    const int x = std::clamp(static_cast<int>(std::lround(r * travel)), 0, travel);
    return {slide.left() + x, slide.top(), kSliderWidth, slide.height()};
}

int keyControl::FrameX(int frame) const {
    // A range of 0 is a single-frame track: every mark sits at its start.
    const int last = KeyTrackRect().width() - 1;
    if (range() == 0) return 0;
    const double x = static_cast<double>(frame - min_) / range() * last;
    return std::clamp(static_cast<int>(std::lround(x)), 0, last);
}

int keyControl::KeyAt(int trackX) const {
    int best = -1;
    int bestDistance = kMarkWidth / 2 + 1;
    for (int f = 0; f < kFrames; ++f) {
        if (!HasPANI(f) && !HasRANI(f)) continue;
        const int distance = std::abs(FrameX(f) - trackX);
        if (distance < bestDistance) {
            best = f;
            bestDistance = distance;
        }
    }
    return best;
}

int keyControl::FrameAtTrackX(int trackX) const {
    if (range() == 0) return min_;
    const int last = std::max(KeyTrackRect().width() - 1, 1);
    const int f =
        min_ + static_cast<int>(std::lround(static_cast<double>(trackX) / last * range()));
    return std::clamp(f, min_, max_);
}

void keyControl::SetFrameFromSlider(int x) {
    const QRect slide = SlideTrackRect();
    const int travel = std::max(slide.width() - kSliderWidth, 1);
    const int position = std::clamp(x - slide.left() - kSliderWidth / 2, 0, travel);
    int f = static_cast<int>(std::trunc(static_cast<double>(position) / travel * range())) + min_;
    f = std::clamp(f, min_, max_);
    if (f == WholeFrame() && frame_ == static_cast<float>(f)) return;
    frame_ = static_cast<float>(f);
    ShowFrame();
    emit FrameChange(f);
}

void keyControl::DragKeyTo(int trackX) {
    const int from = selected_;
    const int to = FrameAtTrackX(trackX);
    if (to == from || !InFrames(to) || !InFrames(from)) return;
    // A frame holding a key of a kind the dragged key also has cannot take it.
    const bool occupied = HasPANI(to) || HasRANI(to);
    if (occupied && (HasPANI(to) == HasPANI(from) || HasRANI(to) == HasRANI(from))) return;
    const auto a = static_cast<std::size_t>(from), b = static_cast<std::size_t>(to);
    pani_[b] = pani_[a] || pani_[b];
    rani_[b] = rani_[a] || rani_[b];
    pani_[a] = rani_[a] = false;
    selected_ = to;
    setToolTip(QString("Frame %1").arg(to));
    update();
    emit MoveKey(from, to);
}

void keyControl::Hover(int trackX) {
    const int key = KeyAt(trackX);
    if (key == -1) {
        unsetCursor();
        setToolTip({});
        return;
    }
    setCursor(key == selected_ ? Qt::SizeHorCursor : Qt::PointingHandCursor);
    setToolTip(QString("Frame %1").arg(key));
}

void keyControl::mousePressEvent(QMouseEvent* e) {
    const QPoint p = e->position().toPoint();
    const QRect track = KeyTrackRect();
    if (SlideTrackRect().adjusted(0, -2, 0, 2).contains(p) && e->button() == Qt::LeftButton) {
        drag_ = Drag::Slider;
        SetFrameFromSlider(p.x());
        return;
    }
    if (!track.adjusted(-kMarkWidth / 2, 0, kMarkWidth / 2, 0).contains(p)) return;
    const int key = KeyAt(p.x() - track.left());
    if (key != -1 && key == selected_ && e->button() == Qt::LeftButton) {
        drag_ = Drag::Key;  // the selection marker was grabbed
        return;
    }
    selected_ = key;
    if (key == -1) {
        unsetCursor();
        setToolTip({});
    } else {
        setToolTip(QString("Frame %1").arg(key));
    }
    update();
    emit KeyClick(key, e->button());
}

void keyControl::mouseMoveEvent(QMouseEvent* e) {
    const QPoint p = e->position().toPoint();
    const int trackX = p.x() - KeyTrackRect().left();
    if (drag_ == Drag::Slider) {
        SetFrameFromSlider(p.x());
    } else if (drag_ == Drag::Key) {
        DragKeyTo(trackX);
    } else if (KeyTrackRect().adjusted(-kMarkWidth / 2, 0, kMarkWidth / 2, 0).contains(p)) {
        Hover(trackX);
    } else {
        unsetCursor();
        setToolTip({});
    }
}

void keyControl::mouseReleaseEvent(QMouseEvent*) {
    const bool key = drag_ == Drag::Key;
    drag_ = Drag::None;
    if (key) emit MoveKeyDone();
}

void keyControl::resizeEvent(QResizeEvent*) {
    const int y = (height() - kButtonWidth) / 2;
    cmdPrev_->setGeometry(0, y, kButtonWidth, kButtonWidth);
    const int labelLeft = width() - kLabelWidth;
    cmdNext_->setGeometry(labelLeft - kGap - kButtonWidth, y, kButtonWidth, kButtonWidth);
    lblCurrentFrame_->setGeometry(labelLeft, 0, kLabelWidth, height());
}

void keyControl::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QRect track = KeyTrackRect();
    const QRect slide = SlideTrackRect();
    p.fillRect(track.adjusted(-kMarkWidth / 2 - 1, -1, kMarkWidth / 2 + 1, 1), backColor_);
    p.fillRect(track, keyTrackColor_);
    p.fillRect(slide, slideTrackColor_);
    p.setPen(palette().color(QPalette::Mid));
    p.drawRect(track.adjusted(0, 0, -1, -1));
    p.drawRect(slide.adjusted(0, 0, -1, -1));

    // Marks: a downward triangle above the middle for a position key, an upward one below it
    // for a rotation key.
    p.setRenderHint(QPainter::Antialiasing);
    const int middle = track.center().y();
    const double half = kMarkWidth / 2.0;
    for (int f = 0; f < kFrames; ++f) {
        if (!HasPANI(f) && !HasRANI(f)) continue;
        const double x = track.left() + FrameX(f) + 0.5;
        if (HasPANI(f)) {
            QPainterPath mark;
            mark.moveTo(x - half, middle - kMarkHalfHeight);
            mark.lineTo(x + half, middle - kMarkHalfHeight);
            mark.lineTo(x, middle);
            mark.closeSubpath();
            p.fillPath(mark, isEnabled() ? kPositionMark : palette().color(QPalette::Mid));
        }
        if (HasRANI(f)) {
            QPainterPath mark;
            mark.moveTo(x, middle);
            mark.lineTo(x + half, middle + kMarkHalfHeight);
            mark.lineTo(x - half, middle + kMarkHalfHeight);
            mark.closeSubpath();
            p.fillPath(mark, isEnabled() ? kRotationMark : palette().color(QPalette::Mid));
        }
    }
    if (selected_ != -1) {
        const int x = track.left() + FrameX(selected_);
        p.setPen(QPen(kSelection, 1.5));
        p.setBrush(Qt::NoBrush);
        p.drawRect(QRectF(x - half - 1.5, middle - kMarkHalfHeight - 1.5, kMarkWidth + 2.0,
                          2 * kMarkHalfHeight + 3.0));
    }
    p.setRenderHint(QPainter::Antialiasing, false);
    const QRect slider = SliderRect();
    p.fillRect(slider, palette().color(QPalette::Dark));
    p.fillRect(slider.adjusted(2, 2, -2, -2), keyFillColor_);
}

}  // namespace mw
