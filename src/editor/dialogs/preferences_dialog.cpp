#include "editor/dialogs/preferences_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

#include "convert/pofgen.h"
#include "editor/dialogs/ogf_path_dialog.h"
#include "editor/dialogs/preference_fields.h"
#include "editor/panels/panel_widgets.h"
#include "editor/prompts.h"
#include "editor/widgets/spin_control.h"

namespace mw {
namespace {

QString Text(const std::string& s) {
    return QString::fromStdString(s);
}

const char* const kFlagNames[7] = {
    "chkSubObjSepPlanes", "chkUseFirstSepPlane", "chkConflictSplitRatio", "chkUseLocalSepPlanes",
    "chkCombineObjects",  "chkAnimation",        "chkCapitalShips"};
const char* const kFlagCaptions[7] = {"Show Separation Planes (Debug)",
                                      "Use First Separation Plane (Debug)",
                                      "Minimize Conflict/Split Ratio",
                                      "Use Local Separation Planes",
                                      "Combine Objects",
                                      "Animation Output",
                                      "Capital Ships"};

struct BrowseSpec {
    const char* title;
    const char* filter;
};
// The file dialogs of Browse 0, 1, 3, 4 and 5 (2 is the folder chooser).
const BrowseSpec kBrowse[6] = {
    {"Locate D3 Hog file", "Descent3 HOG File (*d3.hog)"},
    {"Locate HOG/MN3, GAM file",
     "Descent3 MN3/HOG, GAM Files (*.mn3 *.hog *.gam);;Descent 3 MN3/HOG File (*.mn3 "
     "*.hog);;Descent 3 GAM File (*.gam)"},
    {"", ""},
    {"Locate Pofgen.exe/BSPGen.exe", "Pofgen/BSPGen (pofgen.exe bspgen.exe)"},
    {"Select Background Image File",
     "All Graphics Files (*.tga *.bmp *.gif *.jpg *.ico *.wmf *.emf);;Targa Files "
     "(*.tga);;Bitmap Files (*.bmp);;Graphic Image File (*.gif);;Icon (*.ico);;JPEG "
     "(*.jpg);;Metafile (*.wmf *.emf)"},
    {"Locate the game program", "Descent 3 program (Descent3 descent3);;All Files (*)"},
};

QLineEdit* NumberField(QWidget* parent, const QString& name, const QString& accessible) {
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setAccessibleName(accessible);
    field->setMaximumWidth(110);
    return field;
}

}  // namespace

frmPreferences::frmPreferences(Settings& settings, Prompts& prompts, QWidget* parent)
    : QDialog(parent),
      settings_(settings),
      prompts_(prompts),
      places_(AutofindPlaces::FromEnvironment()),
      chooseFolder_([](QWidget* p, const QString& start) { return frmOGFPath::Choose(p, start); }) {
    setObjectName("frmPreferences");
    setWindowTitle(QString(kAppTitle) + " Preferences");
    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    top->addWidget(BuildPaths(), 1);
    top->addWidget(BuildCompilerOptions());
    layout->addLayout(top);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(BuildRoomOptions(), 1);
    bottom->addWidget(BuildRecoveryOptions());
    layout->addLayout(bottom);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdOK_ = new QPushButton("OK", this);
    cmdOK_->setObjectName("cmdOK");
    cmdOK_->setDefault(true);
    auto* cancel = new QPushButton("Cancel", this);
    cancel->setObjectName("cmdCancel");
    buttons->addWidget(cmdOK_);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(cmdOK_, &QPushButton::clicked, this, &frmPreferences::accept);
    connect(cancel, &QPushButton::clicked, this, &frmPreferences::reject);

    ShowSettings();
    WatchForChanges();
    okEnabled(false);
}

frmPreferences::~frmPreferences() {
    StopCheckingFields();
}

void frmPreferences::StopCheckingFields() {
    for (QLineEdit* field : findChildren<QLineEdit*>())
        disconnect(field, &QLineEdit::editingFinished, this, nullptr);
}

void frmPreferences::done(int result) {
    StopCheckingFields();
    QDialog::done(result);
}

QWidget* frmPreferences::BuildPaths() {
    auto* group = new QGroupBox("General Path Settings", this);
    group->setObjectName("fraPaths");
    auto* v = new QVBoxLayout(group);
    const char* const names[6] = {"txtD3Path",     "txtMN3GAMPath", "txtOGFPath",
                                  "txtPathPofgen", "txtBackground", "txtGameProgram"};
    const char* const frames[6] = {"D3 Hog File",     "Custom MN3/HOG, GAM File", "Custom OGF Path",
                                   "Pofgen.exe File", "Background Image",         "Game program:"};
    for (int i = 0; i < 6; ++i) {
        auto* frame = new QGroupBox(frames[i], group);
        auto* row = new QHBoxLayout(frame);
        auto* field = new QLineEdit(frame);
        field->setObjectName(names[i]);
        field->setAccessibleName(QString(frames[i]).remove(':'));
        field->setMinimumWidth(300);
        auto* browse = new QPushButton("Browse...", frame);
        browse->setObjectName(QString("cmdBrowse_%1").arg(i));
        browse->setAccessibleName(QString("Browse... ") + QString(frames[i]).remove(':'));
        browse->setAutoDefault(false);
        row->addWidget(field, 1);
        row->addWidget(browse);
        v->addWidget(frame);
        paths_[i] = field;
        connect(browse, &QPushButton::clicked, this, [this, i] { Browse(i); });
        connect(field, &QLineEdit::editingFinished, this, [this, field] { LeaveField(field); });
    }
    auto* row = new QHBoxLayout;
    auto* autofind = new QPushButton("Autofind D3.hog && Pofgen", group);
    autofind->setObjectName("cmdAutofind");
    autofind->setAccessibleName("Autofind D3.hog & Pofgen");
    auto* clear = new QPushButton("Clear Paths", group);
    clear->setObjectName("cmdClearAllPaths");
    for (QPushButton* b : {autofind, clear}) {
        b->setAutoDefault(false);
        row->addWidget(b);
    }
    row->addStretch(1);
    v->addLayout(row);
    v->addStretch(1);
    connect(autofind, &QPushButton::clicked, this, &frmPreferences::Autofind);
    connect(clear, &QPushButton::clicked, this, &frmPreferences::ClearAllPaths);
    return group;
}

QWidget* frmPreferences::BuildCompilerOptions() {
    auto* group = new QGroupBox("POFGEN Options/Command Line Switches", this);
    group->setObjectName("fraPofgen");
    auto* v = new QVBoxLayout(group);
    auto* grid = new QGridLayout;
    txtScaleFactor_ = NumberField(group, "txtScaleFactor", "Scale Factor");
    txtErrorTolerance_ = NumberField(group, "txtErrorTolerance", "Error Tolerance");
    AddRow(grid, 0, "Scale Factor:", txtScaleFactor_);
    AddRow(grid, 1, "Error Tolerance:", txtErrorTolerance_);
    v->addLayout(grid);

    auto* middle = new QHBoxLayout;
    auto* shading = new QGroupBox("Shading Mode:", group);
    auto* shadingLayout = new QVBoxLayout(shading);
    const char* const shadingCaptions[3] = {"Flat Shaded", "Shaded by Normals",
                                            "Shaded by Light Source"};
    for (int i = 0; i < 3; ++i) {
        optShadingMode_[i] = new QRadioButton(shadingCaptions[i], shading);
        optShadingMode_[i]->setObjectName(QString("optShadingMode_%1").arg(i));
        shadingLayout->addWidget(optShadingMode_[i]);
    }
    auto* chunks = new QGroupBox("Chunk Splits:", group);
    auto* chunkLayout = new QHBoxLayout(chunks);
    for (int i = 0; i < 3; ++i) {
        txtChunkSplits_[i] = NumberField(chunks, QString("txtChunkSplits_%1").arg(i),
                                         QString("Chunk Splits %1").arg(i + 1));
        txtChunkSplits_[i]->setMaximumWidth(50);
        chunkLayout->addWidget(txtChunkSplits_[i]);
    }
    middle->addWidget(shading);
    middle->addWidget(chunks, 0, Qt::AlignTop);
    v->addLayout(middle);

    auto* planes = new QGroupBox("Separation Plane Options:", group);
    auto* planesLayout = new QVBoxLayout(planes);
    auto* misc = new QGroupBox("Miscellaneous:", group);
    auto* miscLayout = new QVBoxLayout(misc);
    for (int i = 0; i < 7; ++i) {
        QGroupBox* frame = i < 4 ? planes : misc;
        flags_[i] = new QCheckBox(kFlagCaptions[i], frame);
        flags_[i]->setObjectName(kFlagNames[i]);
        (i < 4 ? planesLayout : miscLayout)->addWidget(flags_[i]);
    }
    chkPOFGENOutput_ = new QCheckBox("Display POFGEN Output Window.", misc);
    chkPOFGENOutput_->setObjectName("chkPOFGENOutput");
    miscLayout->addWidget(chkPOFGENOutput_);
    v->addWidget(planes);
    v->addWidget(misc);

    auto* reset = new QPushButton("Reset to Defaults", group);
    reset->setObjectName("cmdReset");
    reset->setAutoDefault(false);
    v->addWidget(reset, 0, Qt::AlignRight);
    connect(reset, &QPushButton::clicked, this, &frmPreferences::ResetDefaults);

    for (QLineEdit* field : {txtScaleFactor_, txtErrorTolerance_, txtChunkSplits_[0],
                             txtChunkSplits_[1], txtChunkSplits_[2]}) {
        field->installEventFilter(this);
        connect(field, &QLineEdit::editingFinished, this, [this, field] { LeaveField(field); });
    }
    return group;
}

QWidget* frmPreferences::BuildRoomOptions() {
    auto* group = new QGroupBox("ORF Conversion Settings:", this);
    group->setObjectName("fraORF");
    auto* grid = new QGridLayout(group);
    const char* const captions[2] = {"Each Sub-Model as a Room",
                                     "Combine All Sub-Models into one Room"};
    for (int i = 0; i < 2; ++i) {
        optOOFORF_[i] = new QRadioButton(captions[i], group);
        optOOFORF_[i]->setObjectName(QString("optOOFORF_%1").arg(i));
        grid->addWidget(optOOFORF_[i], i, 0);
    }
    chkOutputSpecial_ = new QCheckBox("Output Special Points as Faces", group);
    chkOutputSpecial_->setObjectName("chkOutputSpecial");
    grid->addWidget(chkOutputSpecial_, 0, 1, 1, 2);
    txtSpecialFaceSize_ = MakeSpinner(group, "txtSpecialFaceSize", "Special Points Face Size", 0.1f,
                                      100.0f, "##0.0", 0.1f, 2.0f);
    auto* label = new QLabel("Special Points Face Size:", group);
    label->setBuddy(txtSpecialFaceSize_);
    grid->addWidget(label, 1, 1);
    grid->addWidget(txtSpecialFaceSize_, 1, 2);
    grid->setColumnStretch(3, 1);
    return group;
}

QWidget* frmPreferences::BuildRecoveryOptions() {
    auto* group = new QGroupBox("Recovery:", this);
    group->setObjectName("fraRecovery");
    auto* row = new QHBoxLayout(group);
    txtAutosave_ = MakeSpinner(group, "txtAutosave", "Autosave every (seconds, 0 never)", 0.0f,
                               static_cast<float>(kMaxAutosaveSeconds), "###0", 1.0f, 2.0f);
    auto* label = new QLabel("&Autosave every:", group);
    label->setBuddy(txtAutosave_);
    row->addWidget(label);
    row->addWidget(txtAutosave_);
    row->addWidget(new QLabel("sec. (0: never)", group));
    return group;
}

void frmPreferences::ShowSettings() {
    const Settings& s = settings_;
    paths_[kD3]->setText(ExistingD3Hog(Text(s.D3HogPath)));
    paths_[kMission]->setText(ExistingMission(Text(s.MN3GAMPath)));
    paths_[kBackground]->setText(ExistingPicture(Text(s.BackgroundImage)));
    paths_[kOGF]->setText(Text(s.OGFPath));
    paths_[kCompiler]->setText(Text(s.POFGENPath));
    paths_[kGame]->setText(ExistingProgram(Text(s.GameProgram)));
    txtScaleFactor_->setText(EightDecimals(s.PofScale));
    txtErrorTolerance_->setText(EightDecimals(s.PofErrorFactor));
    for (std::size_t i = 0; i < 3; ++i)
        txtChunkSplits_[i]->setText(QString::number(s.PofChunkSplits[i]));
    optShadingMode_[std::min<std::size_t>(s.PofShadingMode, 2)]->setChecked(true);
    for (std::size_t i = 0; i < kPofgenFlags.size(); ++i)
        flags_[i]->setChecked(s.*kPofgenFlags[i].field);
    chkPOFGENOutput_->setChecked(s.PofDisplayOutput);
    optOOFORF_[s.CombineRooms ? 1 : 0]->setChecked(true);
    chkOutputSpecial_->setChecked(s.SpecialPointsAsFaces);
    txtSpecialFaceSize_->SetValue(s.SpecialFaceSize);
    txtAutosave_->SetValue(static_cast<float>(s.AutosaveSeconds));
}

// Any change the user makes enables OK.
void frmPreferences::WatchForChanges() {
    for (QLineEdit* field : findChildren<QLineEdit*>()) {
        if (field->parent() == txtSpecialFaceSize_ || field->parent() == txtAutosave_) continue;
        connect(field, &QLineEdit::textChanged, this, &frmPreferences::EnableOK);
    }
    for (QAbstractButton* b : findChildren<QAbstractButton*>()) {
        if (b->isCheckable())
            connect(b, &QAbstractButton::clicked, this, &frmPreferences::EnableOK);
    }
    connect(txtSpecialFaceSize_, &spinControl::Change, this, &frmPreferences::EnableOK);
    connect(txtAutosave_, &spinControl::Change, this, &frmPreferences::EnableOK);
}

void frmPreferences::okEnabled(bool on) {
    cmdOK_->setEnabled(on);
}

bool frmPreferences::eventFilter(QObject* watched, QEvent* event) {
    // Entering a number field selects its whole text (after the click has placed the caret).
    if (event->type() == QEvent::FocusIn) {
        if (auto* field = qobject_cast<QLineEdit*>(watched)) {
            QTimer::singleShot(0, field, &QLineEdit::selectAll);
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmPreferences::LeaveField(QLineEdit* field) {
    const QString text = field->text();
    FieldCheck check{text, {}};
    if (field == paths_[kD3] || field == paths_[kMission] || field == paths_[kBackground]) {
        check.text = ExistingFile(text);
    } else if (field == paths_[kGame]) {
        check.text = ExistingProgram(text);
    } else if (field == paths_[kOGF]) {
        check.text = ExistingFolder(text);
    } else if (field == paths_[kCompiler]) {
        if (!text.isEmpty()) {
            check.text = ExistingCompiler(text);
            if (!check.text.isEmpty()) settings_.POFGENPath = check.text.toStdString();
        }
    } else if (field == txtScaleFactor_) {
        check = CheckScaleField(text);
    } else if (field == txtErrorTolerance_) {
        check = CheckToleranceField(text);
    } else {
        check = CheckChunkField(text);
    }
    if (check.text != text) field->setText(check.text);
    if (!check.message.isEmpty()) prompts_.Message(this, check.message, PromptIcon::None);
}

void frmPreferences::Autofind() {
    const AutofindResult found = mw::Autofind(places_);
    if (!found.gameProgram.empty()) {
        paths_[kGame]->setText(Text(found.gameProgram));
        EnableOK();
    }
    if (found.gameDir.empty()) {
        prompts_.Message(this,
                         "Autofind failed! Could not find Descent 3 Directory!\n"
                         "You will need to find these files manually.",
                         PromptIcon::Exclamation);
        return;
    }
    if (!found.d3Hog.empty()) paths_[kD3]->setText(Text(found.d3Hog));
    if (!found.compiler.empty()) paths_[kCompiler]->setText(Text(found.compiler));
    EnableOK();
}

void frmPreferences::ClearAllPaths() {
    for (QLineEdit* f : paths_)
        f->clear();
    EnableOK();
}

void frmPreferences::ResetDefaults() {
    txtScaleFactor_->setText("0.02540000");
    txtErrorTolerance_->setText("0.00000000");
    optShadingMode_[0]->setChecked(true);
    for (QLineEdit* f : txtChunkSplits_)
        f->setText("0");
    for (QCheckBox* c : flags_)
        c->setChecked(false);
    chkPOFGENOutput_->setChecked(true);
    EnableOK();
}

void frmPreferences::Browse(int index) {
    QLineEdit* field = paths_[index];
    QString chosen;
    if (index == 2) {
        chosen = chooseFolder_(this, field->text());
        if (chosen.isEmpty()) return;
        chosen = WithTrailingSeparator(chosen);
    } else {
        const QString initial = index == 0 && field->text().isEmpty() ? "d3.hog" : field->text();
        chosen = prompts_.OpenFileName(this, kBrowse[index].title, kBrowse[index].filter, initial);
        if (chosen.isEmpty()) return;
        if (index == 3 && !NamesCompiler(chosen.toStdString())) return;
    }
    field->setText(chosen);
    EnableOK();
}

void frmPreferences::ApplyCompilerOptions() {
    std::array<long, 3> chunks{};
    int zeros = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        chunks[i] = CheckChunkField(txtChunkSplits_[i]->text()).text.toLong();
        zeros += chunks[i] == 0;
    }
    if (zeros != 0 && zeros != 3) {
        prompts_.Message(this, "Invalid Chunk Size! Must be all 0's or all above 0!",
                         PromptIcon::None);
        return;
    }
    PofgenFields f;
    f.scale = txtScaleFactor_->text().toStdString();
    f.error = txtErrorTolerance_->text().toStdString();
    f.shading = optShadingMode_[2]->isChecked() ? 2 : optShadingMode_[1]->isChecked() ? 1 : 0;
    for (std::size_t i = 0; i < 3; ++i)
        f.chunks[i] = txtChunkSplits_[i]->text().toStdString();
    for (std::size_t i = 0; i < f.flags.size(); ++i)
        f.flags[i] = flags_[i]->isChecked();
    Settings& s = settings_;
    s.PofgenSwitches = PofgenSwitchesFromFields(f);
    s.PofScale = CheckScaleField(txtScaleFactor_->text()).text.toFloat();
    s.PofErrorFactor = CheckToleranceField(txtErrorTolerance_->text()).text.toFloat();
    s.PofShadingMode = static_cast<std::uint8_t>(f.shading);
    for (std::size_t i = 0; i < 3; ++i)
        s.PofChunkSplits[i] = static_cast<std::uint8_t>(chunks[i]);
    for (std::size_t i = 0; i < kPofgenFlags.size(); ++i)
        s.*kPofgenFlags[i].field = f.flags[i];
    s.PofDisplayOutput = chkPOFGENOutput_->isChecked();
    s.SpecialFaceSize = txtSpecialFaceSize_->Value();
}

void frmPreferences::accept() {
    Settings& s = settings_;
    const QString d3 = paths_[kD3]->text();
    const QString mission = paths_[kMission]->text();
    const QString ogf = WithTrailingSeparator(paths_[kOGF]->text());
    pathsChanged_ = mission != Text(s.MN3GAMPath) || paths_[kOGF]->text() != Text(s.OGFPath) ||
                    d3 != Text(s.D3HogPath);
    s.D3HogPath = ExistingD3Hog(d3).toStdString();
    s.MN3GAMPath = ExistingMission(mission).toStdString();
    s.OGFPath = ogf.toStdString();
    DeriveArchivePaths(s);
    backgroundChanged_ = paths_[kBackground]->text() != Text(s.BackgroundImage);
    s.BackgroundImage = ExistingPicture(paths_[kBackground]->text()).toStdString();
    // A compiler Autofind or Browse put in the field counts as much as one typed there.
    s.POFGENPath = ExistingCompiler(paths_[kCompiler]->text()).toStdString();
    s.GameProgram = ExistingProgram(paths_[kGame]->text()).toStdString();

    ApplyCompilerOptions();
    s.CombineRooms = optOOFORF_[1]->isChecked();
    s.SpecialPointsAsFaces = chkOutputSpecial_->isChecked();
    s.AutosaveSeconds = static_cast<int>(txtAutosave_->Value());
    QDialog::accept();
}

}  // namespace mw
