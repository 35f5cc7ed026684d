// The model edits the editor can make, as commands chosen and given arguments from a byte
// stream (valid and invalid arguments alike): shared by the edit fuzzer and the soak
// benchmark.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "editor/document.h"
#include "editor/edit_commands.h"
#include "editor/key_commands.h"
#include "editor/panel_commands.h"
#include "model/batteries.h"
#include "model/key_clipboard.h"
#include "model/properties.h"

namespace mw::edits {

// Reads the operation stream; past its end every value is 0.
class Ops {
  public:
    explicit Ops(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    bool done() const { return at_ >= bytes_.size(); }
    std::uint8_t u8() { return at_ < bytes_.size() ? bytes_[at_++] : 0; }
    // A small signed index: mostly in range, sometimes just outside it.
    int index() { return static_cast<int>(static_cast<std::int8_t>(u8())) % 40; }
    float value() { return static_cast<float>(static_cast<std::int8_t>(u8())) / 8.0f; }
    Vector3 vec() { return {value(), value(), value()}; }
    PointType pointType() { return kPointTypes[u8() % 4]; }

  private:
    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

// One operation: makes the command (some first change the selection, as the editor's menus
// work on it). Null when the operation needs nothing pushed.
inline QUndoCommand* MakeOperation(Document& doc, Ops& ops, KeyClipboard& clip) {
    const ModelData& m = doc.model();
    switch (ops.u8() % 30) {
        case 0:
            return MakeReparentCommand(doc, ops.index(), ops.index());
        case 1:
            return MakeCombineCommand(doc, ops.index(), ops.index());
        case 2:
            doc.SelectSubObject(ops.index());
            return MakeDeleteCommand(doc);
        case 3:
            doc.SelectPoint(ops.pointType(), ops.index());
            return MakeDeleteCommand(doc);
        case 4:
            doc.SelectSubObject(ops.index());
            return MakeConvertCommand(doc, ops.pointType());
        case 5: {
            const PointType type = ops.pointType();
            doc.SelectPoint(type, ops.index());
            return MakeConvertCommand(doc, ops.pointType());
        }
        case 6:
            return MakeScaleCommand(doc, 25.0f + static_cast<float>(ops.u8()), nullptr);
        case 7:
            return MakeRecalcNormalsCommand(doc);
        case 8:
            return MakeRenameCommand(doc, ops.index(), std::string(ops.u8() % 40, 'n'));
        case 9:
            return MakePointParentCommand(doc, ops.pointType(), ops.index(), ops.index());
        case 10:
            return MakeModelRadiusCommand(doc, ops.value());
        case 11:
            return MakeSpecialUsedCommand(doc, ops.u8() & 1);
        case 12: {
            const Vector3 at = ops.vec();
            return MakeSpecialCommand(doc, EditField::SpecialPosition,
                                      [at](SpecialPoint& p) { p.Position = at; });
        }
        case 13:
            return MakeSubObjectRadiusCommand(doc, ops.index(), ops.value());
        case 14: {
            const int s = ops.index();
            return MakeOffsetCommand(doc, s, ops.vec(), ops.u8() & 1);
        }
        case 15: {
            static const std::uint32_t flags[] = {0, kPropRotate, kPropFov, kPropGlow, 12345};
            PropertyValues values;
            values.RotatePeriod = ops.value();
            values.Fov = {ops.value() * 10, ops.value(), ops.value()};
            values.GlowColor = {ops.value(), ops.value(), ops.value()};
            values.GlowSize = ops.value();
            const int s = ops.index();
            return MakeStorePropertyCommand(doc, s, flags[ops.u8() % 5], values);
        }
        case 16: {
            const PointType type = ops.pointType();
            const int i = ops.index();
            return MakePointLocationCommand(doc, type, i, ops.vec());
        }
        case 17: {
            const PointType type = ops.pointType();
            const int i = ops.index();
            return MakePointDirectionCommand(doc, type, i, ops.vec());
        }
        case 18:
            return MakeAddBatteryCommand(doc);
        case 19:
            return MakeDeleteBatteryCommand(doc, ops.index());
        case 20: {
            const int b = ops.index();
            const bool add = ops.u8() & 1;
            if (b < 0 || b >= static_cast<int>(m.Batteries.size())) {
                return MakeBatteryEntryCommand(doc, b, "GPNT 0", add);
            }
            const auto entries = add ? AvailableBatteryEntries(m, b) : AssignedBatteryEntries(m, b);
            const std::string entry =
                entries.empty() ? "nothing" : entries[ops.u8() % entries.size()];
            return MakeBatteryEntryCommand(doc, b, entry, add);
        }
        case 21: {
            const int s = ops.index();
            const int frame = ops.index() * 3;
            const KeyKind kind = ops.u8() & 1 ? KeyKind::Rotation : KeyKind::Position;
            return MakeKeyPresenceCommand(doc, s, frame, kind, ops.u8() & 1);
        }
        case 22: {
            const int s = ops.index(), frame = ops.index() * 3;
            return MakeKeyPositionCommand(doc, s, frame, ops.vec());
        }
        case 23: {
            const int s = ops.index(), frame = ops.index() * 3;
            return MakeKeyAngleCommand(doc, s, frame, ops.index() * 1000);
        }
        case 24: {
            const int s = ops.index(), frame = ops.index() * 3;
            return MakeKeyAxisCommand(doc, s, frame, ops.vec());
        }
        case 25: {
            const int s = ops.index(), frame = ops.index() * 3;
            return MakeMirrorAxisCommand(doc, s, frame, ops.index() % 4);
        }
        case 26: {
            const int s = ops.index(), from = ops.index() * 3, to = ops.index() * 3;
            return MakeMoveKeysCommand(doc, s, from, to, static_cast<KeyFilter>(ops.u8() % 3));
        }
        case 27: {
            const int s = ops.index(), first = ops.index() * 3, last = ops.index() * 3;
            return MakeDeleteKeysCommand(doc, "Cut", s, first, last,
                                         static_cast<KeyFilter>(ops.u8() % 3));
        }
        case 28: {
            const int from = ops.index(), to = ops.index(), frame = ops.index() * 3;
            const auto filter = static_cast<KeyFilter>(ops.u8() % 3);
            ModelData copy = m;  // copying never changes the model
            if (ops.u8() & 1) {
                CopyAllKeys(copy, from, 0, frame, filter, false, clip);
                return MakePasteAllKeysCommand(doc, to, ops.index() * 3, filter, clip);
            }
            CopyKey(copy, from, frame, filter, false, clip);
            return MakePasteKeyCommand(doc, to, ops.index() * 3, filter, clip);
        }
        default:
            return MakeToStartCommand(doc, ops.index(), ops.index() * 3);
    }
}

}  // namespace mw::edits
