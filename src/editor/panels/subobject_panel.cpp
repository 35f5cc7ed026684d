#include "editor/panels/subobject_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <cmath>

#include "editor/document.h"
#include "editor/edit_commands.h"
#include "editor/file_text.h"
#include "editor/panel_commands.h"
#include "editor/panels/panel_widgets.h"
#include "editor/prompts.h"
#include "editor/widgets/spin_control.h"

namespace mw {
namespace {

const PropertyItem kPropertyItems[] = {
    {"None", 0},
    {"Facing", kPropFacing},
    {"Rotate", kPropRotate},
    {"Turret/FOV", kPropFov},
    {"Glow/Thruster", kPropGlow},
    {"Custom", kPropCustom},
    {"Shell", kPropShell},
    {"FrontFace", kPropFrontFace},
    {"Jitter", kPropJitter},
    {"Viewer", kPropViewer},
    {"Monitor01-08", kAllMonitors},
    {"Layer", kPropLayer},
};

const char* const kMonitors[8] = {
    "Monitor01- Left HUD display",       "Monitor02- Ship strength",
    "Monitor03- Right HUD display",      "Monitor04- Left Energy indicator",
    "Monitor05- Right Energy indicator", "Monitor06- Shields",
    "Monitor07- Afterburner indicator",  "Monitor08- Unknown",
};

// The description of each item's frame.
QStringList Description(int item) {
    switch (item) {
        case 0:
            return {"No properties set for this Sub-Object.",
                    "You may choose a property from the Properties List, or leave at None to "
                    "apply no properties to this Sub-Object."};
        case 1:
            return {"Facing is used to make a Sub-Object always face the player.",
                    "* No editable properties for Facing."};
        case 2:
            return {
                "Causes Sub-Object to Rotate once every X seconds. Must have keyframes to "
                "work."};
        case 3:
            return {
                "Field of View sets the Field of view(FOV), Seconds per rotation(SPR), and "
                "Reaction time(RT) for a Weapons Battery."};
        case 4:
            return {
                "Sub-Object emits a Red, Green, and Blue lightsource from its center with a "
                "Radius."};
        case 5:
            return {
                "Custom causes the Sub-Object to display a custom texture/color. An example "
                "would be the Logos on the various ships.",
                "* No editable properties for Custom."};
        case 6:
            return {
                "Shell specifies that this Sub-Object is a Door shell. A door shell is the "
                "outer housing of a door assembly.",
                "* No editable properties for Shell."};
        case 7:
            return {"FrontFace specifies that Sub-Object is a Door front.",
                    "* No editable properties for FrontFace."};
        case 8:
            return {"Jitter causes the Sub-Object to jitter.",
                    "* No editable properties for Jitter."};
        case 9:
            return {
                "Makes the Sub-Object a Viewer. This is used to display what a person sees "
                "when pressing Shift-F1, Shift-F2 I think :)",
                "* No editable properties for Viewer."};
        case 10:
            return {"Set Sub-Object to one of 8 HUD displays."};
        default:
            return {"Layer causes the Sub-Object to be drawn after the Model has been drawn.",
                    "* No editable properties for Layer"};
    }
}

QLabel* Wrapped(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

}  // namespace

SubObjectPanel::SubObjectPanel(Document& doc, Prompts& prompts, QWidget* parent)
    : QWidget(parent), doc_(doc), prompts_(prompts) {
    setObjectName("fraSubModel");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MakeHeading(this, "Sub-Model Properties"));
    auto* top = new QGridLayout;
    txtSOBJName_ = new QLineEdit(this);
    txtSOBJName_->setObjectName("txtSOBJName");
    txtSOBJName_->setMaxLength(255);
    auto* nameLabel = new QLabel("Name:", this);
    nameLabel->setBuddy(txtSOBJName_);
    txtSOBJName_->setAccessibleName("Name");
    top->addWidget(nameLabel, 0, 0);
    top->addWidget(txtSOBJName_, 0, 1);
    chkShowSOBJRadius_ = new QCheckBox("Radius:", this);
    chkShowSOBJRadius_->setObjectName("chkShowSOBJRadius");
    txtSOBJRadius_ =
        MakeSpinner(this, "txtSOBJRadius", "Sub-Model Radius", 0, 90000, "####0.00", 0.01f, 1.25f);
    top->addWidget(chkShowSOBJRadius_, 1, 0);
    top->addWidget(txtSOBJRadius_, 1, 1);
    chkShowSOBJBounding_ = new QCheckBox("Show Bounding Box", this);
    chkShowSOBJBounding_->setObjectName("chkShowSOBJBounding");
    top->addWidget(chkShowSOBJBounding_, 2, 0, 1, 2);
    layout->addLayout(top);

    auto* pivot = new QGroupBox("Pivot Point", this);
    auto* pivotGrid = new QGridLayout(pivot);
    AddVectorRows(pivotGrid, 0, "txtSOBJOffset", "Pivot Point", txtSOBJOffset_);
    chkAffectPivot_ = new QCheckBox("Affect Pivot Only", pivot);
    chkAffectPivot_->setObjectName("chkAffectPivot");
    pivotGrid->addWidget(chkAffectPivot_, 3, 0, 1, 2);
    layout->addWidget(pivot);

    auto* properties = new QGroupBox("Properties", this);
    BuildProperties(properties);
    layout->addWidget(properties);
    layout->addStretch(1);
    connectSignals();
    ShowSubModelPanel();
}

void SubObjectPanel::BuildProperties(QWidget* box) {
    auto* layout = new QVBoxLayout(box);
    cboProperties_ = new QComboBox(box);
    cboProperties_->setObjectName("cboProperties");
    cboProperties_->setAccessibleName("Properties");
    for (const PropertyItem& item : kPropertyItems)
        cboProperties_->addItem(item.text, QVariant::fromValue(item.flag));
    layout->addWidget(cboProperties_);
    fraProperties_ = new QStackedWidget(box);
    fraProperties_->setObjectName("fraProperties");
    layout->addWidget(fraProperties_);

    for (int item = 0; item < cboProperties_->count(); ++item) {
        auto* frame = new QWidget(fraProperties_);
        frame->setObjectName(QString("fraProperties_%1").arg(item));
        auto* frameLayout = new QVBoxLayout(frame);
        frameLayout->setContentsMargins(0, 4, 0, 0);
        for (const QString& line : Description(item))
            frameLayout->addWidget(Wrapped(line, frame));
        auto* grid = new QGridLayout;
        frameLayout->addLayout(grid);
        const std::uint32_t flag = kPropertyItems[item].flag;
        if (flag == kPropRotate) {
            txtRotate_ = MakeSpinner(frame, "txtRotate", "Rotate once every", 0.01f, 20, "#0.00",
                                     0.01f, 2.0f);
            AddRow(grid, 0, "Rotate once every", txtRotate_);
            grid->addWidget(new QLabel("seconds.", frame), 0, 2);
        } else if (flag == kPropFov) {
            txtFOV_[0] = MakeSpinner(frame, "txtFOV_0", "FOV", 0, 360, "##0.0", 0.1f, 2.0f);
            txtFOV_[1] = MakeSpinner(frame, "txtFOV_1", "SPR", 0.1f, 60, "#0.0", 0.1f, 2.0f);
            txtFOV_[2] = MakeSpinner(frame, "txtFOV_2", "RT", 0, 10, "#0.0", 0.1f, 1.0f);
            AddRow(grid, 0, "FOV:", txtFOV_[0]);
            AddRow(grid, 1, "SPR:", txtFOV_[1]);
            AddRow(grid, 2, "RT:", txtFOV_[2]);
        } else if (flag == kPropGlow) {
            const char* const colours[3] = {"Red:", "Green:", "Blue:"};
            for (int i = 0; i < 3; ++i) {
                txtGlow_[i] = MakeSpinner(frame, QString("txtGlow_%1").arg(i),
                                          QString(colours[i]).chopped(1), 0, 1, "0.00", 0.01f, 1);
                AddRow(grid, i, colours[i], txtGlow_[i]);
            }
            txtGlow_[3] =
                MakeSpinner(frame, "txtGlow_3", "Glow Radius", 0, 90000, "####0.00", 0.01f, 1);
            AddRow(grid, 3, "Radius:", txtGlow_[3]);
            picGlow_ = new QFrame(frame);
            picGlow_->setObjectName("picGlow");
            picGlow_->setAccessibleName("Preview");
            picGlow_->setFixedSize(48, 24);
            picGlow_->setFrameShape(QFrame::Box);
            picGlow_->setAutoFillBackground(true);
            AddRow(grid, 4, "Preview:", picGlow_);
            auto* picker = new QPushButton("Color Picker", frame);
            picker->setObjectName("cmdColorPicker");
            grid->addWidget(picker, 5, 1);
            connect(picker, &QPushButton::clicked, this, &SubObjectPanel::PickColor);
        } else if (flag == kAllMonitors) {
            lstMonitor_ = new QListWidget(frame);
            lstMonitor_->setObjectName("lstMonitor");
            lstMonitor_->setAccessibleName("Monitors");
            for (int i = 0; i < 8; ++i) {
                auto* entry = new QListWidgetItem(kMonitors[i], lstMonitor_);
                entry->setData(Qt::UserRole, QVariant::fromValue(std::uint32_t{16u} << i));
            }
            lstMonitor_->setCurrentRow(0);
            lstMonitor_->setMinimumHeight(120);
            frameLayout->addWidget(lstMonitor_);
        }
        frameLayout->addStretch(1);
        fraProperties_->addWidget(frame);
    }
}

void SubObjectPanel::connectSignals() {
    for (auto signal :
         {&Document::modelReset, &Document::selectionChanged, &Document::structureChanged}) {
        connect(&doc_, signal, this, &SubObjectPanel::ShowSubModelPanel);
    }
    connect(&doc_, &Document::subObjectChanged, this, [this](int s) {
        if (s == doc_.selection().curSOBJ) ShowSubModelPanel();
    });
    connect(&doc_, &Document::geometryChanged, this, [this] { ShowSubModelPanel(); });
    BindDisplayFlag(doc_, chkShowSOBJRadius_, &DisplaySettings::ShowSOBJRadius);
    BindDisplayFlag(doc_, chkShowSOBJBounding_, &DisplaySettings::ShowSOBJBounding);
    connect(txtSOBJName_, &QLineEdit::editingFinished, this, &SubObjectPanel::CommitName);
    connect(txtSOBJRadius_, &spinControl::Change, this, [this] {
        const int s = doc_.selection().curSOBJ;
        if (!filling_ && s != -1)
            doc_.Apply(MakeSubObjectRadiusCommand(doc_, s, txtSOBJRadius_->Value()));
    });
    for (spinControl* spin : txtSOBJOffset_)
        connect(spin, &spinControl::Change, this, &SubObjectPanel::StoreOffset);
    connect(cboProperties_, &QComboBox::activated, this, [this](int item) {
        ShowPropertyFrame(item);
        const std::uint32_t flag = ItemFlag(item);
        StoreSOBJProperty(
            flag == kAllMonitors ? lstMonitor_->currentItem()->data(Qt::UserRole).toUInt() : flag);
        doc_.EndEditSession();
    });
    connect(txtRotate_, &spinControl::Change, this, [this] { StoreSOBJProperty(kPropRotate); });
    for (spinControl* spin : txtFOV_)
        connect(spin, &spinControl::Change, this, [this] { StoreSOBJProperty(kPropFov); });
    for (spinControl* spin : txtGlow_) {
        connect(spin, &spinControl::Change, this, [this] {
            UpdateGlowPreview();
            StoreSOBJProperty(kPropGlow);
        });
    }
    connect(lstMonitor_, &QListWidget::itemClicked, this, [this](QListWidgetItem* entry) {
        StoreSOBJProperty(entry->data(Qt::UserRole).toUInt());
        doc_.EndEditSession();
    });
    // One typed entry or one drag is one undo step.
    std::vector<spinControl*> spinners{txtSOBJRadius_, txtRotate_};
    spinners.insert(spinners.end(), std::begin(txtSOBJOffset_), std::end(txtSOBJOffset_));
    spinners.insert(spinners.end(), std::begin(txtFOV_), std::end(txtFOV_));
    spinners.insert(spinners.end(), std::begin(txtGlow_), std::end(txtGlow_));
    for (spinControl* spin : spinners)
        connect(spin, &spinControl::ChangeDone, &doc_, &Document::EndEditSession);
}

std::uint32_t SubObjectPanel::ItemFlag(int item) const {
    return cboProperties_->itemData(item).toUInt();
}

void SubObjectPanel::ShowSubModelPanel() {
    const int s = doc_.selection().curSOBJ;
    if (s == -1 || !doc_.model().IsRecord(s)) return;
    filling_ = true;
    const SubObject& sub = doc_.model().Sub(s);
    txtSOBJRadius_->SetValue(sub.Radius);
    chkShowSOBJRadius_->setChecked(doc_.display().ShowSOBJRadius);
    chkShowSOBJBounding_->setChecked(doc_.display().ShowSOBJBounding);
    if (!txtSOBJName_->hasFocus()) txtSOBJName_->setText(FromFileText(sub.Name));
    txtSOBJOffset_[0]->SetValue(sub.Offset.X);
    txtSOBJOffset_[1]->SetValue(sub.Offset.Y);
    txtSOBJOffset_[2]->SetValue(sub.Offset.Z);
    ShowSOBJProperty();
    filling_ = false;
}

void SubObjectPanel::ShowSOBJProperty() {
    const int s = doc_.selection().curSOBJ;
    if (s == -1 || !doc_.model().IsRecord(s)) return;
    const bool wasFilling = filling_;
    filling_ = true;
    const SubObject& sub = doc_.model().Sub(s);
    const std::uint32_t flag = sub.PropertyFlags;
    QString key = "none";
    if (flag == kPropGlow) {
        for (int i = 0; i < 3; ++i)
            txtGlow_[i]->SetValue(sub.GlowColor[static_cast<std::size_t>(i)]);
        txtGlow_[3]->SetValue(sub.GlowSize);
        UpdateGlowPreview();
        key = "glow";
    } else if (flag == kPropRotate) {
        txtRotate_->SetValue(sub.RotateSpeed);
        key = "rotate";
    } else if (flag == kPropFov) {
        for (int i = 0; i < 3; ++i)
            txtFOV_[i]->SetValue(sub.FovValues[static_cast<std::size_t>(i)]);
        key = "turret";
    } else if (flag >= 16 && flag <= 2048 && (flag & (flag - 1)) == 0) {
        for (int i = 0; i < lstMonitor_->count(); ++i) {
            if (lstMonitor_->item(i)->data(Qt::UserRole).toUInt() == flag)
                lstMonitor_->setCurrentRow(i);
        }
        key = "monitor";
    } else {
        const std::pair<std::uint32_t, const char*> plain[] = {
            {kPropShell, "shell"},   {kPropFrontFace, "frontface"}, {kPropFacing, "facing"},
            {kPropViewer, "viewer"}, {kPropLayer, "layer"},         {kPropCustom, "custom"},
            {kPropJitter, "jitter"}};
        for (const auto& [f, k] : plain) {
            if (f == flag) key = k;
        }
    }
    SelectPropertyItem(key);
    filling_ = wasFilling;
}

void SubObjectPanel::SelectPropertyItem(const QString& key) {
    for (int i = 0; i < cboProperties_->count(); ++i) {
        if (cboProperties_->itemText(i).contains(key, Qt::CaseInsensitive)) {
            cboProperties_->setCurrentIndex(i);
            ShowPropertyFrame(i);
            return;
        }
    }
}

void SubObjectPanel::ShowPropertyFrame(int item) {
    fraProperties_->setCurrentIndex(item);
}

PropertyValues SubObjectPanel::Values() const {
    PropertyValues v;
    v.RotatePeriod = txtRotate_->Value();
    for (std::size_t i = 0; i < 3; ++i) {
        v.Fov[i] = txtFOV_[i]->Value();
        v.GlowColor[i] = txtGlow_[i]->Value();
    }
    v.GlowSize = txtGlow_[3]->Value();
    return v;
}

void SubObjectPanel::StoreSOBJProperty(std::uint32_t flag) {
    const int s = doc_.selection().curSOBJ;
    if (filling_ || s == -1) return;
    doc_.Apply(MakeStorePropertyCommand(doc_, s, flag, Values()));
}

void SubObjectPanel::UpdateGlowPreview() {
    const auto byte = [this](int i) {
        return static_cast<int>(std::lround(txtGlow_[i]->Value() * 255.0f));
    };
    QPalette palette = picGlow_->palette();
    palette.setColor(QPalette::Window, QColor(byte(0), byte(1), byte(2)));
    picGlow_->setPalette(palette);
}

void SubObjectPanel::PickColor() {
    const QColor initial = picGlow_->palette().color(QPalette::Window);
    const QColor chosen = prompts_.ChooseColor(this, initial);
    if (!chosen.isValid()) return;
    filling_ = true;
    txtGlow_[0]->SetValue(static_cast<float>(chosen.red()) / 255.0f);
    txtGlow_[1]->SetValue(static_cast<float>(chosen.green()) / 255.0f);
    txtGlow_[2]->SetValue(static_cast<float>(chosen.blue()) / 255.0f);
    filling_ = false;
    UpdateGlowPreview();
    StoreSOBJProperty(kPropGlow);
    doc_.EndEditSession();
}

void SubObjectPanel::CommitName() {
    const int s = doc_.selection().curSOBJ;
    if (s == -1 || !doc_.modelReady()) return;
    const QString text = txtSOBJName_->text();
    const std::string stored = doc_.model().Sub(s).Name;
    if (text.isEmpty()) {
        txtSOBJName_->setText(FromFileText(stored));
        return;
    }
    doc_.Apply(MakeRenameCommand(doc_, s, ToFileText(text)));
    doc_.EndEditSession();
}

void SubObjectPanel::StoreOffset() {
    const int s = doc_.selection().curSOBJ;
    if (filling_ || s == -1) return;
    const Vector3 offset{txtSOBJOffset_[0]->Value(), txtSOBJOffset_[1]->Value(),
                         txtSOBJOffset_[2]->Value()};
    doc_.Apply(MakeOffsetCommand(doc_, s, offset, chkAffectPivot_->isChecked()));
}

}  // namespace mw
