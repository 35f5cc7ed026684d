#include "editor/panel_commands.h"

#include "editor/edit_commands.h"
#include "model/batteries.h"
#include "model/geometry.h"
#include "model/properties.h"
#include "model/structure.h"

namespace mw {
namespace {

// Point i of a type, or null when it is gone.
ModelPoint* PointAt(ModelData& model, PointType type, int i) {
    auto& list = model.Points(type);
    return i >= 0 && i < static_cast<int>(list.size()) ? &list[static_cast<std::size_t>(i)]
                                                       : nullptr;
}

// Sets one vector of point i of a type.
QUndoCommand* PointVectorCommand(Document& doc, const QString& text, EditField field,
                                 PointType type, int i, Vector3 ModelPoint::*member,
                                 Vector3 value) {
    return new ValueCommand<Vector3>(
        doc, text, {field, static_cast<int>(type), i}, kChangePoints,
        [type, i, member](ModelData& model) -> Vector3* {
            ModelPoint* point = PointAt(model, type, i);
            return point != nullptr ? &(point->*member) : nullptr;
        },
        value);
}

GeometryScope SlotScope(const ModelData& model, int s) {
    const int k = GetArrayIndex(model, s);
    if (k < 0) return GeometryScope::Of({s});
    return GeometryScope::Of(model.MergeTable[static_cast<std::size_t>(k)]);
}

}  // namespace

QUndoCommand* MakeModelRadiusCommand(Document& doc, float radius) {
    return new ValueCommand<float>(
        doc, "Model Radius", {EditField::ModelRadius}, kChangeModel,
        [](ModelData& model) { return &model.Header.Radius; }, radius);
}

QUndoCommand* MakeSpecialUsedCommand(Document& doc, bool used) {
    return new ModelCommand(doc, used ? "Use Special Point" : "Drop Special Point",
                            GeometryScope::None(), kChangeModel,
                            [used](ModelData& model, SelectionState&) {
                                if (model.Special.has_value() == used) return false;
                                if (used) {
                                    model.Special = model.SpecialParked.value_or(SpecialPoint{});
                                    model.SpecialParked.reset();
                                } else {
                                    model.SpecialParked = model.Special;
                                    model.Special.reset();
                                }
                                return true;
                            });
}

QUndoCommand* MakeSpecialCommand(Document& doc, EditField field,
                                 const std::function<void(SpecialPoint&)>& set) {
    const std::optional<SpecialPoint>& special = doc.model().Special;
    SpecialPoint changed = special.value_or(SpecialPoint{});
    set(changed);
    return new ValueCommand<SpecialPoint>(
        doc, "Special Point", {field}, kChangeModel,
        [](ModelData& model) { return model.Special ? &*model.Special : nullptr; }, changed);
}

QUndoCommand* MakeSubObjectRadiusCommand(Document& doc, int s, float radius) {
    return MakeSubObjectFieldCommand(doc, "Sub-Model Radius", EditField::SubObjectRadius, s,
                                     &SubObject::Radius, radius);
}

QUndoCommand* MakeOffsetCommand(Document& doc, int s, Vector3 offset, bool pivotOnly) {
    if (pivotOnly) {
        return new ModelCommand(
            doc, "Move Pivot", SlotScope(doc.model(), s),
            kChangeSubObject | kChangeGeometry | kChangePoints | kChangeModel,
            [s, offset](ModelData& model, SelectionState&) {
                if (!model.IsRecord(s) || model.Sub(s).Offset == offset) return false;
                const Vector3 delta = Subtract(offset, model.Sub(s).Offset);
                model.Sub(s).Offset = offset;
                MovePivot(model, s, delta);
                return true;
            },
            EditKey{EditField::Pivot, s});
    }
    return new ModelCommand(
        doc, "Move Sub-Model", GeometryScope::None(), kChangeSubObject | kChangeModel,
        [s, offset](ModelData& model, SelectionState&) {
            if (!model.IsRecord(s) || model.Sub(s).Offset == offset) return false;
            model.Sub(s).Offset = offset;
            MoveSOBJ(model);
            return true;
        },
        EditKey{EditField::SubObjectOffset, s});
}

QUndoCommand* MakeStorePropertyCommand(Document& doc, int s, std::uint32_t flag,
                                       const PropertyValues& values) {
    return new ModelCommand(
        doc, "Sub-Model Property", GeometryScope::None(), kChangeSubObject | kChangeBatteries,
        [s, flag, values](ModelData& model, SelectionState&) {
            if (!model.IsRecord(s)) return false;
            SubObject changed = model.Sub(s);
            if (flag == kPropRotate) changed.RotateSpeed = values.RotatePeriod;
            if (flag == kPropFov) changed.FovValues = values.Fov;
            if (flag == kPropGlow) {
                changed.GlowColor = values.GlowColor;
                changed.GlowSize = values.GlowSize;
            }
            if (!ComposeProperties(changed, flag)) return false;
            SubObject& sub = model.Sub(s);
            if (changed.Properties == sub.Properties && changed.PropertyFlags == sub.PropertyFlags)
                return false;
            if (sub.PropertyFlags == kPropFov && flag != kPropFov) RemoveWBATturret(model, s);
            sub.PropertyFlags = changed.PropertyFlags;
            sub.Properties = changed.Properties;
            sub.RotateSpeed = changed.RotateSpeed;
            sub.FovValues = changed.FovValues;
            sub.GlowColor = changed.GlowColor;
            sub.GlowSize = changed.GlowSize;
            return true;
        },
        EditKey{EditField::Property, s});
}

QUndoCommand* MakePointLocationCommand(Document& doc, PointType type, int i, Vector3 position) {
    return PointVectorCommand(doc, "Move Point", EditField::PointLocation, type, i,
                              &ModelPoint::Position, position);
}

QUndoCommand* MakePointDirectionCommand(Document& doc, PointType type, int i, Vector3 direction) {
    return PointVectorCommand(doc, "Point Direction", EditField::PointDirection, type, i,
                              &ModelPoint::Normal, direction);
}

QUndoCommand* MakeAddBatteryCommand(Document& doc) {
    return new ModelCommand(doc, "Add Battery", GeometryScope::None(), kChangeBatteries,
                            [](ModelData& model, SelectionState&) { return AddWBAT(model); });
}

QUndoCommand* MakeDeleteBatteryCommand(Document& doc, int b) {
    return new ModelCommand(
        doc, "Delete Battery", GeometryScope::None(), kChangeBatteries,
        [b](ModelData& model, SelectionState&) { return DeleteWBAT(model, b); });
}

QUndoCommand* MakeBatteryEntryCommand(Document& doc, int b, const std::string& entry, bool add) {
    return new ModelCommand(
        doc, add ? "Add to Battery" : "Remove from Battery", GeometryScope::None(),
        kChangeBatteries, [b, entry, add](ModelData& model, SelectionState&) {
            const auto found = ParseBatteryEntry(model, entry, !add);
            if (!found) return false;
            return add ? AddToWBAT(model, b, *found) : RemoveFromWBAT(model, b, *found);
        });
}

}  // namespace mw
