// The commands behind the animation panel, the timeline and the Animation menu. Each
// changes the keys of one sub-object (or of every slot head) and can be undone; value edits
// of one field in one edit session (a spinner drag, a dial drag, a timeline drag) merge.
#pragma once

#include <QUndoCommand>

#include "editor/document.h"
#include "model/key_clipboard.h"

namespace mw {

enum class KeyKind { Position, Rotation };

// Inserts (present) or deletes the key of a kind at `frame` of s.
QUndoCommand* MakeKeyPresenceCommand(Document& doc, int s, int frame, KeyKind kind, bool present);
QUndoCommand* MakeKeyPositionCommand(Document& doc, int s, int frame, Vector3 position);
QUndoCommand* MakeKeyAngleCommand(Document& doc, int s, int frame, int units);
QUndoCommand* MakeKeyAxisCommand(Document& doc, int s, int frame, Vector3 axis);
QUndoCommand* MakeMirrorAxisCommand(Document& doc, int s, int frame, int component);
QUndoCommand* MakeMoveKeysCommand(Document& doc, int s, int from, int to, KeyFilter filter);

// Deletes the keys of the kinds the filter takes at frames first..last (the cut half of
// Cut Key and Cut All Keys; the clipboard has been filled before).
QUndoCommand* MakeDeleteKeysCommand(Document& doc, const QString& text, int s, int first, int last,
                                    KeyFilter filter);
QUndoCommand* MakePasteKeyCommand(Document& doc, int s, int frame, KeyFilter filter,
                                  const KeyClipboard& clip);
QUndoCommand* MakePasteAllKeysCommand(Document& doc, int s, int frame, KeyFilter filter,
                                      const KeyClipboard& clip);

// "Current Sub to Start" (s) and "All Subs to Start" (s = -1).
QUndoCommand* MakeToStartCommand(Document& doc, int s, int frame);

}  // namespace mw
