// At start-up: the recovery copies earlier sessions left behind, offered back one by one.
#pragma once

#include <QString>

class QWidget;

namespace mw {

class Autosave;
class FileCommands;
class Prompts;

// The question for one copy: "Meshwright closed without saving changes to TITLE (TIME).
// Recover them?"
QString RecoveryQuestion(const QString& title, const QString& time);

// Asks about each copy in `folder` (Recover, Discard, Later). Recover opens it as the unsaved
// model (the session then keeps that copy up to date); Discard deletes it; Later keeps it
// for the next start. A copy that cannot be read is reported and kept. After one copy is
// recovered the others wait for the next start. Returns true when a copy was recovered.
bool OfferRecovery(const QString& folder, FileCommands& files, Autosave& autosave, Prompts& prompts,
                   QWidget* window);

}  // namespace mw
