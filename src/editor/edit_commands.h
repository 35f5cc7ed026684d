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

class ModelCommand : public QUndoCommand {
  public:
    // Commands with the same `mergeKey` (0 or more) in one edit session merge into one step
    // (a spinner drag); such a command keeps the state after it as well, so that its redo
    // gives exactly what the merged edits gave.
    ModelCommand(Document& doc, const QString& text, GeometryScope scope, unsigned changes,
                 ModelOperation operation, int mergeKey = -1);

    void redo() override;
    void undo() override;
    int id() const override { return mergeKey_ >= 0 ? 2000 : -1; }
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
    int mergeKey_;
    int session_;
    bool done_ = false;
};

// Sets one field of a sub-object. Edits of the same field of the same sub-object in one edit
// session merge into one step.
template <typename T>
class SubObjectFieldCommand : public QUndoCommand {
  public:
    SubObjectFieldCommand(Document& doc, const QString& text, int s, T SubObject::*field, T value,
                          unsigned changes = kChangeSubObject)
        : QUndoCommand(text),
          doc_(doc),
          s_(s),
          field_(field),
          old_(doc.model().Sub(s).*field),
          new_(std::move(value)),
          changes_(changes),
          session_(doc.editSession()) {}

    void redo() override {
        if (old_ == new_ || !doc_.model().IsRecord(s_)) {
            setObsolete(true);
            return;
        }
        Set(new_);
    }
    void undo() override { Set(old_); }
    int id() const override { return 1000; }
    bool mergeWith(const QUndoCommand* other) override {
        const auto* o = dynamic_cast<const SubObjectFieldCommand*>(other);
        if (o == nullptr || o->s_ != s_ || o->field_ != field_ || o->session_ != session_)
            return false;
        new_ = o->new_;
        setObsolete(new_ == old_);
        return true;
    }

  private:
    void Set(const T& value) {
        doc_.BeginChange();
        doc_.model().Sub(s_).*field_ = value;
        doc_.EndChange(changes_, s_, doc_.selection());
    }

    Document& doc_;
    int s_;
    T SubObject::*field_;
    T old_;
    T new_;
    unsigned changes_;
    int session_;
};

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
