#include "model/key_clipboard.h"

#include "model/geometry.h"
#include "model/keys.h"

namespace mw {
namespace {

// The key of s exactly at `frame`, inserted first when missing; nullptr when the track is
// full or the frame is out of range.
PosKey* PositionKeyFor(ModelData& model, int s, int frame) {
    if (frame < 0 || frame > kLastKeyFrame) return nullptr;
    if (GetPANIindex(model, s, frame, true) < 0 && !InsertPANIKey(model, s, frame)) {
        return nullptr;
    }
    const int i = GetPANIindex(model, s, frame, true);
    return i < 0 ? nullptr : &model.Sub(s).Pos.Keys[static_cast<std::size_t>(i)];
}

RotKey* RotationKeyFor(ModelData& model, int s, int frame) {
    if (frame < 0 || frame > kLastKeyFrame) return nullptr;
    if (GetRANIindex(model, s, frame, true) < 0 && !InsertRANIKey(model, s, frame)) {
        return nullptr;
    }
    const int i = GetRANIindex(model, s, frame, true);
    return i < 0 ? nullptr : &model.Sub(s).Rot.Keys[static_cast<std::size_t>(i)];
}

bool PastePosition(ModelData& model, int s, int frame, const PosKey& value) {
    PosKey* key = PositionKeyFor(model, s, frame);
    if (key == nullptr) return false;
    key->Position = value.Position;
    return true;
}

bool PasteRotation(ModelData& model, int s, int frame, const RotKey& value) {
    RotKey* key = RotationKeyFor(model, s, frame);
    if (key == nullptr) return false;
    key->Axis = value.Axis;
    key->Angle = value.Angle;
    return true;
}

}  // namespace

bool CopyKey(ModelData& model, int s, int frame, KeyFilter filter, bool cut, KeyClipboard& clip) {
    if (!model.IsRecord(s)) return false;
    bool copied = false;
    bool changed = false;
    if (TakesPositions(filter)) {
        const int i = GetPANIindex(model, s, frame, true);
        clip.Position.reset();
        if (i >= 0) {
            clip.Position = model.Sub(s).Pos.Keys[static_cast<std::size_t>(i)];
            copied = true;
            if (cut) changed = DeletePANIKey(model, s, frame);
        }
    }
    if (TakesRotations(filter)) {
        const int i = GetRANIindex(model, s, frame, true);
        clip.Rotation.reset();
        if (i >= 0) {
            clip.Rotation = model.Sub(s).Rot.Keys[static_cast<std::size_t>(i)];
            copied = true;
            if (cut) changed = DeleteRANIKey(model, s, frame) || changed;
        }
    }
    if (copied) clip.singleKeyHeld = true;
    return changed;
}

bool PasteKey(ModelData& model, int s, int frame, KeyFilter filter, const KeyClipboard& clip) {
    if (!model.IsRecord(s)) return false;
    bool changed = false;
    if (TakesPositions(filter) && clip.Position) {
        changed = PastePosition(model, s, frame, *clip.Position);
    }
    if (TakesRotations(filter) && clip.Rotation) {
        changed = PasteRotation(model, s, frame, *clip.Rotation) || changed;
        CalcRotMatrix(model, s);
    }
    return changed;
}

bool CopyAllKeys(ModelData& model, int s, int start, int end, KeyFilter filter, bool cut,
                 KeyClipboard& clip) {
    clip.AllPositions.clear();
    clip.AllRotations.clear();
    if (!model.IsRecord(s)) return false;
    bool changed = false;
    for (int f = start; f <= end; ++f) {
        if (!TakesPositions(filter) || clip.AllPositions.size() >= kClipboardKeys) break;
        const int i = GetPANIindex(model, s, f, true);
        if (i < 0) continue;
        PosKey key = model.Sub(s).Pos.Keys[static_cast<std::size_t>(i)];
        key.Frame = f - start;
        clip.AllPositions.push_back(key);
        if (cut) changed = DeletePANIKey(model, s, f) || changed;
    }
    for (int f = start; f <= end; ++f) {
        if (!TakesRotations(filter) || clip.AllRotations.size() >= kClipboardKeys) break;
        const int i = GetRANIindex(model, s, f, true);
        if (i < 0) continue;
        RotKey key = model.Sub(s).Rot.Keys[static_cast<std::size_t>(i)];
        key.Frame = f - start;
        clip.AllRotations.push_back(key);
        if (cut) changed = DeleteRANIKey(model, s, f) || changed;
    }
    if (!clip.AllPositions.empty() || !clip.AllRotations.empty()) clip.allKeysHeld = true;
    return changed;
}

bool PasteAllKeys(ModelData& model, int s, int frame, KeyFilter filter, const KeyClipboard& clip) {
    if (!model.IsRecord(s)) return false;
    bool changed = false;
    if (TakesPositions(filter)) {
        for (const PosKey& key : clip.AllPositions) {
            changed = PastePosition(model, s, frame + key.Frame, key) || changed;
        }
    }
    if (TakesRotations(filter) && !clip.AllRotations.empty()) {
        for (const RotKey& key : clip.AllRotations) {
            changed = PasteRotation(model, s, frame + key.Frame, key) || changed;
        }
        CalcRotMatrix(model, s);
    }
    return changed;
}

}  // namespace mw
