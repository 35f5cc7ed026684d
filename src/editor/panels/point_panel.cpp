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
    const DirectionControls controls =
        AddDirectionRows(grid, 0, "txtPointAngle", "picPointAngle", "Direction", 72);
    for (int i = 0; i < 2; ++i) {
        txtPointAngle_[i] = controls.angles[i];
        picPointAngle_[i] = controls.dials[i];
    }
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

}  // namespace mw
