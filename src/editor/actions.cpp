#include "editor/actions.h"

#include <QActionGroup>
#include <QComboBox>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenuBar>
#include <QMetaMethod>

#include "convert/pofgen.h"
#include "editor/dialogs/scale_dialog.h"
#include "editor/document.h"
#include "editor/edit_commands.h"
#include "editor/enabling.h"
#include "editor/file_commands.h"
#include "editor/prompts.h"
#include "editor/recent_files.h"
#include "gamedata/file_names.h"
#include "gamedata/hog.h"

namespace mw {
namespace {

const char* const kModeNames[4] = {"Selection", "Zoom", "Rotate", "Pan"};
const char* const kTypeNames[4] = {"Wireframe", "Flat Colored", "Smooth Colored", "Textured"};
const char* const kPointCaptions[4] = {"&Attach Point", "Attach &Normal", "G&round Point",
                                       "&Gunpoint"};
const Qt::Key kPointKeys[4] = {Qt::Key_A, Qt::Key_N, Qt::Key_R, Qt::Key_G};

// Import P3D is offered when a model compiler is set and exists.
bool CompilerConfigured(const Settings& settings) {
    return NamesCompiler(settings.POFGENPath) && FindFileIgnoringCase(settings.POFGENPath);
}

}  // namespace

MainActions::MainActions(QMainWindow& window, Document& doc, FileCommands& files,
                         Settings& settings, GameData& game, Prompts& prompts)
    : QObject(&window),
      window_(window),
      doc_(doc),
      files_(files),
      settings_(settings),
      game_(game),
      prompts_(prompts) {
    BuildFileMenu();
    BuildEditMenu();
    BuildToolsMenu();
    BuildModeMenu();
    BuildAnimationMenu();
    BuildDisplayMenu();
    BuildHelpMenu();
    BuildToolBar();
    FillRecentMenu();
    SyncViewChecks();
    connectSignals();
    UpdateEnabling();
    UpdateFileEnabling();
}

QAction* MainActions::action(const QString& name) const {
    const auto it = actions_.find(name);
    return it == actions_.end() ? nullptr : it->second;
}

QMenu* MainActions::menu(const QString& name) const {
    const auto it = menus_.find(name);
    return it == menus_.end() ? nullptr : it->second;
}

QAction* MainActions::Add(QMenu* menu, const char* name, const QString& caption,
                          const QKeySequence& shortcut) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(name);
    a->setShortcut(shortcut);
    a->setShortcutContext(Qt::WindowShortcut);
    window_.addAction(a);  // shortcuts work while the menu is closed
    actions_[name] = a;
    return a;
}

std::vector<QAction*> MainActions::AddChoices(QMenu* menu, const QString& name,
                                              const QStringList& captions,
                                              const std::function<void(int)>& chosen) {
    auto* group = new QActionGroup(this);
    std::vector<QAction*> items;
    for (int i = 0; i < static_cast<int>(captions.size()); ++i) {
        const QString itemName = QString("%1_%2").arg(name).arg(i);
        QAction* a = Add(menu, itemName.toLatin1().constData(), captions[i]);
        a->setCheckable(true);
        group->addAction(a);
        connect(a, &QAction::triggered, this, [chosen, i] { chosen(i); });
        items.push_back(a);
    }
    return items;
}

QAction* MainActions::AddToggle(QMenu* menu, const char* name, const QString& caption,
                                bool DisplaySettings::*flag) {
    QAction* a = Add(menu, name, caption);
    a->setCheckable(true);
    a->setChecked(doc_.display().*flag);
    connect(a, &QAction::toggled, this, [this, flag](bool on) { doc_.SetDisplayFlag(flag, on); });
    // A panel's check box may switch the same flag.
    connect(&doc_, &Document::displayChanged, a,
            [this, a, flag] { a->setChecked(doc_.display().*flag); });
    return a;
}

void MainActions::BuildFileMenu() {
    QMenu* file = window_.menuBar()->addMenu("File");
    file->setObjectName("mnuFile");
    menus_["mnuFile"] = file;
    connect(Add(file, "mnuLoadOOFORF", "&Open OOF/ORF...", QKeySequence("Ctrl+O")),
            &QAction::triggered, &files_, &FileCommands::Open);
    file->addSeparator()->setObjectName("mnuFileSep1");
    connect(Add(file, "mnuFileSaveOOF", "&Save OOF", QKeySequence("Ctrl+S")), &QAction::triggered,
            &files_, &FileCommands::Save);
    connect(Add(file, "mnuFileSaveOOFAs", "Save OOF As..."), &QAction::triggered, &files_,
            &FileCommands::SaveAs);
    file->addSeparator()->setObjectName("mnuFileSep15");
    connect(Add(file, "mnuFileImportP3D", "Import P3D..."), &QAction::triggered, this,
            &MainActions::importP3DRequested);
    connect(Add(file, "mnuFileImportModel", "Import Model..."), &QAction::triggered, &files_,
            &FileCommands::ImportModelFile);
    connect(Add(file, "mnuFileExportORF", "Export ORF..."), &QAction::triggered, &files_,
            &FileCommands::ExportORF);
    connect(Add(file, "mnuFileExportGltf", "Export glTF..."), &QAction::triggered, &files_,
            &FileCommands::ExportGltf);
    connect(Add(file, "mnuFilePackage", "Package for Game..."), &QAction::triggered, &files_,
            &FileCommands::PackageForGame);
    file->addSeparator()->setObjectName("mnuFileSep2");
    connect(Add(file, "mnuFilePreferences", "&Preferences...", QKeySequence("Ctrl+P")),
            &QAction::triggered, this, &MainActions::preferencesRequested);
    file->addSeparator()->setObjectName("mnuFileSep3");
    for (int i = 0; i < 9; ++i) {
        const QString name = QString("mnuMRUPaths_%1").arg(i);
        QAction* a = Add(file, name.toLatin1().constData(), QString("&%1").arg(i + 1),
                         QKeySequence(Qt::Key_F1 + i));
        a->setVisible(false);
        connect(a, &QAction::triggered, this, [this, i] { files_.OpenRecent(i); });
        recent_[static_cast<std::size_t>(i)] = a;
    }
    recentSeparator_ = file->addSeparator();
    recentSeparator_->setObjectName("mnuMRUSep");
    recentSeparator_->setVisible(false);
    connect(Add(file, "mnuFileExit", "E&xit", QKeySequence("Ctrl+X")), &QAction::triggered,
            &window_, &QWidget::close);
    connect(file, &QMenu::aboutToShow, this, [this] {
        UpdateEnabling();
        UpdateFileEnabling();
    });
}

void MainActions::BuildEditMenu() {
    QMenu* edit = window_.menuBar()->addMenu("Edit");
    edit->setObjectName("mnuEdit");
    menus_["mnuEdit"] = edit;
    QUndoStack& stack = doc_.undoStack();
    QAction* undo = stack.createUndoAction(this, "Undo");
    undo->setObjectName("mnuEditUndo");
    undo->setShortcut(QKeySequence("Ctrl+Z"));
    QAction* redo = stack.createRedoAction(this, "Redo");
    redo->setObjectName("mnuEditRedo");
    redo->setShortcut(QKeySequence("Ctrl+Shift+Z"));
    for (QAction* a : {undo, redo}) {
        edit->addAction(a);
        window_.addAction(a);
        actions_[a->objectName()] = a;
    }
    edit->addSeparator()->setObjectName("mnuEditSeperator0");
    connect(Add(edit, "mnuEditDelete", "Delete", QKeySequence(Qt::Key_Delete)), &QAction::triggered,
            this, [this] {
                UpdateEditEnabling();
                if (action("mnuEditDelete")->isEnabled()) doc_.Apply(MakeDeleteCommand(doc_));
            });
    edit->addSeparator()->setObjectName("mnuEditSeperator1");
    QMenu* convert = edit->addMenu("Convert to");
    convert->setObjectName("mnuEditConvert");
    menus_["mnuEditConvert"] = convert;
    actions_["mnuEditConvert"] = convert->menuAction();
    convert->menuAction()->setObjectName("mnuEditConvert");
    for (int k = 0; k < 4; ++k) {
        const QString name = QString("mnuEditPoint_%1").arg(k);
        QAction* a = Add(convert, name.toLatin1().constData(), kPointCaptions[k],
                         QKeySequence(Qt::CTRL | kPointKeys[k]));
        a->setData(QString(PointTag(kPointTypes[static_cast<std::size_t>(k)])));
        connect(a, &QAction::triggered, this, [this, k, a] {
            UpdateEditEnabling();
            if (a->isEnabled())
                doc_.Apply(MakeConvertCommand(doc_, kPointTypes[static_cast<std::size_t>(k)]));
        });
    }
    connect(edit, &QMenu::aboutToShow, this, &MainActions::UpdateEditEnabling);
}

void MainActions::BuildToolsMenu() {
    QMenu* tools = window_.menuBar()->addMenu("Tools");
    tools->setObjectName("mnuToolsMain");
    menus_["mnuToolsMain"] = tools;
    connect(Add(tools, "mnuRecalcVertNormals", "Recalculate Normals"), &QAction::triggered, this,
            [this] {
                if (doc_.modelReady()) doc_.Apply(MakeRecalcNormalsCommand(doc_));
            });
    connect(Add(tools, "mnuToolsScale", "Scale Model..."), &QAction::triggered, this,
            &MainActions::ScaleModel);
    tools->addSeparator();
    connect(Add(tools, "mnuToolsCheck", "Check Model..."), &QAction::triggered, this,
            &MainActions::checkRequested);
    tools->addSeparator();
    connect(Add(tools, "mnuToolsGameObject", "Game Object..."), &QAction::triggered, this,
            &MainActions::gameObjectRequested);
    connect(Add(tools, "mnuToolsTestInGame", "Test in Game"), &QAction::triggered, this,
            &MainActions::testInGameRequested);
    connect(tools, &QMenu::aboutToShow, this, &MainActions::UpdateEnabling);
}

// The Mode menu is not on the menu bar; the viewport pops it up on a right click.
void MainActions::BuildModeMenu() {
    auto* mode = new QMenu("Mode", &window_);
    mode->setObjectName("mnuViewModeMain");
    menus_["mnuViewModeMain"] = mode;
    const auto modes = AddChoices(mode, "mnuViewMode", {kModeNames, kModeNames + 4},
                                  [this](int i) { doc_.SetViewMode(static_cast<ViewMode>(i)); });
    std::copy(modes.begin(), modes.end(), modeItems_.begin());
    mode->addSeparator()->setObjectName("mnuModeSeperator");
    QMenu* view = mode->addMenu("View");
    view->setObjectName("mnuViewTypeMain");
    menus_["mnuViewTypeMain"] = view;
    const auto types = AddChoices(view, "mnuViewType", {kTypeNames, kTypeNames + 4},
                                  [this](int i) { doc_.SetViewType(static_cast<ViewType>(i)); });
    std::copy(types.begin(), types.end(), typeItems_.begin());
    view->addSeparator()->setObjectName("mnuViewSep1");
    AddToggle(view, "mnuView3D", "3-D Mode", &DisplaySettings::ThreeD);
}

void MainActions::BuildAnimationMenu() {
    QMenu* anim = window_.menuBar()->addMenu("Animation");
    anim->setObjectName("mnuAnimation");
    menus_["mnuAnimation"] = anim;
    const std::pair<const char*, const char*> groups[3][3] = {
        {{"mnuAnimationCut", "Cut"}, {"mnuCutKey", "Key"}, {"mnuCutAllKeys", "All Keys"}},
        {{"mnuAnimationCopy", "Copy"}, {"mnuCopyKey", "Key"}, {"mnuCopyAllKeys", "All Keys"}},
        {{"mnuAnimationPaste", "Paste"}, {"mnuPasteKey", "Key"}, {"mnuPasteAllKeys", "All Keys"}},
    };
    for (const auto& group : groups) {
        QMenu* sub = anim->addMenu(group[0].second);
        sub->setObjectName(group[0].first);
        sub->menuAction()->setObjectName(group[0].first);
        menus_[group[0].first] = sub;
        actions_[group[0].first] = sub->menuAction();
        Add(sub, group[1].first, group[1].second);
        Add(sub, group[2].first, group[2].second);
    }
    anim->addSeparator()->setObjectName("mnuAnimationSep1");
    QMenu* filter = anim->addMenu("Filter Keys");
    filter->setObjectName("mnuKeyFilter");
    menus_["mnuKeyFilter"] = filter;
    AddChoices(filter, "mnuFilter", {"All", "Positional", "Rotational"},
               [this](int i) { doc_.SetKeyFilter(i); });
    anim->addSeparator()->setObjectName("mnuAnimationSep2");
    AddToggle(anim, "mnuViewRotator", "View Rotator Animation", &DisplaySettings::RotatorAnimation);
    AddToggle(anim, "mnuViewTrajectories", "View Trajectories", &DisplaySettings::ViewTrajectories);
    connect(anim, &QMenu::aboutToShow, this, &MainActions::UpdateEnabling);
}

void MainActions::BuildDisplayMenu() {
    QMenu* show = window_.menuBar()->addMenu("Display");
    show->setObjectName("mnuEffects");
    menus_["mnuEffects"] = show;
    AddToggle(show, "mnuViewPoints", "Special Points", &DisplaySettings::ViewPoints);
    AddToggle(show, "mnuViewNormals", "Normals", &DisplaySettings::ViewNormals);
    show->addSeparator()->setObjectName("mnuDisplaySep3");
    QMenu* effects = show->addMenu("Effects");
    effects->setObjectName("mnuViewEffects");
    menus_["mnuViewEffects"] = effects;
    AddToggle(effects, "mnuViewFacing", "Facing", &DisplaySettings::Facing);
    AddToggle(effects, "mnuViewGlow", "Glow Effects", &DisplaySettings::Glow);
    AddToggle(effects, "mnuViewTexAnimate", "Texture Animation",
              &DisplaySettings::TextureAnimation);
    AddToggle(effects, "mnuViewFiltering", "Bilinear Filtering",
              &DisplaySettings::BilinearFiltering);
    show->addSeparator()->setObjectName("mnuDisplaySep4");
    AddToggle(show, "mnuViewBackground", "Show Background", &DisplaySettings::ShowBackground);
}

void MainActions::BuildHelpMenu() {
    QMenu* help = window_.menuBar()->addMenu("Help");
    help->setObjectName("mnuHelp");
    menus_["mnuHelp"] = help;
    connect(Add(help, "mnuHelpContents", "Help Contents..."), &QAction::triggered, this,
            &MainActions::helpRequested);
    help->addSeparator()->setObjectName("mnuHelpSep");
    connect(Add(help, "mnuAbout", "About Meshwright..."), &QAction::triggered, this,
            &MainActions::aboutRequested);
}

void MainActions::SyncViewChecks() {
    const auto mode = static_cast<std::size_t>(doc_.display().Mode);
    const auto type = static_cast<std::size_t>(doc_.display().Type);
    for (std::size_t i = 0; i < 4; ++i) {
        modeItems_[i]->setChecked(i == mode);
        modeButtons_[i]->setChecked(i == mode);
        typeItems_[i]->setChecked(i == type);
        typeButtons_[i]->setChecked(i == type);
    }
}

void MainActions::connectSignals() {
    connect(&doc_, &Document::displayChanged, this, [this] {
        SyncViewChecks();
        UpdateEnabling();
    });
    connect(&files_, &FileCommands::recentChanged, this, &MainActions::FillRecentMenu);
    for (auto signal : {&Document::modelReset, &Document::selectionChanged,
                        &Document::structureChanged, &Document::pointsChanged}) {
        connect(&doc_, signal, this, &MainActions::UpdateEnabling);
    }
}

void MainActions::PopulateHOGlist() {
    cboHOG_->clear();
    for (const HogModelEntry& e : game_.Hog.Models)
        cboHOG_->addItem(QString::fromStdString(EntryName(e.Name)));
    cboHOG_->setCurrentIndex(-1);
}

void MainActions::FillRecentMenu() {
    const auto& list = settings_.RecentFiles;
    int shown = 0;
    for (std::size_t i = 0; i < recent_.size(); ++i) {
        const bool filled = i < list.size() && !list[i].empty();
        if (filled) {
            recent_[i]->setText(
                QString::fromStdString(RecentCaption(static_cast<int>(i) + 1, list[i])));
            ++shown;
        }
        recent_[i]->setVisible(filled);
    }
    recentSeparator_->setVisible(shown > 0);
}

// Import P3D looks for the compiler on disk, so it is checked when the File menu opens.
void MainActions::UpdateFileEnabling() {
    action("mnuFileImportP3D")
        ->setEnabled(isSignalConnected(QMetaMethod::fromSignal(&MainActions::importP3DRequested)) &&
                     CompilerConfigured(settings_));
}

void MainActions::UpdateEditEnabling() {
    const EditEnabling e = ComputeEditEnabling(doc_.model(), doc_.selection());
    action("mnuEditDelete")->setEnabled(e.Delete);
    action("mnuEditConvert")->setEnabled(e.Convert);
    for (std::size_t k = 0; k < 4; ++k) {
        action(QString("mnuEditPoint_%1").arg(k))->setEnabled(e.Convert && e.ConvertTo[k]);
    }
}

void MainActions::UpdateEnabling() {
    const bool ready = doc_.modelReady();
    for (const char* name :
         {"mnuFileSaveOOF", "mnuFileSaveOOFAs", "mnuFileExportORF", "mnuFileExportGltf",
          "mnuFilePackage", "save", "mnuRecalcVertNormals", "mnuToolsScale", "mnuToolsCheck",
          "mnuToolsGameObject", "mnuToolsTestInGame"}) {
        action(name)->setEnabled(ready);
    }
    const bool preferences =
        isSignalConnected(QMetaMethod::fromSignal(&MainActions::preferencesRequested));
    action("mnuFilePreferences")->setEnabled(preferences);
    action("preferences")->setEnabled(preferences);
    action("mnuViewBackground")->setEnabled(!doc_.display().BackgroundImage.empty());
    UpdateEditEnabling();
    // The Animation menu's key items are the key menu's (it holds the clipboard).
}

void MainActions::PopupEditMenu(const QPoint& globalPos) {
    UpdateEditEnabling();
    menu("mnuEdit")->popup(globalPos);
}

void MainActions::ScaleModel() {
    if (!doc_.modelReady()) return;
    frmScale dialog(doc_.model().Header.Radius, &window_);
    dialog.exec();
    ScaleBy(dialog.amount());
}

void MainActions::ScaleBy(float percent) {
    if (percent == 100.0f || !doc_.modelReady()) return;
    ScaleResult result = ScaleResult::Done;
    doc_.Apply(MakeScaleCommand(doc_, percent, &result));
    if (result == ScaleResult::TooSmall) {
        prompts_.Message(&window_,
                         "Scaling would result in a Model Radius < 0.1 - Scaling not done.",
                         PromptIcon::Information);
    } else if (result == ScaleResult::TooLarge) {
        prompts_.Message(&window_,
                         "Scalng would result in a Model Radius > 90000.0 - Scaling not done.",
                         PromptIcon::None);
    }
}

}  // namespace mw
