#include "editor/recovery.h"

#include <QDateTime>

#include "editor/autosave.h"
#include "editor/file_commands.h"
#include "editor/prompts.h"

namespace mw {

QString RecoveryQuestion(const QString& title, const QString& time) {
    const QDateTime when = QDateTime::fromString(time, Qt::ISODate);
    const QString shown = when.isValid() ? when.toString("yyyy-MM-dd HH:mm") : time;
    return QString("Meshwright closed without saving changes to %1 (%2). Recover them?")
        .arg(title, shown);
}

bool OfferRecovery(const QString& folder, FileCommands& files, Autosave& autosave, Prompts& prompts,
                   QWidget* window) {
    for (const RecoveryCopy& copy : FindRecoveryCopies(folder)) {
        const int choice = prompts.Choose(window, RecoveryQuestion(copy.Title, copy.Time),
                                          {"Recover", "Discard", "Later"}, PromptIcon::Question);
        if (choice == 1) {
            RemoveRecoveryCopy(copy);
            continue;
        }
        if (choice != 0) continue;
        QString error;
        if (!files.OpenRecovered(copy.ModelFile, copy.Original, copy.Title, error)) {
            if (!error.isEmpty()) {
                prompts.Message(window,
                                QString("The recovery copy %1 cannot be read: %2. It is kept.")
                                    .arg(copy.ModelFile, error),
                                PromptIcon::Exclamation);
            }
            continue;
        }
        autosave.Adopt(copy);
        return true;
    }
    return false;
}

}  // namespace mw
