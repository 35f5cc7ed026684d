// keyControl: the timeline of one sub-object's keys. A key track shows a mark at each frame
// that has a position key ("PANI", the upper triangle) or a rotation key ("RANI", the lower
// triangle); under it a slider shows and sets the current frame, beside it the label
// "frame/last" and the previous and next frame buttons. The control knows nothing of the
// model: it keeps its own per-frame key flags and reports what the user does.
#pragma once

#include <QColor>
#include <QString>
#include <QWidget>
#include <array>

class QLabel;
class QToolButton;

namespace mw {

class keyControl : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int MinFrame READ minFrame WRITE SetMinFrame)
    Q_PROPERTY(int MaxFrame READ maxFrame WRITE SetMaxFrame)
    Q_PROPERTY(int FilterKeys READ FilterKeys WRITE SetFilterKeys)
    Q_PROPERTY(QColor BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(QColor KeyTrackColor READ KeyTrackColor WRITE SetKeyTrackColor)
    Q_PROPERTY(QColor KeyFillColor READ KeyFillColor WRITE SetKeyFillColor)
    Q_PROPERTY(QColor SlideTrackColor READ SlideTrackColor WRITE SetSlideTrackColor)

  public:
    static constexpr int kFrames = 1000;
    static constexpr int kMarkWidth = 9;
    static constexpr int kSliderWidth = 11;

    explicit keyControl(QWidget* parent = nullptr);

    // A key mark at a frame; a kind the filter leaves out is not added.
    void AddKey(int frame, const QString& type);
    void DeleteKey(int frame, const QString& type);
    void DeleteKeys();
    // One frame on or back, wrapping at the range ends; raise FrameChange.
    void NextFrame();
    void PrevFrame();

    int SelectedKeyFrame() const { return selected_; }
    // Selects the key at a frame again (after the keys were reloaded); nothing when the frame
    // carries no key.
    void SelectKey(int frame);
    float curKeyFrame() const { return frame_; }
    void SetCurKeyFrame(float frame);
    void SetMinMax(int min, int max);
    int minFrame() const { return min_; }
    int maxFrame() const { return max_; }
    void SetMinFrame(int min) { SetMinMax(min, max_); }
    void SetMaxFrame(int max) { SetMinMax(min_, max); }
    int range() const { return max_ - min_; }
    int FilterKeys() const { return filter_; }
    void SetFilterKeys(int filter) { filter_ = filter; }
    bool HasPANI(int frame) const;
    bool HasRANI(int frame) const;

    QColor BackColor() const { return backColor_; }
    void SetBackColor(const QColor& c);
    QColor KeyTrackColor() const { return keyTrackColor_; }
    void SetKeyTrackColor(const QColor& c);
    QColor KeyFillColor() const { return keyFillColor_; }
    void SetKeyFillColor(const QColor& c);
    QColor SlideTrackColor() const { return slideTrackColor_; }
    void SetSlideTrackColor(const QColor& c);

    // Where things are drawn, in the control's coordinates.
    QRect KeyTrackRect() const;
    QRect SlideTrackRect() const;
    QRect SliderRect() const;
    // Track x of a frame's mark (relative to the key track's left edge).
    int FrameX(int frame) const;
    // The key frame whose mark lies under track x, or -1.
    int KeyAt(int trackX) const;
    QLabel& label() { return *lblCurrentFrame_; }

  signals:
    void KeyClick(int frame, Qt::MouseButton button);
    void FrameChange(int frame);
    void MoveKey(int oldFrame, int newFrame);
    // A drag of a key mark ended (the moves it made are one edit).
    void MoveKeyDone();

  protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

  private:
    enum class Drag { None, Slider, Key };
    int WholeFrame() const;
    void ShowFrame();
    void SetFrameFromSlider(int x);
    // The frame the key track's x stands for, bounded to the range.
    int FrameAtTrackX(int trackX) const;
    void DragKeyTo(int trackX);
    void Hover(int trackX);

    std::array<bool, kFrames> pani_{};
    std::array<bool, kFrames> rani_{};
    int min_ = 0;
    int max_ = 1;
    int filter_ = 0;
    float frame_ = 0.0f;
    int selected_ = -1;
    Drag drag_ = Drag::None;
    QColor backColor_;
    QColor keyTrackColor_;
    QColor keyFillColor_;
    QColor slideTrackColor_;
    QToolButton* cmdPrev_ = nullptr;
    QToolButton* cmdNext_ = nullptr;
    QLabel* lblCurrentFrame_ = nullptr;
};

}  // namespace mw
