#include "editor/main_window.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>

#include "editor/actions.h"
#include "editor/animation_strip.h"
#include "editor/dialogs/about_dialog.h"
#include "editor/dialogs/check_dialog.h"
#include "editor/dialogs/help_window.h"
#include "editor/dialogs/preferences_dialog.h"
#include "editor/dialogs/progress_dialog.h"
#include "editor/document.h"
#include "editor/file_commands.h"
#include "editor/key_menu.h"
#include "editor/p3d_import.h"
#include "editor/panels/animation_panel.h"
#include "editor/panels/batteries_panel.h"
#include "editor/panels/model_panel.h"
#include "editor/panels/panel_host.h"
#include "editor/panels/point_panel.h"
#include "editor/panels/subobject_panel.h"
#include "editor/panels/textures_panel.h"
#include "editor/prompts.h"
#include "editor/tree/model_tree.h"
#include "editor/tree/tree_control.h"
#include "editor/viewport.h"
#include "editor/widgets/key_control.h"

namespace mw {

frmOOF::frmOOF(clsOOF& oof, GameData& game, Settings& settings, const QPixmap& logo,
               Prompts* prompts, QWidget* parent)
    : QMainWindow(parent),
      ownPrompts_(prompts == nullptr ? std::make_unique<DialogPrompts>() : nullptr),
      prompts_(prompts == nullptr ? ownPrompts_.get() : prompts),
      doc_(std::make_unique<Document>(oof)),
      settings_(settings),
      game_(game),
      logo_(logo) {
    setObjectName("frmOOF");
    setAccessibleName(kAppTitle);

    auto* central = new QWidget(this);
    auto* columns = new QSplitter(Qt::Horizontal, central);
    columns->setObjectName("splitMain");
    columns->setChildrenCollapsible(false);
    panels_ = new PanelHost(*doc_, logo_, columns);
    panels_->tree().SetPrompts(prompts_);
    tree_ = new ModelTree(panels_->tree(), *doc_);
    panels_->AddPanel("Model", new ModelPanel(*doc_));
    panels_->AddPanel("SubModel", new SubObjectPanel(*doc_, *prompts_));
    panels_->AddPanel("Points", new PointPanel(*doc_));
    auto* batteries = new BatteriesPanel(*doc_);
    panels_->AddPanel("Batteries", batteries);
    auto* textures = new TexturesPanel(*doc_, game, settings);
    panels_->AddPanel("Textures", textures);
    panels_->AddPanel("Animation", new AnimationPanel(*doc_));
    // The two panels that fill themselves when their tab is shown.
    connect(panels_, &PanelHost::panelRefreshRequested, this,
            [batteries, textures](const QString& key, bool reload) {
                if (!reload) return;
                if (key == "Batteries") batteries->PopulateBatteryPanel();
                if (key == "Textures") textures->PopulateTextureList();
            });

    auto* right = new QWidget(columns);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    viewport_ = new Viewport(*doc_, game, settings, *prompts_, right);
    rightLayout->addWidget(viewport_, 1);
    textures->AttachViewport(*viewport_, *prompts_);
    panels_->RefreshPanels(true);
    fraAnimation_ = new QGroupBox("Animation Controls", right);
    fraAnimation_->setObjectName("fraAnimation");
    fraAnimation_->setAccessibleName("Animation Controls");
    fraAnimation_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* stripLayout = new QHBoxLayout(fraAnimation_);
    stripLayout->setContentsMargins(6, 4, 6, 4);
    strip_ = new AnimationStrip(*doc_, fraAnimation_);
    stripLayout->addWidget(strip_);
    connect(viewport_, &Viewport::ticked, strip_, &AnimationStrip::TimerStep);
    rightLayout->addWidget(fraAnimation_);
    columns->addWidget(panels_);
    columns->addWidget(right);
    columns->setStretchFactor(1, 1);
    columns->setSizes({330, 770});
    auto* layout = new QHBoxLayout(central);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(columns);
    setCentralWidget(central);

    files_ = new FileCommands(*doc_, game, settings, *prompts_, this);
    actions_ = new MainActions(*this, *doc_, *viewport_, *files_, settings, game, *prompts_);
    connect(actions_, &MainActions::helpRequested, this, &frmOOF::ShowHelp);
    connect(actions_, &MainActions::aboutRequested, this, &frmOOF::ShowAbout);
    connect(actions_, &MainActions::checkRequested, this, &frmOOF::ShowCheck);
    connect(actions_, &MainActions::preferencesRequested, this, &frmOOF::ShowPreferences);
    import_ = new P3DImport(*files_, settings, *prompts_, this);
    connect(actions_, &MainActions::importP3DRequested, import_, &P3DImport::Import);
    runPreferences_ = [](frmPreferences& dialog) { dialog.exec(); };
    files_->SetModelCheck(DocumentCheck(*doc_, &viewport_->textures(), &settings));
    keyMenu_ = new KeyMenu(*doc_, *actions_, strip_->timeline(), this);
    connect(tree_, &ModelTree::editMenuRequested, actions_, &MainActions::PopupEditMenu);
    actions_->PopulateHOGlist();

    connect(doc_.get(), &Document::fileChanged, this, &frmOOF::UpdateTitle);
    connect(doc_.get(), &Document::modelReset, this, &frmOOF::UpdateTitle);
    connect(doc_.get(), &Document::cleanChanged, this, &frmOOF::UpdateTitle);
    UpdateTitle();
    resize(1100, 760);
}

frmOOF::~frmOOF() {
    // The views hold the document; they go first.
    doc_->disconnect(this);
    delete check_;
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
            new CheckDialog(*doc_, DocumentCheck(*doc_, &viewport_->textures(), &settings_), this);
    } else {
        check_->Refresh();
    }
    check_->show();
    check_->raise();
}

void frmOOF::ShowPreferences() {
    frmPreferences dialog(settings_, *prompts_, this);
    runPreferences_(dialog);
    ApplyPreferences(dialog.PathsChanged(), dialog.BackgroundChanged());
}

void frmOOF::ApplyPreferences(bool pathsChanged, bool backgroundChanged) {
    repaint();
    actions_->UpdateFileEnabling();
    if (backgroundChanged) {
        viewport_->ReloadBackground();
        actions_->UpdateEnabling();
    }
    if (!pathsChanged) return;
    ReadGameData();
    if (doc_->modelReady() &&
        prompts_->Ask(this, "Reload Model Textures?", QMessageBox::Yes | QMessageBox::No,
                      PromptIcon::Question) == QMessageBox::Yes) {
        viewport_->ReloadModelTextures();
    }
}

void frmOOF::ReadGameData() {
    frmProgress progress(this);
    PromptMessages messages(*prompts_, this);
    game_.Hog.ReadHOGs(settings_, &progress);
    game_.Gam.ReadGAMs(game_.Hog, settings_, &progress, &messages);
    actions_->PopulateHOGlist();
}

void frmOOF::ShowAbout() {
    frmAbout about(logo_, this);
    about.exec();
}

void frmOOF::StoreSettings() {
    viewport_->StoreSettings();
}

void frmOOF::closeEvent(QCloseEvent* e) {
    if (!files_->MaybeSave()) {
        e->ignore();
        return;
    }
    if (help_ != nullptr) help_->close();
    e->accept();
}

}  // namespace mw
