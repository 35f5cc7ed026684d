#include "editor/panels/point_panel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "editor/document.h"
#include "editor/panel_commands.h"
#include "editor/panels/panel_widgets.h"
#include "editor/widgets/spin_control.h"
#include "editor/widgets/vector_control.h"
#include "model/point_direction.h"

namespace mw {
namespace {

QString Heading(PointType type) {
    switch (type) {
        case PointType::ATCH:
            return "Attach Point Properties";
        case PointType::NATH:
            return "Attach Normal Properties";
        case PointType::GRND:
            return "Ground Point Properties";
        case PointType::GPNT:
            break;
    }
    return "Gunpoint Properties";
}

}  // namespace

PointPanel::PointPanel(Document& doc, QWidget* parent) : QWidget(parent), doc_(doc) {
    setObjectName("fraPoints");
    auto* layout = new QVBoxLayout(this);
    lblPointType_ = MakeHeading(this, Heading(PointType::GPNT));
    lblPointType_->setObjectName("lblPointType");
    layout->addWidget(lblPointType_);

    auto* location = new QGroupBox("Location", this);
    auto* locationGrid = new QGridLayout(location);
    AddVectorRows(locationGrid, 0, "txtPointLoc", "Location", txtPointLoc_);
    layout->addWidget(location);

    auto* direction = new QGroupBox("Direction", this);
    auto* grid = new QGridLayout(direction);
    txtPointAngle_[0] =
        MakeSpinner(direction, "txtPointAngle_0", "L/R Angle", -180, 180, "##0.00", 0.01f, 2.0f);
    txtPointAngle_[1] =
        MakeSpinner(direction, "txtPointAngle_1", "U/D Angle", -90, 90, "#0.00", 0.01f, 2.0f);
    AddRow(grid, 0, "L/R Angle:", txtPointAngle_[0]);
    AddRow(grid, 1, "U/D Angle:", txtPointAngle_[1]);
    const DialKind kinds[2] = {DialKind::LeftRight, DialKind::UpDown};
    const char* const names[2] = {"L/R Direction", "U/D Direction"};
    auto* dials = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        picPointAngle_[i] = new VectorControl(kinds[i], direction);
        picPointAngle_[i]->setObjectName(QString("picPointAngle_%1").arg(i));
        picPointAngle_[i]->setAccessibleName(names[i]);
        picPointAngle_[i]->setFixedSize(72, 72);
        dials->addWidget(picPointAngle_[i]);
    }
    dials->addStretch(1);
    grid->addLayout(dials, 2, 0, 1, 2);
    auto* hint = new QLabel(
        "Enter Direction manually or Click, Shift-Click and Drag inside Vector Controls.",
        direction);
    hint->setWordWrap(true);
    grid->addWidget(hint, 3, 0, 1, 2);
    layout->addWidget(direction);
    layout->addStretch(1);
    connectSignals();
    ShowPointPanel();
}

void PointPanel::connectSignals() {
    for (auto signal : {&Document::modelReset, &Document::pointsChanged,
                        &Document::structureChanged, &Document::selectionChanged}) {
        connect(&doc_, signal, this, &PointPanel::ShowPointPanel);
    }
    for (spinControl* spin : txtPointLoc_) {
        connect(spin, &spinControl::Change, this, &PointPanel::StoreLocation);
        connect(spin, &spinControl::ChangeDone, &doc_, &Document::EndEditSession);
    }
    for (int i = 0; i < 2; ++i) {
        connect(txtPointAngle_[i], &spinControl::Change, this, [this, i] { AngleChanged(i); });
        connect(txtPointAngle_[i], &spinControl::ChangeDone, &doc_, &Document::EndEditSession);
        connect(picPointAngle_[i], &VectorControl::Change, this,
                [this, i](double degrees) { DialChanged(i, degrees); });
        connect(picPointAngle_[i], &VectorControl::ChangeDone, &doc_, &Document::EndEditSession);
    }
}

std::optional<PointType> PointPanel::SelectedType() const {
    const SelectionState& sel = doc_.selection();
    const auto type = PointTypeFromTag(sel.curPNTtype);
    if (!type || sel.curPNT < 0 ||
        sel.curPNT >= static_cast<int>(doc_.model().Points(*type).size())) {
        return std::nullopt;
    }
    return type;
}

void PointPanel::ShowPointPanel() {
    const auto type = SelectedType();
    if (storing_ || !type) return;
    filling_ = true;
    const ModelPoint& point =
        doc_.model().Points(*type)[static_cast<std::size_t>(doc_.selection().curPNT)];
    lblPointType_->setText(Heading(*type));
    txtPointLoc_[0]->SetValue(point.Position.X);
    txtPointLoc_[1]->SetValue(point.Position.Y);
    txtPointLoc_[2]->SetValue(point.Position.Z);
    const DirectionAngles angles = AnglesFromDirection(point.Normal);
    const double shown[2] = {angles.LeftRight, angles.UpDown};
    for (int i = 0; i < 2; ++i) {
        txtPointAngle_[i]->SetValue(static_cast<float>(shown[i]));
        picPointAngle_[i]->SetAngle(txtPointAngle_[i]->Value());
    }
    filling_ = false;
}

void PointPanel::StoreLocation() {
    const auto type = SelectedType();
    if (filling_ || !type) return;
    const Vector3 position{txtPointLoc_[0]->Value(), txtPointLoc_[1]->Value(),
                           txtPointLoc_[2]->Value()};
    storing_ = true;
    doc_.Apply(MakePointLocationCommand(doc_, *type, doc_.selection().curPNT, position));
    storing_ = false;
}

void PointPanel::AngleChanged(int i) {
    const auto type = SelectedType();
    if (filling_ || !type) return;
    filling_ = storing_ = true;
    spinControl* spin = txtPointAngle_[i];
    if (i == 0) WrapHalfTurn(spin);
    picPointAngle_[i]->SetAngle(spin->Value());
    const Vector3 direction =
        DirectionFromAngles(txtPointAngle_[0]->Value(), txtPointAngle_[1]->Value());
    doc_.Apply(MakePointDirectionCommand(doc_, *type, doc_.selection().curPNT, direction));
    filling_ = storing_ = false;
}

void PointPanel::DialChanged(int i, double degrees) {
    // The spinner takes the angle and stores it as a typed one would be.
    txtPointAngle_[i]->SetValue(static_cast<float>(degrees));
    picPointAngle_[i]->SetAngle(txtPointAngle_[i]->Value());
}

}  // namespace mw
