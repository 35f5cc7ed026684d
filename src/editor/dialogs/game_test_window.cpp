#include "editor/dialogs/game_test_window.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace mw {
namespace {

QString Q(const std::string& s) {
    return QString::fromStdString(s);
}

}  // namespace

GameTestWindow::GameTestWindow(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName("frmTestInGame");
    setWindowTitle("Test in Game");
    auto* layout = new QVBoxLayout(this);
    command_ = new QLabel(this);
    command_->setObjectName("lblCommand");
    command_->setWordWrap(true);
    command_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(command_);
    auto* outputLabel = new QLabel("The game's &output:", this);
    output_ = new QPlainTextEdit(this);
    output_->setObjectName("txtGameOutput");
    output_->setAccessibleName("The game's output");
    output_->setReadOnly(true);
    output_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    output_->setMaximumBlockCount(20000);
    outputLabel->setBuddy(output_);
    layout->addWidget(outputLabel);
    layout->addWidget(output_, 3);
    auto* problemsLabel = new QLabel("What the game could not &load:", this);
    problems_ = new QTreeWidget(this);
    problems_->setObjectName("lstGameProblems");
    problems_->setAccessibleName("What the game could not load");
    problems_->setHeaderLabels({"Problem", "File or page", "Named by", "The game's line"});
    problems_->setRootIsDecorated(false);
    problemsLabel->setBuddy(problems_);
    layout->addWidget(problemsLabel);
    layout->addWidget(problems_, 1);
    auto* row = new QHBoxLayout;
    status_ = new QLabel(this);
    status_->setObjectName("lblGameStatus");
    row->addWidget(status_, 1);
    stop_ = new QPushButton("&Stop", this);
    stop_->setObjectName("cmdStopGame");
    stop_->setAccessibleName("Stop the game");
    auto* close = new QPushButton("Close", this);
    close->setObjectName("cmdCloseTest");
    close->setAccessibleName("Close");
    row->addWidget(stop_);
    row->addWidget(close);
    layout->addLayout(row);
    stop_->setEnabled(false);

    process_.setProcessChannelMode(QProcess::MergedChannels);
    connect(&process_, &QProcess::readyRead, this, &GameTestWindow::Read);
    connect(&process_, &QProcess::finished, this, &GameTestWindow::Ended);
    connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart) return;
        status_->setText("The game could not be started: " + process_.errorString());
        stop_->setEnabled(false);
        emit gameEnded();
    });
    connect(stop_, &QPushButton::clicked, this, &GameTestWindow::Stop);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    resize(760, 520);
}

GameTestWindow::~GameTestWindow() {
    process_.disconnect(this);
    if (IsRunning()) {
        process_.kill();
        process_.waitForFinished(3000);
    }
}

QString GameTestWindow::Start(const PlaySetup& setup) {
    if (IsRunning()) return "The game is still running; Stop ends it.";
    output_->clear();
    problems_->clear();
    log_ = GameLogReader{};
    stopped_ = false;
    const PreparedPlay play = PreparePlay(setup);
    if (!play.Error.empty()) {
        status_->setText(Q(play.Error));
        return Q(play.Error);
    }
    QStringList args;
    for (const std::string& a : play.Arguments)
        args << Q(a);
    command_->setText(Q(play.Program.string()) + " " + args.join(' '));
    process_.setWorkingDirectory(Q(play.WorkingDir.string()));
    process_.start(Q(play.Program.string()), args, QIODevice::ReadOnly);
    status_->setText("The game is running.");
    stop_->setEnabled(true);
    return {};
}

void GameTestWindow::Stop() {
    if (!IsRunning()) return;
    stopped_ = true;
    process_.kill();
}

void GameTestWindow::Read() {
    const QByteArray bytes = process_.readAll();
    if (bytes.isEmpty()) return;
    log_.Add(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    // Appended at the end, whatever the user selected; the view follows unless scrolled up.
    QScrollBar* bar = output_->verticalScrollBar();
    const bool atEnd = bar->value() == bar->maximum();
    QTextCursor end(output_->document());
    end.movePosition(QTextCursor::End);
    end.insertText(QString::fromLocal8Bit(bytes));
    if (atEnd) bar->setValue(bar->maximum());
}

void GameTestWindow::Ended(int exitCode, QProcess::ExitStatus status) {
    Read();
    log_.Finish();
    stop_->setEnabled(false);
    if (stopped_) {
        status_->setText("The game was stopped.");
    } else if (status == QProcess::CrashExit) {
        status_->setText("The game crashed.");
    } else {
        status_->setText(QString("The game ended with exit code %1.").arg(exitCode));
    }
    for (const GameProblem& p : log_.Problems()) {
        auto* item = new QTreeWidgetItem({Q(p.Kind), Q(p.Subject), Q(p.Page), Q(p.Line)});
        item->setToolTip(3, Q(p.Line));
        problems_->addTopLevelItem(item);
    }
    if (log_.Problems().empty())
        problems_->addTopLevelItem(
            new QTreeWidgetItem({"", "", "", "Its output names nothing it could not load."}));
    for (int c = 0; c < 3; ++c)
        problems_->resizeColumnToContents(c);
    emit gameEnded();
}

void GameTestWindow::closeEvent(QCloseEvent* event) {
    // The game does not outlive its window.
    Stop();
    QWidget::closeEvent(event);
}

}  // namespace mw
