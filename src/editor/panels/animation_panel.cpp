#include "editor/panels/animation_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "editor/document.h"
#include "editor/key_commands.h"
#include "editor/panels/panel_widgets.h"
#include "editor/widgets/spin_control.h"
#include "editor/widgets/value_label.h"
#include "editor/widgets/vector_control.h"
#include "model/key_edits.h"
#include "model/keys.h"
#include "model/point_direction.h"

namespace mw {
namespace {

QLineEdit* MakeKeyNumber(QWidget* parent, const QString& name, const QString& accessibleName) {
    auto* text = new QLineEdit(parent);
    text->setObjectName(name);
    text->setAccessibleName(accessibleName);
    text->setReadOnly(true);
    text->setMaximumWidth(60);
    return text;
}

QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAccessibleName(QString(caption).remove('&'));
    return button;
}

// Writes a spinner only when the value differs from the one shown.
void ShowValue(spinControl* spin, float value) {
    if (spin->Value() != value) spin->SetValue(value);
}

}  // namespace

AnimationPanel::AnimationPanel(Document& doc, QWidget* parent) : QWidget(parent), doc_(doc) {
    setObjectName("fraKeyframeAnimation");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeHeading(this, "Keyframe Animation"));

    auto* counts = new QGridLayout;
    lblNumPANIKeys_ = new QLabel(this);
    lblNumPANIKeys_->setObjectName("lblNumPANIKeys");
    lblNumRANIKeys_ = new QLabel(this);
    lblNumRANIKeys_->setObjectName("lblNumRANIKeys");
    AddRow(counts, 0, "Positional Keys:", lblNumPANIKeys_);
    AddRow(counts, 1, "Rotational Keys:", lblNumRANIKeys_);
    for (QLabel* count : {lblNumPANIKeys_, lblNumRANIKeys_})
        SetValueCaption(count, count->accessibleName());
    chkViewTrajectories_ = new QCheckBox("View &Trajectories", this);
    chkViewTrajectories_->setObjectName("chkViewTrajectories");
    chkViewRotators_ = new QCheckBox("View &Rotators", this);
    chkViewRotators_->setObjectName("chkViewRotators");
    counts->addWidget(chkViewTrajectories_, 0, 2);
    counts->addWidget(chkViewRotators_, 1, 2);
    counts->setColumnStretch(1, 1);
    layout->addLayout(counts);
    BindDisplayFlag(doc_, chkViewTrajectories_, &DisplaySettings::ViewTrajectories);
    BindDisplayFlag(doc_, chkViewRotators_, &DisplaySettings::RotatorAnimation);

    auto* start = new QHBoxLayout;
    cmdAllSubsToStart_ = MakeButton(this, "cmdAllSubsToStart", "All Subs to Start");
    cmdSubToStart_ = MakeButton(this, "cmdSubToStart", "Current Sub to Start");
    start->addWidget(cmdAllSubsToStart_);
    start->addWidget(cmdSubToStart_);
    layout->addLayout(start);
    layout->addWidget(BuildPositional());
    layout->addWidget(BuildRotational());
    layout->addStretch(1);
    connectSignals();
    ShowAnimationPanel();
}

// The parts both key groups have: the check box and the key number on top, the two key
// navigation buttons at the bottom. i = 0: position keys, 1: rotation keys.
QGroupBox* AnimationPanel::BuildKeyGroup(int i, QGridLayout*& grid) {
    const QString kind = i == 0 ? "Positional" : "Rotational";
    const QString tag = i == 0 ? "PANI" : "RANI";
    auto* box = new QGroupBox(this);
    box->setObjectName("fra" + kind);
    grid = new QGridLayout(box);
    auto* check = new QCheckBox(QString("- %1 -").arg(kind), box);
    check->setObjectName("chkKeyHas" + tag);
    check->setAccessibleName(kind);
    grid->addWidget(check, 0, 0, 1, 2);
    auto* number = MakeKeyNumber(box, QString("txtCurrent%1Key").arg(tag), kind + " Key #");
    auto* keyRow = new QGridLayout;
    AddRow(keyRow, 0, "Key #", number);
    grid->addLayout(keyRow, 0, 2);
    auto* steps = new QHBoxLayout;
    cmdPreviousKeyFrame_[i] =
        MakeButton(box, QString("cmdPreviousKeyFrame_%1").arg(i), "Previous Keyframe");
    cmdNextKeyFrame_[i] = MakeButton(box, QString("cmdNextKeyFrame_%1").arg(i), "Next Keyframe");
    cmdPreviousKeyFrame_[i]->setAccessibleName(QString("Previous %1 Keyframe").arg(kind));
    cmdNextKeyFrame_[i]->setAccessibleName(QString("Next %1 Keyframe").arg(kind));
    steps->addWidget(cmdPreviousKeyFrame_[i]);
    steps->addWidget(cmdNextKeyFrame_[i]);
    grid->addLayout(steps, 4, 0, 1, 3);
    if (i == 0) {
        chkKeyHasPANI_ = check;
        txtCurrentPANIKey_ = number;
    } else {
        chkKeyHasRANI_ = check;
        txtCurrentRANIKey_ = number;
    }
    return box;
}

QGroupBox* AnimationPanel::BuildPositional() {
    QGridLayout* grid = nullptr;
    QGroupBox* box = BuildKeyGroup(0, grid);
    AddVectorRows(grid, 1, "txtKeyPosition", "Key Position", txtKeyPosition_);
    for (spinControl* spin : txtKeyPosition_)
        spin->SetSpinPower(1.5f);
    return box;
}

QGroupBox* AnimationPanel::BuildRotational() {
    QGridLayout* grid = nullptr;
    QGroupBox* box = BuildKeyGroup(1, grid);
    txtKeyAngle_ = MakeSpinner(box, "txtKeyAngle", "Angle", -360, 360, "##0.00", 0.01f, 1.75f);
    AddRow(grid, 1, "Angle:", txtKeyAngle_);

    fraRotAxis_ = new QGroupBox("Axis of Rotation", box);
    fraRotAxis_->setObjectName("fraRotAxis");
    auto* axis = new QGridLayout(fraRotAxis_);
    const DirectionControls controls =
        AddDirectionRows(axis, 0, "txtRotAxis", "picRotAxis", "Axis", 64);
    for (int i = 0; i < 2; ++i) {
        txtRotAxis_[i] = controls.angles[i];
        picRotAxis_[i] = controls.dials[i];
    }
    grid->addWidget(fraRotAxis_, 2, 0, 1, 3);

    auto* mirrors = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
        cmdMirror_[i] = MakeButton(box, QString("cmdMirror_%1").arg(i),
                                   QString("Mirror %1").arg(QChar('X' + i)));
        mirrors->addWidget(cmdMirror_[i]);
    }
    grid->addLayout(mirrors, 3, 0, 1, 3);
    return box;
}

void AnimationPanel::connectSignals() {
    auto refresh = [this] {
        if (isVisible()) ShowAnimationPanel();
    };
    for (auto signal : {&Document::modelReset, &Document::structureChanged,
                        &Document::selectionChanged, &Document::frameChanged}) {
        connect(&doc_, signal, this, refresh);
    }
    connect(&doc_, &Document::keysChanged, this, refresh);
    connect(&doc_, &Document::playingChanged, this, refresh);

    connect(chkKeyHasPANI_, &QCheckBox::clicked, this, &AnimationPanel::KeyHasPANIClicked);
    connect(chkKeyHasRANI_, &QCheckBox::clicked, this, &AnimationPanel::KeyHasRANIClicked);
    for (spinControl* spin : txtKeyPosition_) {
        connect(spin, &spinControl::Change, this, &AnimationPanel::StorePosition);
        connect(spin, &spinControl::ChangeDone, &doc_, &Document::EndEditSession);
    }
    connect(txtKeyAngle_, &spinControl::Change, this, &AnimationPanel::StoreAngle);
    connect(txtKeyAngle_, &spinControl::ChangeDone, &doc_, &Document::EndEditSession);
    for (int i = 0; i < 2; ++i) {
        connect(txtRotAxis_[i], &spinControl::Change, this, [this, i] { AxisAngleChanged(i); });
        connect(txtRotAxis_[i], &spinControl::ChangeDone, &doc_, &Document::EndEditSession);
        connect(picRotAxis_[i], &VectorControl::ChangeDone, &doc_, &Document::EndEditSession);
        connect(cmdPreviousKeyFrame_[i], &QPushButton::clicked, this,
                [this, i] { PreviousKeyFrame(i); });
        connect(cmdNextKeyFrame_[i], &QPushButton::clicked, this, [this, i] { NextKeyFrame(i); });
    }
    for (int i = 0; i < 3; ++i) {
        connect(cmdMirror_[i], &QPushButton::clicked, this, [this, i] { Mirror(i); });
    }
    connect(cmdSubToStart_, &QPushButton::clicked, this, &AnimationPanel::SubToStart);
    connect(cmdAllSubsToStart_, &QPushButton::clicked, this, &AnimationPanel::AllSubsToStart);
}

void AnimationPanel::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    ShowAnimationPanel();
}

int AnimationPanel::EditedSubObject() const {
    const int s = doc_.selection().curSOBJ;
    if (!doc_.hasModel() || !doc_.model().IsRecord(s) || doc_.animation().animPlaying) return -1;
    return s;
}

int AnimationPanel::WholeFrame() const {
    return doc_.animation().WholeFrame();
}

void AnimationPanel::ShowAnimationPanel() {
    if (storing_) return;
    filling_ = true;
    const int s = doc_.hasModel() && doc_.model().IsRecord(doc_.selection().curSOBJ)
                      ? doc_.selection().curSOBJ
                      : -1;
    if (s >= 0) {
        ShowValue(lblNumPANIKeys_, QString::number(doc_.model().Sub(s).Pos.KeyCount()));
        ShowValue(lblNumRANIKeys_, QString::number(doc_.model().Sub(s).Rot.KeyCount()));
    } else {
        ShowValue(lblNumPANIKeys_, {});
        ShowValue(lblNumRANIKeys_, {});
    }
    ShowKeys(s, WholeFrame());
    SetEnabling(s);
    filling_ = false;
}

void AnimationPanel::ShowKeys(int s, int frame) {
    const ModelData& model = doc_.model();
    const int p = s >= 0 ? GetPANIindex(model, s, frame, true) : -1;
    chkKeyHasPANI_->setChecked(p >= 0);
    if (p >= 0) {
        const Vector3 at = model.Sub(s).Pos.Keys[static_cast<std::size_t>(p)].Position;
        txtCurrentPANIKey_->setText(QString::number(p));
        ShowValue(txtKeyPosition_[0], at.X);
        ShowValue(txtKeyPosition_[1], at.Y);
        ShowValue(txtKeyPosition_[2], at.Z);
    } else {
        txtCurrentPANIKey_->clear();
        for (spinControl* spin : txtKeyPosition_)
            ShowValue(spin, 0.0f);
    }
    const int r = s >= 0 ? GetRANIindex(model, s, frame, true) : -1;
    chkKeyHasRANI_->setChecked(r >= 0);
    if (r >= 0) {
        const RotKey& key = model.Sub(s).Rot.Keys[static_cast<std::size_t>(r)];
        txtCurrentRANIKey_->setText(QString::number(r));
        const DirectionAngles angles = AnglesFromDirection(key.Axis);
        ShowValue(txtRotAxis_[0], static_cast<float>(angles.LeftRight));
        ShowValue(txtRotAxis_[1], static_cast<float>(angles.UpDown));
        for (int i = 0; i < 2; ++i)
            picRotAxis_[i]->SetAngle(txtRotAxis_[i]->Value());
        ShowValue(txtKeyAngle_, static_cast<float>(KeyAngleToDegrees(key.Angle)));
    } else {
        txtCurrentRANIKey_->clear();
    }
}

void AnimationPanel::SetEnabling(int s) {
    const ModelData& model = doc_.model();
    const bool playing = doc_.animation().animPlaying;
    const bool editable = s >= 0 && !playing;
    chkKeyHasPANI_->setEnabled(editable);
    chkKeyHasRANI_->setEnabled(editable);
    for (QPushButton* b : cmdMirror_)
        b->setEnabled(editable);
    for (spinControl* spin : txtKeyPosition_)
        spin->setEnabled(editable && chkKeyHasPANI_->isChecked());
    const bool rotation = editable && chkKeyHasRANI_->isChecked();
    txtKeyAngle_->setEnabled(rotation);
    fraRotAxis_->setEnabled(rotation);
    const bool keys =
        editable && (model.Sub(s).Pos.KeyCount() > 0 || model.Sub(s).Rot.KeyCount() > 0);
    cmdSubToStart_->setEnabled(keys);
    cmdAllSubsToStart_->setEnabled(doc_.hasModel() && (model.HasPANI || model.HasRANI) && !playing);
    // Key navigation: a key before or after the current frame on the sub-object's track.
    for (int i = 0; i < 2; ++i) {
        cmdPreviousKeyFrame_[i]->setEnabled(false);
        cmdNextKeyFrame_[i]->setEnabled(false);
    }
    if (!editable) return;
    const int frame = WholeFrame();
    const auto steps = [&](int i, bool present, const auto& track) {
        const bool enabled = present && track.KeyCount() > 0;
        cmdPreviousKeyFrame_[i]->setEnabled(enabled && track.FirstFrame < frame);
        cmdNextKeyFrame_[i]->setEnabled(enabled && track.LastFrame > frame);
    };
    steps(0, model.HasPANI, model.Sub(s).Pos);
    steps(1, model.HasRANI, model.Sub(s).Rot);
}

void AnimationPanel::KeyHasPANIClicked(bool checked) {
    const int s = EditedSubObject();
    if (filling_ || s < 0) return;
    doc_.Apply(MakeKeyPresenceCommand(doc_, s, WholeFrame(), KeyKind::Position, checked));
    doc_.GoToFrame(doc_.animation().curFrame);
}

void AnimationPanel::KeyHasRANIClicked(bool checked) {
    const int s = EditedSubObject();
    if (filling_ || s < 0) return;
    doc_.Apply(MakeKeyPresenceCommand(doc_, s, WholeFrame(), KeyKind::Rotation, checked));
    doc_.GoToFrame(doc_.animation().curFrame);
}

void AnimationPanel::StorePosition() {
    const int s = EditedSubObject();
    if (filling_ || s < 0) return;
    const Vector3 position{txtKeyPosition_[0]->Value(), txtKeyPosition_[1]->Value(),
                           txtKeyPosition_[2]->Value()};
    storing_ = true;
    doc_.Apply(MakeKeyPositionCommand(doc_, s, WholeFrame(), position));
    storing_ = false;
}

void AnimationPanel::StoreAngle() {
    const int s = EditedSubObject();
    if (filling_ || s < 0) return;
    storing_ = true;
    doc_.Apply(
        MakeKeyAngleCommand(doc_, s, WholeFrame(), DegreesToKeyAngle(txtKeyAngle_->Value())));
    storing_ = false;
}

void AnimationPanel::AxisAngleChanged(int i) {
    const int s = EditedSubObject();
    if (filling_ || s < 0) return;
    filling_ = storing_ = true;
    spinControl* spin = txtRotAxis_[i];
    if (i == 0) WrapHalfTurn(spin);
    picRotAxis_[i]->SetAngle(spin->Value());
    const Vector3 axis = DirectionFromAngles(txtRotAxis_[0]->Value(), txtRotAxis_[1]->Value());
    doc_.Apply(MakeKeyAxisCommand(doc_, s, WholeFrame(), axis));
    filling_ = storing_ = false;
}

void AnimationPanel::Mirror(int component) {
    const int s = EditedSubObject();
    if (s < 0) return;
    doc_.Apply(MakeMirrorAxisCommand(doc_, s, WholeFrame(), component));
}

void AnimationPanel::PreviousKeyFrame(int i) {
    const int s = EditedSubObject();
    if (s < 0) return;
    const int target = NeighbourKeyFrame(doc_.model(), s, i == 1, WholeFrame(), -1);
    if (target >= 0) doc_.GoToFrame(static_cast<float>(target));
}

void AnimationPanel::NextKeyFrame(int i) {
    const int s = EditedSubObject();
    if (s < 0) return;
    const int target = NeighbourKeyFrame(doc_.model(), s, i == 1, WholeFrame(), +1);
    if (target >= 0) doc_.GoToFrame(static_cast<float>(target));
}

void AnimationPanel::SubToStart() {
    const int s = EditedSubObject();
    if (s < 0) return;
    if (doc_.Apply(MakeToStartCommand(doc_, s, WholeFrame()))) {
        doc_.GoToFrame(doc_.animation().curFrame);
    }
}

void AnimationPanel::AllSubsToStart() {
    if (!doc_.hasModel() || doc_.animation().animPlaying) return;
    if (doc_.Apply(MakeToStartCommand(doc_, -1, WholeFrame()))) {
        doc_.GoToFrame(doc_.animation().curFrame);
    }
}

}  // namespace mw
