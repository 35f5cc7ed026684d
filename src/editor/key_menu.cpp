#include "editor/key_menu.h"

#include <QAction>
#include <QMenu>

#include "editor/actions.h"
#include "editor/document.h"
#include "editor/key_commands.h"
#include "editor/widgets/key_control.h"

namespace mw {

KeyMenu::KeyMenu(Document& doc, MainActions& actions, keyControl& timeline, QObject* parent)
    : QObject(parent), doc_(doc), actions_(actions), timeline_(timeline) {
    const std::pair<const char*, void (KeyMenu::*)()> items[] = {
        {"mnuCutKey", &KeyMenu::CutKey},           {"mnuCopyKey", &KeyMenu::CopyKey},
        {"mnuPasteKey", &KeyMenu::PasteKey},       {"mnuCutAllKeys", &KeyMenu::CutAllKeys},
        {"mnuCopyAllKeys", &KeyMenu::CopyAllKeys}, {"mnuPasteAllKeys", &KeyMenu::PasteAllKeys},
    };
    for (const auto& [name, slot] : items) {
        connect(actions_.action(name), &QAction::triggered, this, slot);
    }
    // After the window's own enabling, which knows nothing of the clipboard.
    connect(actions_.menu("mnuAnimation"), &QMenu::aboutToShow, this, &KeyMenu::UpdateEnabling);
    connect(&timeline_, &keyControl::KeyClick, this, [this](int, Qt::MouseButton button) {
        if (button == Qt::RightButton) PopupAt(QCursor::pos());
    });
}

int KeyMenu::SelectedSubObject() const {
    const int s = doc_.selection().curSOBJ;
    return doc_.modelReady() && doc_.model().IsRecord(s) ? s : -1;
}

KeyFilter KeyMenu::Filter() const {
    return static_cast<KeyFilter>(doc_.animation().keyFilter);
}

int KeyMenu::WholeFrame() const {
    return doc_.animation().WholeFrame();
}

void KeyMenu::CopyKey(bool cut) {
    const int s = SelectedSubObject();
    const int frame = timeline_.SelectedKeyFrame();
    if (s < 0 || frame < 0) return;
    // The clipboard is filled here; the cut is the command, so undo does not touch it.
    ModelData& model = doc_.model();
    mw::CopyKey(model, s, frame, Filter(), false, clip_);
    if (cut) doc_.Apply(MakeDeleteKeysCommand(doc_, "Cut Key", s, frame, frame, Filter()));
    doc_.GoToFrame(doc_.animation().curFrame);
}

void KeyMenu::CopyAllKeys(bool cut) {
    const int s = SelectedSubObject();
    if (s < 0) return;
    const int start = timeline_.minFrame();
    const int end = timeline_.maxFrame();
    mw::CopyAllKeys(doc_.model(), s, start, end, Filter(), false, clip_);
    if (cut) doc_.Apply(MakeDeleteKeysCommand(doc_, "Cut All Keys", s, start, end, Filter()));
    doc_.GoToFrame(doc_.animation().curFrame);
}

void KeyMenu::PasteKey() {
    const int s = SelectedSubObject();
    if (s < 0 || !clip_.singleKeyHeld) return;
    doc_.Apply(MakePasteKeyCommand(doc_, s, WholeFrame(), Filter(), clip_));
    doc_.GoToFrame(doc_.animation().curFrame);
}

void KeyMenu::PasteAllKeys() {
    const int s = SelectedSubObject();
    if (s < 0 || !clip_.allKeysHeld) return;
    doc_.Apply(MakePasteAllKeysCommand(doc_, s, WholeFrame(), Filter(), clip_));
    doc_.GoToFrame(doc_.animation().curFrame);
}

void KeyMenu::UpdateEnabling() {
    const ModelData& model = doc_.model();
    const bool subObject = SelectedSubObject() >= 0;
    const bool keys = subObject && (model.HasPANI || model.HasRANI);
    const bool selectedKey = timeline_.SelectedKeyFrame() != -1;
    actions_.action("mnuAnimationCut")->setEnabled(keys);
    actions_.action("mnuAnimationCopy")->setEnabled(keys);
    actions_.action("mnuAnimationPaste")
        ->setEnabled(subObject && (clip_.singleKeyHeld || clip_.allKeysHeld));
    actions_.action("mnuCutKey")->setEnabled(keys && selectedKey);
    actions_.action("mnuCopyKey")->setEnabled(keys && selectedKey);
    actions_.action("mnuCutAllKeys")->setEnabled(keys);
    actions_.action("mnuCopyAllKeys")->setEnabled(keys);
    actions_.action("mnuPasteKey")->setEnabled(subObject && clip_.singleKeyHeld);
    actions_.action("mnuPasteAllKeys")->setEnabled(subObject && clip_.allKeysHeld);
    const int filter = doc_.animation().keyFilter;
    for (int i = 0; i < 3; ++i) {
        actions_.action(QString("mnuFilter_%1").arg(i))->setChecked(i == filter);
    }
}

void KeyMenu::PopupAt(const QPoint& globalPos) {
    QMenu* menu = actions_.menu("mnuAnimation");
    const char* const hidden[] = {"mnuAnimationSep2", "mnuViewRotator", "mnuViewTrajectories"};
    for (QAction* a : menu->actions()) {
        for (const char* name : hidden) {
            if (a->objectName() == name) a->setVisible(false);
        }
    }
    connect(
        menu, &QMenu::aboutToHide, this,
        [menu] {
            for (QAction* a : menu->actions())
                a->setVisible(true);
        },
        Qt::SingleShotConnection);
    menu->popup(globalPos);
}

}  // namespace mw
