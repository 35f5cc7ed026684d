// The main window's tool bar: file buttons, the view mode and view type groups, the display
// toggles that mirror their menu items, and the list of the archives' models.
#include <QActionGroup>
#include <QComboBox>
#include <QMainWindow>
#include <QToolBar>

#include "editor/actions.h"
#include "editor/document.h"
#include "editor/file_commands.h"
#include "editor/toolbar_icons.h"

namespace mw {

QAction* MainActions::AddButton(const char* key, const QString& tip, bool checkable) {
    QAction* a = toolBar_->addAction(ToolbarIcon(key), tip);
    a->setObjectName(key);
    a->setToolTip(tip);
    a->setCheckable(checkable);
    actions_[key] = a;
    if (QWidget* button = toolBar_->widgetForAction(a)) {
        button->setObjectName(QString("tb_") + key);
        button->setAccessibleName(tip);
    }
    return a;
}

void MainActions::BuildToolBar() {
    toolBar_ = window_.addToolBar("Tools");
    toolBar_->setObjectName("tbMain");
    toolBar_->setMovable(false);
    toolBar_->setIconSize(QSize(24, 24));
    connect(AddButton("open", "Open OOF/ORF...", false), &QAction::triggered, &files_,
            &FileCommands::Open);
    connect(AddButton("save", "Save OOF", false), &QAction::triggered, &files_,
            &FileCommands::Save);
    connect(AddButton("preferences", "Preferences", false), &QAction::triggered, this,
            &MainActions::preferencesRequested);
    toolBar_->addSeparator();
    const char* const modeKeys[4] = {"select", "zoom", "rotate", "pan"};
    const char* const modeTips[4] = {"Select", "Zoom", "Rotate", "Pan"};
    auto* modes = new QActionGroup(this);
    for (int i = 0; i < 4; ++i) {
        QAction* a = AddButton(modeKeys[i], modeTips[i], true);
        modes->addAction(a);
        modeButtons_[static_cast<std::size_t>(i)] = a;
        connect(a, &QAction::triggered, this,
                [this, i] { doc_.SetViewMode(static_cast<ViewMode>(i)); });
    }
    toolBar_->addSeparator();
    const char* const typeKeys[4] = {"wireframe", "flatcolor", "smoothcolor", "textured"};
    const char* const typeTips[4] = {"Wireframe View", "Flat Colored View", "Smooth Colored View",
                                     "Textured View"};
    auto* types = new QActionGroup(this);
    for (int i = 0; i < 4; ++i) {
        QAction* a = AddButton(typeKeys[i], typeTips[i], true);
        types->addAction(a);
        typeButtons_[static_cast<std::size_t>(i)] = a;
        connect(a, &QAction::triggered, this,
                [this, i] { doc_.SetViewType(static_cast<ViewType>(i)); });
    }
    toolBar_->addSeparator();
    const std::pair<const char*, const char*> toggles[3] = {{"threed", "mnuView3D"},
                                                            {"viewpoints", "mnuViewPoints"},
                                                            {"viewnormals", "mnuViewNormals"}};
    const char* const toggleTips[3] = {"3-D Mode Toggle", "Show Special Points", "Show Normals"};
    for (int i = 0; i < 3; ++i) {
        QAction* button = AddButton(toggles[i].first, toggleTips[i], true);
        QAction* item = action(toggles[i].second);
        button->setChecked(item->isChecked());
        connect(button, &QAction::toggled, item, &QAction::setChecked);
        connect(item, &QAction::toggled, button, &QAction::setChecked);
    }
    toolBar_->addSeparator();
    // The archive's models, where the "HOGBOX" placeholder stands.
    cboHOG_ = new QComboBox(toolBar_);
    cboHOG_->setObjectName("cboHOG");
    cboHOG_->setAccessibleName("Archive Models");
    cboHOG_->setToolTip("Models in the game's archives");
    cboHOG_->setPlaceholderText("Archive Models");
    cboHOG_->setMinimumContentsLength(22);
    cboHOG_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    QAction* box = toolBar_->addWidget(cboHOG_);
    box->setObjectName("HOGBOX");
    actions_["HOGBOX"] = box;
    connect(cboHOG_, &QComboBox::activated, this, [this](int index) {
        if (index < 0) {
            if (cboHOG_->count() == 0) return;
            index = 0;
        }
        files_.OpenArchiveModel(index);
    });
}

}  // namespace mw
