// The animation panel ("Animation"): the position and rotation keys of the selected
// sub-object at the current frame. Check boxes add and remove keys, spinners and dials edit
// the key's position, angle and axis, buttons mirror the axis, step between keys and put
// sub-objects at their start pose. Every edit is a document command; while the animation
// plays the edit controls are off.
#pragma once

#include <QWidget>

#include "model/model_data.h"

class QCheckBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace mw {

class Document;
class VectorControl;
class spinControl;

class AnimationPanel : public QWidget {
    Q_OBJECT
  public:
    AnimationPanel(Document& doc, QWidget* parent = nullptr);

    // Fills the panel from the selected sub-object and the current frame and sets its enabling.
    void ShowAnimationPanel();

    // The buttons' and check boxes' handlers.
    void KeyHasPANIClicked(bool checked);
    void KeyHasRANIClicked(bool checked);
    void Mirror(int component);
    // i = 0: position keys, 1: rotation keys.
    void PreviousKeyFrame(int i);
    void NextKeyFrame(int i);
    void SubToStart();
    void AllSubsToStart();

  protected:
    void showEvent(QShowEvent* e) override;

  private:
    void connectSignals();
    QGroupBox* BuildKeyGroup(int i, QGridLayout*& grid);
    QGroupBox* BuildPositional();
    QGroupBox* BuildRotational();
    // The selected sub-object when keys can be edited; -1 otherwise.
    int EditedSubObject() const;
    int WholeFrame() const;
    void StorePosition();
    void StoreAngle();
    void AxisAngleChanged(int i);
    void ShowKeys(int s, int frame);
    void SetEnabling(int s);

    Document& doc_;
    bool filling_ = false;
    bool storing_ = false;
    QLabel* lblNumPANIKeys_ = nullptr;
    QLabel* lblNumRANIKeys_ = nullptr;
    QCheckBox* chkViewTrajectories_ = nullptr;
    QCheckBox* chkViewRotators_ = nullptr;
    QPushButton* cmdAllSubsToStart_ = nullptr;
    QPushButton* cmdSubToStart_ = nullptr;
    QCheckBox* chkKeyHasPANI_ = nullptr;
    QLineEdit* txtCurrentPANIKey_ = nullptr;
    spinControl* txtKeyPosition_[3]{};
    QCheckBox* chkKeyHasRANI_ = nullptr;
    QLineEdit* txtCurrentRANIKey_ = nullptr;
    spinControl* txtKeyAngle_ = nullptr;
    QGroupBox* fraRotAxis_ = nullptr;
    spinControl* txtRotAxis_[2]{};
    VectorControl* picRotAxis_[2]{};
    QPushButton* cmdMirror_[3]{};
    QPushButton* cmdPreviousKeyFrame_[2]{};
    QPushButton* cmdNextKeyFrame_[2]{};
};

}  // namespace mw
