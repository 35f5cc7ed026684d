#include "editor/dialogs/game_object_dialog.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "editor/dialogs/game_object_page.h"
#include "editor/document.h"
#include "editor/prompts.h"
#include "gamedata/file_names.h"
#include "gamedata/settings.h"
#include "model/text_codec.h"

namespace mw {
namespace {

QString Q(const std::string& s) {
    return QString::fromStdString(s);
}

QString AskWithQt(QWidget* parent, const QString& title, const QString& label,
                  const QStringList& choices, const QString& initial) {
    bool ok = false;
    const QString text =
        choices.isEmpty()
            ? QInputDialog::getText(parent, title, label, QLineEdit::Normal, initial, &ok)
            : QInputDialog::getItem(parent, title, label, choices,
                                    std::max<int>(0, static_cast<int>(choices.indexOf(initial))),
                                    true, &ok);
    return ok ? text.trimmed() : QString();
}

QPushButton* Button(QWidget* parent, const QString& caption, const char* name,
                    const QString& accessible) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setAccessibleName(accessible);
    b->setAutoDefault(false);
    return b;
}

// A list under its label, which names it for assistive tools and gives its shortcut.
QTreeWidget* LabelledList(QWidget* parent, QVBoxLayout* layout, const QString& caption,
                          const char* name, const QStringList& headers) {
    auto* label = new QLabel(caption, parent);
    auto* list = new QTreeWidget(parent);
    list->setObjectName(name);
    list->setAccessibleName(QString(caption).remove('&').remove(':'));
    list->setHeaderLabels(headers);
    list->setRootIsDecorated(false);
    label->setBuddy(list);
    layout->addWidget(label);
    layout->addWidget(list);
    return list;
}

const char* SeverityText(Severity s) {
    return s == Severity::Error ? "Error" : s == Severity::Warning ? "Warning" : "Note";
}

}  // namespace

std::string ModelFileForPages(const Document& doc) {
    return Cp1252FromUtf8(QFileInfo(doc.ModelPath()).fileName().toStdString());
}

GameObjectDialog::GameObjectDialog(Document& doc, GameData& game, Settings& settings,
                                   Prompts& prompts, QWidget* parent)
    : QDialog(parent),
      doc_(doc),
      game_(game),
      settings_(settings),
      prompts_(prompts),
      ask_(AskWithQt) {
    setObjectName("frmGameObject");
    setWindowTitle("Game Object");
    auto* outer = new QVBoxLayout(this);
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName("scrGameObject");
    scroll->setAccessibleName("Game object");
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* content = new QWidget(scroll);
    auto* layout = new QVBoxLayout(content);

    auto* missionRow = new QHBoxLayout;
    missionLabel_ = new QLabel(content);
    missionLabel_->setObjectName("lblMission");
    missionLabel_->setWordWrap(true);
    auto* chooseMission = Button(content, "&Mission...", "cmdMission", "Choose the mission");
    missionRow->addWidget(missionLabel_, 1);
    missionRow->addWidget(chooseMission);
    layout->addLayout(missionRow);

    list_ = LabelledList(content, layout, "&Pages that name this model:", "lstPages",
                         {"Kind", "Name", "From"});
    list_->setMinimumHeight(80);
    list_->setMaximumHeight(130);
    auto* pageButtons = new QHBoxLayout;
    auto* newLike = Button(content, "&New Object Like...", "cmdNewObjectLike", "New Object Like");
    auto* replace = Button(content, "&Replace...", "cmdReplace", "Replace a game page");
    pageButtons->addWidget(newLike);
    pageButtons->addWidget(replace);
    pageButtons->addStretch(1);
    layout->addLayout(pageButtons);

    page_ = new GameObjectPage(content);
    layout->addWidget(page_);
    problem_ = new QLabel(content);
    problem_->setObjectName("lblProblem");
    problem_->setWordWrap(true);
    problem_->setStyleSheet("color: #a00000;");
    layout->addWidget(problem_);
    findings_ = LabelledList(content, layout, "&What the check finds:", "lstFindings",
                             {"Severity", "Code", "Message"});
    findings_->setMinimumHeight(90);
    scroll->setWidget(content);
    outer->addWidget(scroll, 1);

    auto* buttons = new QHBoxLayout;
    undo_ = Button(this, "&Undo", "cmdUndo", "Undo");
    redo_ = Button(this, "Re&do", "cmdRedo", "Redo");
    undo_->setShortcut(QKeySequence::Undo);
    redo_->setShortcut(QKeySequence::Redo);
    save_ = Button(this, "&Save", "cmdSave", "Save into the mission");
    auto* close = Button(this, "Close", "cmdClose", "Close");
    for (QPushButton* b : {undo_, redo_})
        buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(save_);
    buttons->addWidget(close);
    outer->addLayout(buttons);

    connect(chooseMission, &QPushButton::clicked, this, &GameObjectDialog::ChooseMission);
    connect(newLike, &QPushButton::clicked, this, &GameObjectDialog::NewObjectLike);
    connect(replace, &QPushButton::clicked, this, &GameObjectDialog::ReplacePage);
    connect(undo_, &QPushButton::clicked, this, &GameObjectDialog::Undo);
    connect(redo_, &QPushButton::clicked, this, &GameObjectDialog::Redo);
    connect(save_, &QPushButton::clicked, this, &GameObjectDialog::Save);
    connect(close, &QPushButton::clicked, this, &GameObjectDialog::reject);
    connect(list_, &QTreeWidget::currentItemChanged, this, &GameObjectDialog::ShowChosenPage);
    connect(page_, &GameObjectPage::fieldEdited, this, &GameObjectDialog::FieldEdited);
    connect(page_, &GameObjectPage::problemChanged, problem_, &QLabel::setText);
    page_->SetFieldCheck([this](const std::string& path, const std::string& value) {
        const ObjectPageItem* item = ChosenItem();
        return item && item->InMission ? tables_.TryField(item->Name, path, value) : "";
    });
    // The model's keys and batteries are what the page is shown against.
    for (auto signal : {&Document::modelReset, &Document::batteriesChanged})
        connect(&doc_, signal, this, &GameObjectDialog::ShowChosenPage);
    connect(&doc_, &Document::keysChanged, this, &GameObjectDialog::ShowChosenPage);

    resize(720, 760);
    const QString configured = Q(settings_.MN3GAMPath);
    const QString suffix = QFileInfo(configured).suffix().toLower();
    Reload(suffix == "mn3" || suffix == "gam" ? configured : QString());
}

void GameObjectDialog::Reload(const QString& mission) {
    mission_ = mission;
    tables_.Load(game_, settings_, mission.toStdString(), ModelFileForPages(doc_));
    Refresh();
}

const ObjectPageItem* GameObjectDialog::ChosenItem() const {
    const int row = list_->currentItem() ? list_->indexOfTopLevelItem(list_->currentItem()) : -1;
    return row >= 0 && row < static_cast<int>(items_.size())
               ? &items_[static_cast<std::size_t>(row)]
               : nullptr;
}

void GameObjectDialog::Refresh() {
    const std::string file = tables_.ModelFile();
    setWindowTitle(file.empty() ? QString("Game Object")
                                : "Game Object - " + Q(Utf8From1252(file)));
    QString where = mission_.isEmpty()
                        ? "No mission chosen: Mission... names the .mn3 or .gam to save pages in."
                        : "Mission: " + mission_;
    if (!tables_.MissionProblem().empty()) where += "\n" + Q(tables_.MissionProblem());
    if (file.empty()) where += "\nSave the model first: pages name a model by its file name.";
    missionLabel_->setText(where);

    const ObjectPageItem* chosen = ChosenItem();
    const std::string keepName = chosen ? chosen->Name : std::string();
    const bool keepMission = chosen && chosen->InMission;
    items_ = tables_.Pages();
    const QSignalBlocker block(list_);
    list_->clear();
    int select = items_.empty() ? -1 : 0;
    for (std::size_t i = 0; i < items_.size(); ++i) {
        const ObjectPageItem& it = items_[i];
        list_->addTopLevelItem(
            new QTreeWidgetItem({Q(it.Kind), Q(it.Name), it.InMission ? "mission" : Q(it.Source)}));
        if (!keepName.empty() && EqualsIgnoringCase(it.Name, keepName) &&
            it.InMission == keepMission)
            select = static_cast<int>(i);
    }
    for (int c = 0; c < 3; ++c)
        list_->resizeColumnToContents(c);
    if (select >= 0) list_->setCurrentItem(list_->topLevelItem(select));
    ShowChosenPage();
}

void GameObjectDialog::ShowChosenPage() {
    const ObjectPageItem* item = ChosenItem();
    const TablePage* page = item ? tables_.Page(*item) : nullptr;
    page_->Show(page, doc_.model(), item && item->InMission);
    findings_->clear();
    if (item) {
        for (const TableFinding& f : tables_.Findings(*item, doc_.model())) {
            auto* row = new QTreeWidgetItem({SeverityText(f.Level), Q(f.Code), Q(f.Message)});
            row->setToolTip(2, Q(f.Message));
            findings_->addTopLevelItem(row);
        }
    }
    if (findings_->topLevelItemCount() == 0 && item)
        findings_->addTopLevelItem(new QTreeWidgetItem({"", "", "Nothing found."}));
    undo_->setEnabled(tables_.CanUndo());
    redo_->setEnabled(tables_.CanRedo());
    save_->setEnabled(tables_.IsModified());
}

void GameObjectDialog::Report(const std::string& error) {
    problem_->setText(Q(error));
    if (!error.empty()) prompts_.Message(this, Q(error), PromptIcon::Exclamation);
}

void GameObjectDialog::FieldEdited(const QString& path, const QString& value) {
    const ObjectPageItem* item = ChosenItem();
    if (item == nullptr || !item->InMission) return;
    const std::string error = tables_.SetField(item->Name, path.toStdString(), value.toStdString());
    if (error.empty() && path == "name") {
        // The list follows the page under its new name.
        items_[static_cast<std::size_t>(list_->indexOfTopLevelItem(list_->currentItem()))].Name =
            value.toStdString();
    }
    Refresh();
    if (!error.empty()) Report(error);
}

bool GameObjectDialog::ChooseMission() {
    const QString path = prompts_.SaveFileName(
        this, "Choose the mission's table",
        "Mission archive or table (*.mn3 *.gam);;Mission archive (*.mn3);;GAM table (*.gam)",
        mission_);
    if (path.isEmpty()) return false;
    if (tables_.IsModified() &&
        prompts_.Ask(this, "The changes to " + mission_ + " were not saved. Leave them?",
                     QMessageBox::Yes | QMessageBox::No,
                     PromptIcon::Question) != QMessageBox::Yes) {
        return false;
    }
    Reload(path);
    return tables_.HasMission();
}

QStringList GameObjectDialog::PagesToCopy() {
    if (tables_.ModelFile().empty()) {
        Report("Save the model first: pages name a model by its file name.");
        return {};
    }
    if (!tables_.HasMission() && !ChooseMission()) return {};
    QStringList names;
    for (const std::string& n : tables_.CopyableNames())
        names << Q(n);
    return names;
}

void GameObjectDialog::Added(const std::string& error, const QString& name) {
    Refresh();
    if (error.empty()) {
        SelectPage(name);
    } else {
        Report(error);
    }
}

void GameObjectDialog::NewObjectLike() {
    const QStringList names = PagesToCopy();
    if (names.isEmpty()) return;
    const ObjectPageItem* item = ChosenItem();
    const QString like = ask_(this, "New Object Like", "A copy of the page:", names,
                              item ? Q(item->Name) : QString());
    if (like.isEmpty()) return;
    const QString name = ask_(this, "New Object Like", "The new object's name:", {}, "");
    if (name.isEmpty()) return;
    Added(tables_.NewObjectLike(like.toStdString(), name.toStdString()), name);
}

void GameObjectDialog::ReplacePage() {
    const QStringList names = PagesToCopy();
    if (names.isEmpty()) return;
    const QString name = ask_(this, "Replace", "The game's page the mission replaces:", names, "");
    if (name.isEmpty()) return;
    Added(tables_.Replace(name.toStdString()), name);
}

void GameObjectDialog::SelectPage(const QString& name) {
    int found = -1;
    for (std::size_t i = 0; i < items_.size(); ++i) {
        if (EqualsIgnoringCase(items_[i].Name, name.toStdString()) &&
            (found < 0 || items_[i].InMission))
            found = static_cast<int>(i);
    }
    if (found >= 0) list_->setCurrentItem(list_->topLevelItem(found));
}

void GameObjectDialog::Undo() {
    tables_.Undo();
    Refresh();
}

void GameObjectDialog::Redo() {
    tables_.Redo();
    Refresh();
}

bool GameObjectDialog::Save() {
    const std::string error = tables_.Save();
    Refresh();
    if (!error.empty()) {
        Report(error);
        return false;
    }
    problem_->setText("Saved into " + mission_ + ".");
    return true;
}

void GameObjectDialog::reject() {
    if (tables_.IsModified()) {
        const auto answer = prompts_.Ask(
            this, "Save the changes to the mission's table " + mission_ + "?",
            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, PromptIcon::Question);
        if (answer == QMessageBox::Cancel) return;
        if (answer == QMessageBox::Yes && !Save()) return;
    }
    QDialog::reject();
}

}  // namespace mw
