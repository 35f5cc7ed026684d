#include "editor/edit_commands.h"

#include "editor/enabling.h"
#include "model/structure.h"

namespace mw {
namespace {

// The records whose geometry a combine of a into b moves: every member of a's save slot.
GeometryScope CombineScope(const ModelData& model, int a) {
    const int k = GetArrayIndex(model, a);
    if (k < 0) return GeometryScope::None();
    return GeometryScope::Of(model.MergeTable[static_cast<std::size_t>(k)]);
}

}  // namespace

ModelCommand::ModelCommand(Document& doc, const QString& text, GeometryScope scope,
                           unsigned changes, ModelOperation operation,
                           std::optional<EditKey> mergeKey)
    : QUndoCommand(text),
      doc_(doc),
      scope_(std::move(scope)),
      changes_(changes),
      operation_(std::move(operation)),
      mergeKey_(mergeKey),
      session_(doc.editSession()) {}

void ModelCommand::redo() {
    ModelData& model = doc_.model();
    if (done_ && after_) {
        doc_.BeginChange();
        after_->Restore(model);
        doc_.EndChange(changes_, selectionAfter_.curSOBJ, selectionAfter_, scope_.Records);
        return;
    }
    if (!done_) {
        before_ = ModelSnapshot(model, scope_);
        selectionBefore_ = doc_.selection();
    }
    SelectionState selection = doc_.selection();
    doc_.BeginChange();
    const bool changed = operation_(model, selection);
    if (!changed) {
        // Nothing to undo: put back what a refused operation may have touched.
        before_.Restore(model);
        doc_.CancelChange();
        setObsolete(true);
        return;
    }
    if (!done_ && mergeKey_) after_ = ModelSnapshot(model, scope_);
    done_ = true;
    selectionAfter_ = selection;
    doc_.EndChange(changes_, selection.curSOBJ, selection, scope_.Records);
}

bool ModelCommand::mergeWith(const QUndoCommand* other) {
    const auto* o = dynamic_cast<const ModelCommand*>(other);
    if (o == nullptr || !mergeKey_ || o->mergeKey_ != mergeKey_ || o->session_ != session_ ||
        !o->after_) {
        return false;
    }
    after_ = o->after_;
    selectionAfter_ = o->selectionAfter_;
    return true;
}

void ModelCommand::undo() {
    doc_.BeginChange();
    before_.Restore(doc_.model());
    doc_.EndChange(changes_, selectionBefore_.curSOBJ, selectionBefore_, scope_.Records);
}

QUndoCommand* MakeReparentCommand(Document& doc, int s, int parent) {
    return new ModelCommand(doc, "Change Parent", GeometryScope::None(),
                            kChangeStructure | kChangeModel,
                            [s, parent](ModelData& model, SelectionState& sel) {
                                if (model.IsRecord(s) && model.Sub(s).Parent == parent)
                                    return false;
                                if (!ChangeSOBJParent(model, s, parent)) return false;
                                CreatePushPop(model);
                                sel = SubObjectSelected(sel, s);
                                return true;
                            });
}

QUndoCommand* MakeCombineCommand(Document& doc, int a, int b) {
    return new ModelCommand(doc, "Combine", CombineScope(doc.model(), a),
                            kChangeStructure | kChangeGeometry | kChangePoints,
                            [a, b](ModelData& model, SelectionState& sel) {
                                if (!CombineAndAdopt(model, a, b)) return false;
                                sel = SubObjectSelected(sel, b);
                                return true;
                            });
}

QUndoCommand* MakeDeleteCommand(Document& doc) {
    const SelectionState at = doc.selection();
    if (at.curSOBJ == -1 && at.curPNT != -1) {
        const auto type = PointTypeFromTag(at.curPNTtype);
        const int i = at.curPNT;
        return new ModelCommand(
            doc, "Delete", GeometryScope::None(), kChangePoints | kChangeBatteries,
            [type, i](ModelData& model, SelectionState& sel) {
                if (!type || i < 0 || i >= static_cast<int>(model.Points(*type).size()))
                    return false;
                const int owner = model.Points(*type)[static_cast<std::size_t>(i)].Parent;
                if (!DeletePNT(model, *type, i)) return false;
                sel = SubObjectSelected(sel, owner);
                return true;
            });
    }
    const int s = at.curSOBJ;
    return new ModelCommand(doc, "Delete", GeometryScope::None(),
                            kChangeStructure | kChangePoints | kChangeBatteries | kChangeModel,
                            [s](ModelData& model, SelectionState& sel) {
                                // The Edit menu's rule: the last top-level sub-object stays.
                                if (GetArrayIndex(model, s) < 0 ||
                                    !ComputeEditEnabling(model, SubObjectSelected({}, s)).Delete)
                                    return false;
                                const int next = SelectionAfterDelete(model, s);
                                if (!DeleteSOBJ(model, s)) return false;
                                CreatePushPop(model);
                                MoveSOBJ(model);
                                sel = SubObjectSelected(sel, next);
                                return true;
                            });
}

QString ConvertCommandText(PointType type) {
    switch (type) {
        case PointType::ATCH:
            return "Convert to Attach Point";
        case PointType::NATH:
            return "Convert to Attach Normal";
        case PointType::GRND:
            return "Convert to Ground Point";
        case PointType::GPNT:
            break;
    }
    return "Convert to Gunpoint";
}

QUndoCommand* MakeConvertCommand(Document& doc, PointType type) {
    const SelectionState at = doc.selection();
    const int s = at.curSOBJ;
    const int i = at.curPNT;
    const auto from = PointTypeFromTag(at.curPNTtype);
    const unsigned changes = s != -1 ? kChangeStructure | kChangePoints | kChangeBatteries
                                     : kChangePoints | kChangeBatteries;
    return new ModelCommand(doc, ConvertCommandText(type), GeometryScope::None(), changes,
                            [s, i, from, type](ModelData& model, SelectionState& sel) {
                                int made = -1;
                                if (s != -1) {
                                    made = ConvertSOBJToPNT(model, s, type);
                                } else if (from) {
                                    made = ConvertPNTType(model, *from, i, type);
                                }
                                if (made < 0) return false;
                                sel = PointSelected(sel, type, made);
                                return true;
                            });
}

QUndoCommand* MakeScaleCommand(Document& doc, float percent, ScaleResult* result) {
    return new ModelCommand(doc, "Scale Model", GeometryScope::Everything(),
                            kChangeGeometry | kChangePoints | kChangeKeys | kChangeModel,
                            [percent, result](ModelData& model, SelectionState&) {
                                const ScaleResult r = ScaleModel(model, percent);
                                if (result != nullptr) *result = r;
                                return r == ScaleResult::Done;
                            });
}

QUndoCommand* MakeRecalcNormalsCommand(Document& doc) {
    return new ModelCommand(doc, "Recalculate Normals", GeometryScope::Everything(),
                            kChangeGeometry, [](ModelData& model, SelectionState&) {
                                RecalcVertexNormals(model);
                                return model.SubObjectCount() > 0;
                            });
}

QUndoCommand* MakePointParentCommand(Document& doc, PointType type, int i, int s) {
    return new ModelCommand(doc, "Move Point", GeometryScope::None(), kChangePoints,
                            [type, i, s](ModelData& model, SelectionState& sel) {
                                const auto& list = model.Points(type);
                                if (i < 0 || i >= static_cast<int>(list.size()) ||
                                    list[static_cast<std::size_t>(i)].Parent == s ||
                                    !ChangePNTParent(model, type, i, s)) {
                                    return false;
                                }
                                sel = PointSelected(sel, type, i);
                                return true;
                            });
}

QUndoCommand* MakeRenameCommand(Document& doc, int s, const std::string& name) {
    return MakeSubObjectFieldCommand<std::string>(doc, "Rename", EditField::SubObjectName, s,
                                                  &SubObject::Name, name);
}

}  // namespace mw
