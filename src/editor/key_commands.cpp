#include "editor/key_commands.h"

#include "editor/edit_commands.h"
#include "editor/panel_commands.h"
#include "model/key_edits.h"
#include "model/keys.h"

namespace mw {
namespace {

QUndoCommand* KeysCommand(Document& doc, const QString& text, ModelOperation op,
                          std::optional<EditKey> mergeKey = std::nullopt) {
    return new ModelCommand(doc, text, GeometryScope::None(), kChangeKeys, std::move(op), mergeKey);
}

}  // namespace

QUndoCommand* MakeKeyPresenceCommand(Document& doc, int s, int frame, KeyKind kind, bool present) {
    const bool position = kind == KeyKind::Position;
    const QString text = QString(present ? "Add %1 Key" : "Delete %1 Key")
                             .arg(position ? "Positional" : "Rotational");
    return KeysCommand(doc, text, [=](ModelData& model, SelectionState&) {
        const int found =
            position ? GetPANIindex(model, s, frame, true) : GetRANIindex(model, s, frame, true);
        if (present == (found >= 0)) return false;
        if (position) {
            return present ? InsertPANIKey(model, s, frame) : DeletePANIKey(model, s, frame);
        }
        return present ? InsertRANIKey(model, s, frame) : DeleteRANIKey(model, s, frame);
    });
}

QUndoCommand* MakeKeyPositionCommand(Document& doc, int s, int frame, Vector3 position) {
    return new ValueCommand<Vector3>(
        doc, "Key Position", {EditField::KeyPosition, s, frame}, kChangeKeys,
        [s, frame](ModelData& model) -> Vector3* {
            PosKey* key = PositionKeyAt(model, s, frame);
            return key != nullptr ? &key->Position : nullptr;
        },
        position, s);
}

// A value of the rotation key of s at `frame`; the track's matrices follow each change.
template <typename T>
QUndoCommand* RotationKeyValueCommand(Document& doc, const QString& text, EditField field, int s,
                                      int frame, T RotKey::*member, T value) {
    return new ValueCommand<T>(
        doc, text, {field, s, frame}, kChangeKeys,
        [s, frame, member](ModelData& model) -> T* {
            RotKey* key = RotationKeyAt(model, s, frame);
            return key != nullptr ? &(key->*member) : nullptr;
        },
        value, s, [s](ModelData& model) { CalcRotMatrix(model, s); });
}

QUndoCommand* MakeKeyAngleCommand(Document& doc, int s, int frame, int units) {
    return RotationKeyValueCommand<std::int32_t>(doc, "Key Angle", EditField::KeyAngle, s, frame,
                                                 &RotKey::Angle, units);
}

QUndoCommand* MakeKeyAxisCommand(Document& doc, int s, int frame, Vector3 axis) {
    return RotationKeyValueCommand(doc, "Axis of Rotation", EditField::KeyAxis, s, frame,
                                   &RotKey::Axis, axis);
}

QUndoCommand* MakeMirrorAxisCommand(Document& doc, int s, int frame, int component) {
    return KeysCommand(doc, QString("Mirror %1").arg(QChar('X' + component)),
                       [=](ModelData& model, SelectionState&) {
                           return MirrorRANIAxis(model, s, frame, component);
                       });
}

QUndoCommand* MakeMoveKeysCommand(Document& doc, int s, int from, int to, KeyFilter filter) {
    return KeysCommand(
        doc, "Move Key",
        [=](ModelData& model, SelectionState&) { return MoveKeysAt(model, s, from, to, filter); },
        EditKey{EditField::KeyMove, s});
}

QUndoCommand* MakeDeleteKeysCommand(Document& doc, const QString& text, int s, int first, int last,
                                    KeyFilter filter) {
    return KeysCommand(doc, text, [=](ModelData& model, SelectionState&) {
        bool changed = false;
        for (int f = first; f <= last; ++f) {
            if (TakesPositions(filter)) changed = DeletePANIKey(model, s, f) || changed;
            if (TakesRotations(filter)) changed = DeleteRANIKey(model, s, f) || changed;
        }
        return changed;
    });
}

QUndoCommand* MakePasteKeyCommand(Document& doc, int s, int frame, KeyFilter filter,
                                  const KeyClipboard& clip) {
    return KeysCommand(doc, "Paste Key", [=](ModelData& model, SelectionState&) {
        return PasteKey(model, s, frame, filter, clip);
    });
}

QUndoCommand* MakePasteAllKeysCommand(Document& doc, int s, int frame, KeyFilter filter,
                                      const KeyClipboard& clip) {
    return KeysCommand(doc, "Paste All Keys", [=](ModelData& model, SelectionState&) {
        return PasteAllKeys(model, s, frame, filter, clip);
    });
}

QUndoCommand* MakeToStartCommand(Document& doc, int s, int frame) {
    return KeysCommand(doc, s < 0 ? "All Subs to Start" : "Current Sub to Start",
                       [=](ModelData& model, SelectionState&) {
                           return s < 0 ? AllSubsToStart(model, frame)
                                        : SubToStart(model, s, frame);
                       });
}

}  // namespace mw
