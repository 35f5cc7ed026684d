// The undoable edits of the model. Each runs a model operation; undo puts back a snapshot of
// what the operation touches (geometry only where it changes geometry) and the selection.
#pragma once

#include <QString>
#include <QUndoCommand>
#include <functional>
#include <optional>

#include "editor/document.h"
#include "model/geometry.h"
#include "model/snapshot.h"

namespace mw {

// A model operation; it may change the selection it is given. Returns whether it changed
// anything (a command that changed nothing is dropped).
using ModelOperation = std::function<bool(ModelData&, SelectionState&)>;

// The undo stack merges only commands of one class; these are their ids.
enum CommandId { kModelCommandId = 1, kValueCommandId = 2 };

// Which value an edit changes: one field of one thing (a sub-object, a point, a key track).
// Edits with equal keys in one edit session (one spinner drag, one typed entry) are one step.
enum class EditField {
    ModelRadius,
    SpecialName,
    SpecialProperties,
    SpecialRadius,
    SpecialPosition,
    SubObjectName,
    SubObjectRadius,
    SubObjectOffset,
    Pivot,
    Property,
    PointLocation,
    PointDirection,
    KeyPosition,
    KeyAngle,
    KeyAxis,
    KeyMove,
};
struct EditKey {
    EditField field;
    int owner = 0;  // the sub-object, or the point type
    int item = 0;   // the point, or the key frame
    bool operator==(const EditKey&) const = default;
};

class ModelCommand : public QUndoCommand {
  public:
    // Commands with the same merge key in one edit session merge into one step (a spinner
    // drag); such a command keeps the state after it as well, so that its redo gives exactly
    // what the merged edits gave.
    ModelCommand(Document& doc, const QString& text, GeometryScope scope, unsigned changes,
                 ModelOperation operation, std::optional<EditKey> mergeKey = std::nullopt);

    void redo() override;
    void undo() override;
    int id() const override { return mergeKey_ ? kModelCommandId : -1; }
    bool mergeWith(const QUndoCommand* other) override;

    // Bytes the command holds (for the undo stack's memory figures).
    std::size_t ByteSize() const {
        return before_.ByteSize() + (after_ ? after_->ByteSize() : 0) + sizeof(*this);
    }

  private:
    Document& doc_;
    GeometryScope scope_;
    unsigned changes_;
    ModelOperation operation_;
    ModelSnapshot before_;
    std::optional<ModelSnapshot> after_;
    SelectionState selectionBefore_;
    SelectionState selectionAfter_;
    std::optional<EditKey> mergeKey_;
    int session_;
    bool done_ = false;
};

// Sets one value of the model, keeping only the old and the new value. `access` finds the
// value (null when what holds it is gone); `settle` brings derived data in line after each
// change (a key track's matrices). Edits with the same key in one edit session merge.
template <typename T>
class ValueCommand : public QUndoCommand {
  public:
    using Access = std::function<T*(ModelData&)>;
    using Settle = std::function<void(ModelData&)>;

    ValueCommand(Document& doc, const QString& text, EditKey key, unsigned changes, Access access,
                 T value, int subObject = -1, Settle settle = {})
        : QUndoCommand(text),
          doc_(doc),
          key_(key),
          changes_(changes),
          access_(std::move(access)),
          new_(std::move(value)),
          subObject_(subObject),
          settle_(std::move(settle)),
          session_(doc.editSession()) {
        if (const T* current = access_(doc.model())) old_ = *current;
    }

    void redo() override {
        if (!old_ || *old_ == new_ || access_(doc_.model()) == nullptr) {
            setObsolete(true);
            return;
        }
        Set(new_);
    }
    void undo() override {
        if (old_) Set(*old_);
    }
    int id() const override { return kValueCommandId; }
    bool mergeWith(const QUndoCommand* other) override {
        const auto* o = dynamic_cast<const ValueCommand*>(other);
        if (o == nullptr || !(o->key_ == key_) || o->session_ != session_) return false;
        new_ = o->new_;
        setObsolete(old_ && *old_ == new_);
        return true;
    }

  private:
    void Set(const T& value) {
        doc_.BeginChange();
        ModelData& model = doc_.model();
        if (T* target = access_(model)) *target = value;
        if (settle_) settle_(model);
        doc_.EndChange(changes_, subObject_, doc_.selection());
    }

    Document& doc_;
    EditKey key_;
    unsigned changes_;
    Access access_;
    std::optional<T> old_;
    T new_;
    int subObject_;
    Settle settle_;
    int session_;
};

// A field of sub-object s, as a value command.
template <typename T>
QUndoCommand* MakeSubObjectFieldCommand(Document& doc, const QString& text, EditField field, int s,
                                        T SubObject::*member, T value,
                                        unsigned changes = kChangeSubObject) {
    return new ValueCommand<T>(
        doc, text, {field, s}, changes,
        [s, member](ModelData& m) { return m.IsRecord(s) ? &(m.Sub(s).*member) : nullptr; },
        std::move(value), s);
}

// The editor's commands. Each returns the command, to be given to Document::Apply.
QUndoCommand* MakeReparentCommand(Document& doc, int s, int parent);
QUndoCommand* MakeCombineCommand(Document& doc, int a, int b);
// Deletes the selected sub-object or point and selects what the tree selects afterwards.
QUndoCommand* MakeDeleteCommand(Document& doc);
// Converts the selected sub-object or point into a point of `type` and selects it.
QUndoCommand* MakeConvertCommand(Document& doc, PointType type);
// `result` receives the scaling's verdict when the command runs.
QUndoCommand* MakeScaleCommand(Document& doc, float percent, ScaleResult* result);
QUndoCommand* MakeRecalcNormalsCommand(Document& doc);
QUndoCommand* MakeRenameCommand(Document& doc, int s, const std::string& name);
// Gives point i of a type the owner s; the point stays selected.
QUndoCommand* MakePointParentCommand(Document& doc, PointType type, int i, int s);

// The step's name for "Convert to": "Convert to Attach Point" and so on.
QString ConvertCommandText(PointType type);

}  // namespace mw
