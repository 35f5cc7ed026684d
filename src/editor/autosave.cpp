#include "editor/autosave.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <algorithm>

#include "editor/document.h"
#include "model/file_io.h"
#include "model/oof_writer.h"

#ifdef Q_OS_UNIX
#include <signal.h>
#endif

namespace mw {
namespace {

bool ProcessRunning(qint64 pid) {
    if (pid <= 0) return false;
    if (pid == QCoreApplication::applicationPid()) return true;
#ifdef Q_OS_UNIX
    return kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
#else
    return false;
#endif
}

std::vector<std::uint8_t> JsonBytes(const QJsonObject& info) {
    const QByteArray json = QJsonDocument(info).toJson();
    return {json.begin(), json.end()};
}

}  // namespace

QString RecoveryFolder() {
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty()) state = QDir::homePath() + "/.local/state";
    return state + "/Meshwright/recovery";
}

std::vector<RecoveryCopy> FindRecoveryCopies(const QString& folder) {
    std::vector<RecoveryCopy> copies;
    const QDir dir(folder);
    for (const QString& name :
         dir.entryList({"*.json"}, QDir::Files, QDir::Time | QDir::Reversed)) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) continue;
        const QJsonObject info = QJsonDocument::fromJson(file.readAll()).object();
        RecoveryCopy copy;
        copy.InfoFile = dir.filePath(name);
        copy.ModelFile = dir.filePath(QFileInfo(name).completeBaseName() + ".oof");
        copy.Original = info.value("original").toString();
        copy.Entry = info.value("archive_entry").toString();
        copy.Time = info.value("time").toString();
        copy.Title = info.value("title").toString();
        copy.Pid = info.value("pid").toInteger();
        if (!ProcessRunning(copy.Pid)) copies.push_back(copy);
    }
    return copies;
}

void RemoveRecoveryCopy(const RecoveryCopy& copy) {
    QFile::remove(copy.ModelFile);
    QFile::remove(copy.InfoFile);
}

Autosave::Autosave(Document& doc, QString folder, int intervalSeconds, QObject* parent)
    : QObject(parent),
      doc_(doc),
      folder_(std::move(folder)),
      base_(QString("recovery-%1").arg(QCoreApplication::applicationPid())),
      intervalSeconds_(std::max(0, intervalSeconds)) {
    setObjectName("autosave");
    auto clock = std::make_shared<QElapsedTimer>();
    clock->start();
    now_ = [clock] { return clock->elapsed(); };
    timer_ = new QTimer(this);
    timer_->setInterval(1000);
    connect(timer_, &QTimer::timeout, this, &Autosave::Check);
    timer_->start();
    connect(&doc_, &Document::cleanChanged, this, &Autosave::FollowClean);
    // Another model: the copy of the one before goes (its changes were saved or discarded).
    connect(&doc_, &Document::modelReset, this, &Autosave::RemoveCopy);
}

Autosave::~Autosave() {
    WaitForWrite();
}

QString Autosave::modelFile() const {
    return folder_ + "/" + base_ + ".oof";
}

QString Autosave::infoFile() const {
    return folder_ + "/" + base_ + ".json";
}

void Autosave::SetInterval(int seconds) {
    intervalSeconds_ = std::max(0, seconds);
    if (intervalSeconds_ == 0) {
        dueAt_ = -1;
    } else if (doc_.hasModel() && doc_.isModified() && dueAt_ < 0) {
        dueAt_ = now_() + kFirstCopyDelayMs;
    }
}

void Autosave::FollowClean(bool clean) {
    if (clean) {
        dueAt_ = -1;
        RemoveCopy();
    } else if (intervalSeconds_ > 0 && dueAt_ < 0) {
        dueAt_ = now_() + kFirstCopyDelayMs;
    }
}

void Autosave::Check() {
    if (intervalSeconds_ == 0 || dueAt_ < 0 || !doc_.hasModel() || !doc_.isModified()) return;
    const qint64 now = now_();
    if (now < dueAt_) return;
    dueAt_ = now + static_cast<qint64>(intervalSeconds_) * 1000;
    WriteCopy();
}

void Autosave::WriteCopy() {
    // A copy still being written: this round is skipped, the next one writes.
    if (pending_.valid() &&
        pending_.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        return;
    }
    WaitForWrite();
    QJsonObject info;
    info["original"] = doc_.ModelPath();
    // A model from an archive has the entry's name for its path.
    const QString path = doc_.ModelPath();
    info["archive_entry"] = path.contains('/') || path.contains('\\') ? QString() : path;
    info["time"] = QDateTime::currentDateTime().toString(Qt::ISODate);
    info["title"] = doc_.ModelTitle();
    info["pid"] = QCoreApplication::applicationPid();
    // Only the copy of the model is made here; writing its bytes happens off this thread.
    auto model = std::make_shared<ModelData>(doc_.model());
    const std::string modelPath = modelFile().toStdString(), infoPath = infoFile().toStdString();
    const std::string folder = folder_.toStdString();
    pending_ =
        std::async(std::launch::async,
                   [model, modelPath, infoPath, folder, json = JsonBytes(info)]() -> std::string {
                       std::error_code ec;
                       std::filesystem::create_directories(folder, ec);
                       std::string failure = WriteFileReplacing(modelPath, WriteOOF(*model));
                       if (failure.empty()) failure = WriteFileReplacing(infoPath, json);
                       return failure;
                   });
    written_ = true;
}

void Autosave::WaitForWrite() {
    if (!pending_.valid()) return;
    const std::string failure = pending_.get();
    if (!failure.empty()) emit copyFailed(QString::fromStdString(failure));
}

void Autosave::Adopt(const RecoveryCopy& copy) {
    // The recovered model is this session's copy now: written under its name at once, the
    // old one removed only when the new one is on disk.
    WriteCopy();
    WaitForWrite();
    if (QFile::exists(modelFile())) RemoveRecoveryCopy(copy);
    if (intervalSeconds_ > 0) dueAt_ = now_() + static_cast<qint64>(intervalSeconds_) * 1000;
}

void Autosave::RemoveCopy() {
    WaitForWrite();
    if (!written_) return;
    QFile::remove(modelFile());
    QFile::remove(infoFile());
    written_ = false;
}

}  // namespace mw
