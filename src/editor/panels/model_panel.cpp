#include "editor/panels/model_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "editor/document.h"
#include "editor/file_text.h"
#include "editor/panel_commands.h"
#include "editor/panels/panel_widgets.h"
#include "editor/widgets/spin_control.h"
#include "editor/widgets/value_label.h"

namespace mw {
namespace {}  // namespace

ModelPanel::ModelPanel(Document& doc, QWidget* parent) : QWidget(parent), doc_(doc) {
    setObjectName("fraModel");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeHeading(this, "Model Properties"));

    auto* top = new QGridLayout;
    lblNumSubModels_ = new QLabel(this);
    lblNumSubModels_->setObjectName("lblNumSubModels");
    top->addWidget(new QLabel("# of Sub-Models:", this), 0, 0);
    top->addWidget(lblNumSubModels_, 0, 1);
    SetValueCaption(lblNumSubModels_, "# of Sub-Models");
    chkShowModelRadius_ = new QCheckBox("Radius:", this);
    chkShowModelRadius_->setObjectName("chkShowModelRadius");
    txtModelRadius_ =
        MakeSpinner(this, "txtModelRadius", "Model Radius", 0, 90000, "####0.00", 0.01f, 1.25f);
    top->addWidget(chkShowModelRadius_, 1, 0);
    top->addWidget(txtModelRadius_, 1, 1);
    layout->addLayout(top);

    auto* special = new QGroupBox(this);
    auto* grid = new QGridLayout(special);
    chkUseSPCL_ = new QCheckBox("(SPCL) Special Point Used", special);
    chkUseSPCL_->setObjectName("chkUseSPCL");
    grid->addWidget(chkUseSPCL_, 0, 0, 1, 2);
    txtSPCLName_ = new QLineEdit(special);
    txtSPCLName_->setObjectName("txtSPCLName");
    AddRow(grid, 1, "Name:", txtSPCLName_);
    txtSPCLProperty_ = new QLineEdit(special);
    txtSPCLProperty_->setObjectName("txtSPCLProperty");
    AddRow(grid, 2, "Property:", txtSPCLProperty_);
    chkShowSPCLRadius_ = new QCheckBox("Radius:", special);
    chkShowSPCLRadius_->setObjectName("chkShowSPCLRadius");
    chkShowSPCLRadius_->setAccessibleName("Show Special Point Radius");
    txtSPCLRadius_ = MakeSpinner(special, "txtSPCLRadius", "Special Point Radius", 0, 90000,
                                 "####0.00", 0.01f, 1.25f);
    grid->addWidget(chkShowSPCLRadius_, 3, 0);
    grid->addWidget(txtSPCLRadius_, 3, 1);
    auto* offset = new QGroupBox("Offset", special);
    auto* offsetGrid = new QGridLayout(offset);
    AddVectorRows(offsetGrid, 0, "txtSPCLpos", "Special Point Offset", txtSPCLpos_);
    grid->addWidget(offset, 4, 0, 1, 2);
    layout->addWidget(special);
    layout->addStretch(1);
    connectSignals();
    ShowModelPanel();
}

void ModelPanel::connectSignals() {
    for (auto signal : {&Document::modelReset, &Document::modelValuesChanged,
                        &Document::structureChanged, &Document::selectionChanged}) {
        connect(&doc_, signal, this, &ModelPanel::ShowModelPanel);
    }
    BindDisplayFlag(doc_, chkShowModelRadius_, &DisplaySettings::ShowModelRadius);
    BindDisplayFlag(doc_, chkShowSPCLRadius_, &DisplaySettings::ShowSPCLRadius);
    connect(txtModelRadius_, &spinControl::Change, this, [this] {
        if (!filling_) doc_.Apply(MakeModelRadiusCommand(doc_, txtModelRadius_->Value()));
    });
    connect(chkUseSPCL_, &QCheckBox::clicked, this, [this](bool on) {
        doc_.Apply(MakeSpecialUsedCommand(doc_, on));
        doc_.EndEditSession();
    });
    connect(txtSPCLName_, &QLineEdit::textEdited, this,
            [this] { StoreSpecialText(EditField::SpecialName); });
    connect(txtSPCLProperty_, &QLineEdit::textEdited, this,
            [this] { StoreSpecialText(EditField::SpecialProperties); });
    connect(txtSPCLRadius_, &spinControl::Change, this,
            [this] { StoreSpecialNumbers(EditField::SpecialRadius); });
    for (spinControl* spin : txtSPCLpos_)
        connect(spin, &spinControl::Change, this,
                [this] { StoreSpecialNumbers(EditField::SpecialPosition); });
    // One typed entry or one drag is one undo step.
    for (spinControl* spin :
         {txtModelRadius_, txtSPCLRadius_, txtSPCLpos_[0], txtSPCLpos_[1], txtSPCLpos_[2]}) {
        connect(spin, &spinControl::ChangeDone, &doc_, &Document::EndEditSession);
    }
    for (QLineEdit* box : {txtSPCLName_, txtSPCLProperty_})
        connect(box, &QLineEdit::editingFinished, &doc_, &Document::EndEditSession);
}

void ModelPanel::EnableSpecialFields(bool on) {
    for (QWidget* w : std::initializer_list<QWidget*>{
             txtSPCLName_, txtSPCLProperty_, chkShowSPCLRadius_, txtSPCLRadius_, txtSPCLpos_[0],
             txtSPCLpos_[1], txtSPCLpos_[2]}) {
        w->setEnabled(on);
    }
}

void ModelPanel::ShowModelPanel() {
    filling_ = true;
    const ModelData& model = doc_.model();
    ShowValue(lblNumSubModels_, QString::number(model.SubObjectCount()));
    txtModelRadius_->SetValue(model.Header.Radius);
    chkShowModelRadius_->setChecked(doc_.display().ShowModelRadius);
    chkShowSPCLRadius_->setChecked(doc_.display().ShowSPCLRadius);
    const bool used = model.Special.has_value();
    chkUseSPCL_->setChecked(used);
    EnableSpecialFields(used);
    const SpecialPoint shown = model.Special.value_or(SpecialPoint{});
    if (txtSPCLName_->text() != FromFileText(shown.Name))
        txtSPCLName_->setText(FromFileText(shown.Name));
    if (txtSPCLProperty_->text() != FromFileText(shown.Properties))
        txtSPCLProperty_->setText(FromFileText(shown.Properties));
    txtSPCLRadius_->SetValue(shown.Radius);
    txtSPCLpos_[0]->SetValue(shown.Position.X);
    txtSPCLpos_[1]->SetValue(shown.Position.Y);
    txtSPCLpos_[2]->SetValue(shown.Position.Z);
    filling_ = false;
}

void ModelPanel::StoreSpecialText(EditField field) {
    if (filling_) return;
    const std::string text =
        ToFileText((field == EditField::SpecialName ? txtSPCLName_ : txtSPCLProperty_)->text());
    doc_.Apply(MakeSpecialCommand(doc_, field, [field, text](SpecialPoint& p) {
        (field == EditField::SpecialName ? p.Name : p.Properties) = text;
    }));
}

void ModelPanel::StoreSpecialNumbers(EditField field) {
    if (filling_) return;
    const float radius = txtSPCLRadius_->Value();
    const Vector3 position{txtSPCLpos_[0]->Value(), txtSPCLpos_[1]->Value(),
                           txtSPCLpos_[2]->Value()};
    doc_.Apply(MakeSpecialCommand(doc_, field, [field, radius, position](SpecialPoint& p) {
        if (field == EditField::SpecialRadius) {
            p.Radius = radius;
        } else {
            p.Position = position;
        }
    }));
}

}  // namespace mw
