// The Animation menu's key commands: Cut, Copy and Paste of one key or of all keys of the
// selected sub-object, through the key clipboard this object holds for the window's life,
// the menu's enabling, and the menu popped up by a right click on the timeline.
#pragma once

#include <QObject>

#include "model/key_clipboard.h"

class QMenu;
class QPoint;

namespace mw {

class Document;
class MainActions;
class keyControl;

class KeyMenu : public QObject {
    Q_OBJECT
  public:
    KeyMenu(Document& doc, MainActions& actions, keyControl& timeline, QObject* parent = nullptr);

    const KeyClipboard& clipboard() const { return clip_; }

    void CutKey() { CopyKey(true); }
    void CopyKey() { CopyKey(false); }
    void CutAllKeys() { CopyAllKeys(true); }
    void CopyAllKeys() { CopyAllKeys(false); }
    void PasteKey();
    void PasteAllKeys();
    // The Animation menu's enabling and filter checks.
    void UpdateEnabling();
    // The menu at the pointer, without its view items.
    void PopupAt(const QPoint& globalPos);

  private:
    void CopyKey(bool cut);
    void CopyAllKeys(bool cut);
    int SelectedSubObject() const;
    KeyFilter Filter() const;
    int WholeFrame() const;

    Document& doc_;
    MainActions& actions_;
    keyControl& timeline_;
    KeyClipboard clip_;
};

}  // namespace mw
