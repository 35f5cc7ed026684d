// Recovery copies: while the model has unsaved changes the editor writes it, every interval
// and within a few seconds after the first change following a save, to a recovery folder,
// with a small JSON beside it (the original path, the archive entry, the time, the title,
// the process). A save, a clean close or a discard removes the copy; a crash, a kill or a
// logout leaves it, and the next start offers it back.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <future>
#include <memory>
#include <vector>

class QTimer;

namespace mw {

class Document;

// $XDG_STATE_HOME/Meshwright/recovery (by default ~/.local/state/Meshwright/recovery).
QString RecoveryFolder();

// The first write after a save comes this soon after the change.
inline constexpr int kFirstCopyDelayMs = 5000;

struct RecoveryCopy {
    QString ModelFile;  // the recovery copy (.oof)
    QString InfoFile;   // its JSON
    QString Original;   // the path the model came from (or the archive entry's name)
    QString Entry;      // the archive entry, when it came from one
    QString Time;       // when the copy was written (ISO 8601, local time)
    QString Title;
    qint64 Pid = 0;  // the process that wrote it
};

// The copies in `folder` whose process is no longer running, oldest first.
std::vector<RecoveryCopy> FindRecoveryCopies(const QString& folder);
// Deletes a copy and its JSON.
void RemoveRecoveryCopy(const RecoveryCopy& copy);

class Autosave : public QObject {
    Q_OBJECT
  public:
    // `intervalSeconds` 0 writes no copies.
    Autosave(Document& doc, QString folder, int intervalSeconds, QObject* parent = nullptr);
    ~Autosave() override;

    void SetInterval(int seconds);
    int interval() const { return intervalSeconds_; }
    // Milliseconds on a monotonic clock; tests give their own.
    void SetClock(std::function<qint64()> now) { now_ = std::move(now); }

    // Writes a copy when one is due (the timer calls this every second).
    void Check();
    // Takes over a recovered copy: it is the one this session writes and removes.
    void Adopt(const RecoveryCopy& copy);
    // Removes this session's copy (after a save, a discard or a clean close).
    void RemoveCopy();
    // Waits until a copy being written is on disk.
    void WaitForWrite();

    QString modelFile() const;
    QString infoFile() const;
    bool copyWritten() const { return written_; }

  signals:
    void copyFailed(const QString& message);

  private:
    void WriteCopy();
    void FollowClean(bool clean);

    Document& doc_;
    QString folder_;
    QString base_;  // the copy's file name without extension
    int intervalSeconds_;
    std::function<qint64()> now_;
    qint64 dueAt_ = -1;  // -1: nothing to write
    bool written_ = false;
    QTimer* timer_ = nullptr;
    std::future<std::string> pending_;
};

}  // namespace mw
