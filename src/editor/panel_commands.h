// The commands behind the model and sub-object panels. Edits of one field in one edit session
// (one spinner drag, one typed entry) merge into one undo step.
#pragma once

#include <QUndoCommand>
#include <array>
#include <functional>

#include "editor/document.h"
#include "editor/edit_commands.h"

namespace mw {

QUndoCommand* MakeModelRadiusCommand(Document& doc, float radius);
// Switches the special point off (keeping its data in the model) or on again.
QUndoCommand* MakeSpecialUsedCommand(Document& doc, bool used);
// Changes the special point through `set`; `field` (one of the Special… fields) tells edits
// of different fields apart.
QUndoCommand* MakeSpecialCommand(Document& doc, EditField field,
                                 const std::function<void(SpecialPoint&)>& set);
QUndoCommand* MakeSubObjectRadiusCommand(Document& doc, int s, float radius);
// A new offset for s: with `pivotOnly` the mesh, points and children stay where they are in
// model space and the pivot moves; otherwise the sub-object moves.
QUndoCommand* MakeOffsetCommand(Document& doc, int s, Vector3 offset, bool pivotOnly);

// The values the property fields hold.
struct PropertyValues {
    float RotatePeriod = 1.0f;
    std::array<float, 3> Fov{};
    std::array<float, 3> GlowColor{};
    float GlowSize = 0.0f;
};
// Gives s exactly the property `flag` with the values; leaving the turret property takes s
// out of every battery's turret list. A flag that is no property changes nothing.
QUndoCommand* MakeStorePropertyCommand(Document& doc, int s, std::uint32_t flag,
                                       const PropertyValues& values);

// Point i of a type moves to `position`, or turns to `direction`.
QUndoCommand* MakePointLocationCommand(Document& doc, PointType type, int i, Vector3 position);
QUndoCommand* MakePointDirectionCommand(Document& doc, PointType type, int i, Vector3 direction);

// Battery edits: a new empty battery, deleting battery b, and adding or removing one entry
// of the batteries panel's lists (its text) in battery b.
QUndoCommand* MakeAddBatteryCommand(Document& doc);
QUndoCommand* MakeDeleteBatteryCommand(Document& doc, int b);
QUndoCommand* MakeBatteryEntryCommand(Document& doc, int b, const std::string& entry, bool add);

}  // namespace mw
