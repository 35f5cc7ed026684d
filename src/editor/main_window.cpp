#include "editor/main_window.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QMenu>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

#include "editor/actions.h"
#include "editor/animation_strip.h"
#include "editor/autosave.h"
#include "editor/dialogs/about_dialog.h"
#include "editor/dialogs/check_dialog.h"
#include "editor/dialogs/game_object_dialog.h"
#include "editor/dialogs/game_test_window.h"
#include "editor/dialogs/help_window.h"
#include "editor/dialogs/preferences_dialog.h"
#include "editor/dialogs/progress_dialog.h"
#include "editor/document.h"
#include "editor/file_commands.h"
#include "editor/game_test.h"
#include "editor/key_menu.h"
#include "editor/model_textures.h"
#include "editor/p3d_import.h"
#include "editor/panels/animation_panel.h"
#include "editor/panels/batteries_panel.h"
#include "editor/panels/model_panel.h"
#include "editor/panels/panel_host.h"
#include "editor/panels/point_panel.h"
#include "editor/panels/subobject_panel.h"
#include "editor/panels/textures_panel.h"
#include "editor/playback.h"
#include "editor/prompts.h"
#include "editor/recovery.h"
#include "editor/tree/model_tree.h"
#include "editor/tree/tree_control.h"
#include "editor/viewport.h"
#include "editor/widgets/key_control.h"

namespace mw {

frmOOF::frmOOF(clsOOF& oof, GameData& game, Settings& settings, const QPixmap& logo,
               Prompts* prompts, QWidget* parent, const QString& recoveryFolder)
    : QMainWindow(parent),
      ownPrompts_(prompts == nullptr ? std::make_unique<DialogPrompts>() : nullptr),
      prompts_(prompts == nullptr ? ownPrompts_.get() : prompts),
      doc_(std::make_unique<Document>(oof)),
      settings_(settings),
      game_(game),
      logo_(logo) {
    setObjectName("frmOOF");
    setAccessibleName(kAppTitle);
    doc_->SetDisplay(DisplaySettings::From(settings));
    // The textures follow the document before any view does.
    textures_ = new ModelTextures(*doc_, game, settings, prompts_, this);
    playback_ = new Playback(*doc_, this);
    doc_->undoStack().setUndoLimit(settings.UndoLimit);
    recoveryFolder_ = recoveryFolder.isEmpty() ? RecoveryFolder() : recoveryFolder;
    autosave_ = new Autosave(*doc_, recoveryFolder_, settings.AutosaveSeconds, this);

    auto* central = new QWidget(this);
    auto* columns = new QSplitter(Qt::Horizontal, central);
    columns->setObjectName("splitMain");
    columns->setChildrenCollapsible(false);
    auto* panels = new PanelHost(*doc_, logo_, columns);
    panels->tree().SetPrompts(prompts_);
    auto* tree = new ModelTree(panels->tree(), *doc_);
    panels->AddPanel("Model", new ModelPanel(*doc_));
    panels->AddPanel("SubModel", new SubObjectPanel(*doc_, *prompts_));
    panels->AddPanel("Points", new PointPanel(*doc_));
    panels->AddPanel("Batteries", new BatteriesPanel(*doc_));
    panels->AddPanel("Textures", new TexturesPanel(*doc_, *textures_));
    panels->AddPanel("Animation", new AnimationPanel(*doc_));
    panels->RefreshPanels();

    auto* right = new QWidget(columns);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    viewport_ = new Viewport(*doc_, *textures_, *playback_, *prompts_, right);
    rightLayout->addWidget(viewport_, 1);
    auto* fraAnimation = new QGroupBox("Animation Controls", right);
    fraAnimation->setObjectName("fraAnimation");
    fraAnimation->setAccessibleName("Animation Controls");
    fraAnimation->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* stripLayout = new QHBoxLayout(fraAnimation);
    stripLayout->setContentsMargins(6, 4, 6, 4);
    auto* strip = new AnimationStrip(*doc_, fraAnimation);
    stripLayout->addWidget(strip);
    rightLayout->addWidget(fraAnimation);
    columns->addWidget(panels);
    columns->addWidget(right);
    columns->setStretchFactor(1, 1);
    columns->setSizes({330, 770});
    auto* layout = new QHBoxLayout(central);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(columns);
    setCentralWidget(central);

    files_ = new FileCommands(*doc_, game, settings, *prompts_, this);
    actions_ = new MainActions(*this, *doc_, *files_, settings, game, *prompts_);
    connect(actions_, &MainActions::helpRequested, this, &frmOOF::ShowHelp);
    connect(actions_, &MainActions::aboutRequested, this, &frmOOF::ShowAbout);
    connect(actions_, &MainActions::checkRequested, this, &frmOOF::ShowCheck);
    connect(actions_, &MainActions::gameObjectRequested, this, &frmOOF::ShowGameObject);
    connect(actions_, &MainActions::testInGameRequested, this, &frmOOF::ShowTestInGame);
    connect(actions_, &MainActions::preferencesRequested, this, &frmOOF::ShowPreferences);
    connect(this, &frmOOF::gameDataChanged, actions_, &MainActions::PopulateHOGlist);
    connect(this, &frmOOF::settingsChanged, actions_, &MainActions::UpdateFileEnabling);
    connect(this, &frmOOF::settingsChanged, autosave_,
            [this] { autosave_->SetInterval(settings_.AutosaveSeconds); });
    connect(autosave_, &Autosave::copyFailed, this, [this](const QString& message) {
        statusBar()->showMessage("The recovery copy could not be written: " + message);
    });
    QMenu* modeMenu = actions_->menu("mnuViewModeMain");
    connect(viewport_, &Viewport::contextMenuRequested, modeMenu,
            [modeMenu](QPoint at) { modeMenu->popup(at); });
    auto* import = new P3DImport(*files_, settings, *prompts_, this);
    connect(actions_, &MainActions::importP3DRequested, import, &P3DImport::Import);
    runPreferences_ = [](frmPreferences& dialog) { dialog.exec(); };
    runGameObject_ = [](GameObjectDialog& dialog) { dialog.exec(); };
    files_->SetModelCheck(DocumentCheck(*doc_, &textures_->loaded(), &settings));
    files_->SetTextures(textures_);
    auto* keyMenu = new KeyMenu(*doc_, *actions_, strip->timeline(), this);
    keyMenu->setObjectName("keyMenu");
    connect(tree, &ModelTree::editMenuRequested, actions_, &MainActions::PopupEditMenu);
    actions_->PopulateHOGlist();
    // Preferences and Import P3D are offered now that someone answers them.
    actions_->UpdateEnabling();
    actions_->UpdateFileEnabling();

    connect(doc_.get(), &Document::fileChanged, this, &frmOOF::UpdateTitle);
    connect(doc_.get(), &Document::modelReset, this, &frmOOF::UpdateTitle);
    connect(doc_.get(), &Document::cleanChanged, this, &frmOOF::UpdateTitle);
    UpdateTitle();
    resize(1100, 760);
}

bool frmOOF::ViewportReady() const {
    return viewport_->isValid();
}

frmOOF::~frmOOF() {
    // The views hold the document; they go first.
    doc_->disconnect(this);
    delete check_;
    delete test_;
    delete takeCentralWidget();
    delete actions_;
    delete files_;
}

void frmOOF::UpdateTitle() {
    if (doc_->hasModel()) {
        setWindowTitle(doc_->ModelTitle() + "[*] - " + kAppTitle);
    } else {
        setWindowTitle(kAppTitle);
    }
    setWindowModified(doc_->hasModel() && doc_->isModified());
}

bool frmOOF::LoadModel(const QString& path) {
    return files_->OpenPath(path);
}

void frmOOF::ShowHelp() {
    const QString index = FindHelpIndex(programDir_);
    if (index.isEmpty()) {
        prompts_->Message(this, MissingHelpMessage(), PromptIcon::Exclamation);
        return;
    }
    if (help_ == nullptr) help_ = new HelpWindow(index, this);
    help_->show();
    help_->raise();
}

void frmOOF::ShowCheck() {
    // A new window checks as it is made; one that was closed checks again.
    if (check_ == nullptr) {
        check_ =
            new CheckDialog(*doc_, DocumentCheck(*doc_, &textures_->loaded(), &settings_), this);
    } else {
        check_->Refresh();
    }
    check_->show();
    check_->raise();
}

void frmOOF::ShowGameObject() {
    GameObjectDialog dialog(*doc_, game_, settings_, *prompts_, this);
    runGameObject_(dialog);
}

void frmOOF::ShowTestInGame() {
    std::optional<PlaySetup> setup = PrepareTestInGame(*doc_, *files_, settings_, *prompts_, this);
    if (!setup) return;
    if (!testFolder_.isEmpty()) setup->Scratch = testFolder_.toStdString();
    if (test_ == nullptr) test_ = new GameTestWindow(this);
    test_->show();
    test_->raise();
    const QString error = test_->Start(*setup);
    if (!error.isEmpty()) prompts_->Message(this, error, PromptIcon::Exclamation);
}

void frmOOF::ShowPreferences() {
    frmPreferences dialog(settings_, *prompts_, this);
    runPreferences_(dialog);
    ApplyPreferences(dialog.PathsChanged(), dialog.BackgroundChanged());
}

void frmOOF::ApplyPreferences(bool pathsChanged, bool backgroundChanged) {
    repaint();
    emit settingsChanged();
    if (backgroundChanged) doc_->SetBackgroundImage(settings_.BackgroundImage);
    if (!pathsChanged) return;
    ReadGameData();
    if (doc_->modelReady() &&
        prompts_->Ask(this, "Reload Model Textures?", QMessageBox::Yes | QMessageBox::No,
                      PromptIcon::Question) == QMessageBox::Yes) {
        textures_->Reload();
        textures_->LoadGlow();
    }
}

void frmOOF::ReadGameData() {
    {
        frmProgress progress(this);
        PromptMessages messages(*prompts_, this);
        game_.Hog.ReadHOGs(settings_, &progress);
        game_.Gam.ReadGAMs(game_.Hog, settings_, &progress, &messages);
    }
    emit gameDataChanged();
}

bool frmOOF::OfferRecovery(const QString& folder) {
    return mw::OfferRecovery(folder.isEmpty() ? recoveryFolder_ : folder, *files_, *autosave_,
                             *prompts_, this);
}

void frmOOF::LoadEffects() {
    textures_->LoadGlow();
}

void frmOOF::ShowAbout() {
    frmAbout about(logo_, this);
    about.exec();
}

void frmOOF::StoreSettings() {
    doc_->display().StoreInto(settings_);
}

void frmOOF::closeEvent(QCloseEvent* e) {
    if (!files_->MaybeSave()) {
        e->ignore();
        return;
    }
    if (help_ != nullptr) help_->close();
    // A clean close: nothing is left to recover (saved, or discarded on purpose).
    autosave_->RemoveCopy();
    e->accept();
}

}  // namespace mw
