#include "model/key_clipboard.h"

#include "model/geometry.h"
#include "model/keys.h"

namespace mw {
namespace {

// One key track with its lookup, insert and delete operations.
template <typename Key>
struct Track {
    KeyTrack<Key> SubObject::*keys;
    int (*find)(const ModelData&, int, int, bool);
    bool (*insert)(ModelData&, int, int);
    bool (*remove)(ModelData&, int, int);
};
const Track<PosKey> kPositions{&SubObject::Pos, GetPANIindex, InsertPANIKey, DeletePANIKey};
const Track<RotKey> kRotations{&SubObject::Rot, GetRANIindex, InsertRANIKey, DeleteRANIKey};

// The key of s exactly at `frame`, inserted first when missing; nullptr when the track is
// full or the frame is out of range.
template <typename Key>
Key* KeyFor(const Track<Key>& track, ModelData& model, int s, int frame) {
    if (frame < 0 || frame > kLastKeyFrame) return nullptr;
    if (track.find(model, s, frame, true) < 0 && !track.insert(model, s, frame)) return nullptr;
    const int i = track.find(model, s, frame, true);
    return i < 0 ? nullptr : &(model.Sub(s).*track.keys).Keys[static_cast<std::size_t>(i)];
}

// Appends the keys at frames start..end to `out` with frames relative to the start (at most
// the clipboard's size); with `cut` they are deleted. Returns true when the model changed.
template <typename Key>
bool CopyRange(const Track<Key>& track, ModelData& model, int s, int start, int end, bool cut,
               std::vector<Key>& out) {
    bool changed = false;
    for (int f = start; f <= end && out.size() < kClipboardKeys; ++f) {
        const int i = track.find(model, s, f, true);
        if (i < 0) continue;
        Key key = (model.Sub(s).*track.keys).Keys[static_cast<std::size_t>(i)];
        key.Frame = f - start;
        out.push_back(key);
        if (cut) changed = track.remove(model, s, f) || changed;
    }
    return changed;
}

// The key exactly at `frame` into `out` (emptied when there is none).
template <typename Key>
bool CopyOne(const Track<Key>& track, ModelData& model, int s, int frame, bool cut,
             std::optional<Key>& out) {
    std::vector<Key> found;
    const bool changed = CopyRange(track, model, s, frame, frame, cut, found);
    out.reset();
    if (!found.empty()) {
        out = found.front();
        out->Frame = frame;
    }
    return changed;
}

bool PastePosition(ModelData& model, int s, int frame, const PosKey& value) {
    PosKey* key = KeyFor(kPositions, model, s, frame);
    if (key == nullptr) return false;
    key->Position = value.Position;
    return true;
}

bool PasteRotation(ModelData& model, int s, int frame, const RotKey& value) {
    RotKey* key = KeyFor(kRotations, model, s, frame);
    if (key == nullptr) return false;
    key->Axis = value.Axis;
    key->Angle = value.Angle;
    return true;
}

}  // namespace

bool CopyKey(ModelData& model, int s, int frame, KeyFilter filter, bool cut, KeyClipboard& clip) {
    if (!model.IsRecord(s)) return false;
    bool changed = false;
    if (TakesPositions(filter)) changed = CopyOne(kPositions, model, s, frame, cut, clip.Position);
    if (TakesRotations(filter)) {
        changed = CopyOne(kRotations, model, s, frame, cut, clip.Rotation) || changed;
    }
    if ((TakesPositions(filter) && clip.Position) || (TakesRotations(filter) && clip.Rotation)) {
        clip.singleKeyHeld = true;
    }
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
    if (TakesPositions(filter)) {
        changed = CopyRange(kPositions, model, s, start, end, cut, clip.AllPositions);
    }
    if (TakesRotations(filter)) {
        changed = CopyRange(kRotations, model, s, start, end, cut, clip.AllRotations) || changed;
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
