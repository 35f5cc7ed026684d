#include "model/keys.h"

#include "model/geometry.h"

namespace mw {
namespace {

template <typename Key>
int FindKey(const KeyTrack<Key>& track, int frame, bool exact) {
    if (frame < track.FirstFrame) return -1;
    if (frame > track.LastFrame) return exact ? -1 : track.KeyCount() - 1;
    for (int i = 0; i < track.KeyCount(); ++i) {
        const int f = track.Keys[static_cast<std::size_t>(i)].Frame;
        if (f >= frame) {
            if (f == frame) return i;
            return exact ? -1 : (i > 0 ? i - 1 : 0);
        }
    }
    return -1;
}

template <typename Key>
void RecalcTrackRange(KeyTrack<Key>& track) {
    track.FirstFrame = 99999;
    track.LastFrame = -99999;
    for (const Key& k : track.Keys) {
        if (k.Frame < track.FirstFrame) track.FirstFrame = k.Frame;
        if (k.Frame > track.LastFrame) track.LastFrame = k.Frame;
    }
}

// Inserts `key` at `frame` right after key `found` (the key at or before the frame).
template <typename Key>
void InsertKey(KeyTrack<Key>& track, int found, int frame, Key key) {
    key.Frame = frame;
    track.Keys.insert(track.Keys.begin() + (found + 1), key);
    RecalcTrackRange(track);
}

template <typename Key>
bool AnyHeadHasKeys(const ModelData& model, KeyTrack<Key> SubObject::*track) {
    for (int k = 0; k < model.SubObjectCount(); ++k) {
        if ((model.Sub(model.Head(k)).*track).KeyCount() > 0) return true;
    }
    return false;
}

}  // namespace

int GetPANIindex(const ModelData& model, int s, int frame, bool exact) {
    if (!model.IsRecord(s) || !model.HasPANI) return -1;
    return FindKey(model.Sub(s).Pos, frame, exact);
}

int GetRANIindex(const ModelData& model, int s, int frame, bool exact) {
    if (!model.IsRecord(s) || !model.HasRANI) return -1;
    return FindKey(model.Sub(s).Rot, frame, exact);
}

void RecalcFrameRange(ModelData& model) {
    model.FrameMin = 99999;
    model.FrameMax = -99999;
    for (int k = 0; k < model.SubObjectCount(); ++k) {
        const SubObject& sub = model.Sub(model.Head(k));
        for (int first : {sub.Pos.FirstFrame, sub.Rot.FirstFrame}) {
            if (first < model.FrameMin) model.FrameMin = first;
        }
        for (int last : {sub.Pos.LastFrame, sub.Rot.LastFrame}) {
            if (last > model.FrameMax) model.FrameMax = last;
        }
    }
}

bool InsertPANIKey(ModelData& model, int s, int frame) {
    if (!model.IsRecord(s)) return false;
    auto& track = model.Sub(s).Pos;
    if (track.KeyCount() >= kMaxKeys) return false;
    const int found = GetPANIindex(model, s, frame, false);
    const int p = found + 1;
    PosKey key;
    if (p > 0) key.Position = track.Keys[static_cast<std::size_t>(p - 1)].Position;
    if (p < track.KeyCount()) {
        key.Position = Midpoint(key.Position, track.Keys[static_cast<std::size_t>(p)].Position);
    }
    InsertKey(track, found, frame, key);
    RecalcFrameRange(model);
    model.HasPANI = true;
    return true;
}

bool InsertRANIKey(ModelData& model, int s, int frame) {
    if (!model.IsRecord(s)) return false;
    auto& track = model.Sub(s).Rot;
    if (track.KeyCount() >= kMaxKeys) return false;
    RotKey key;
    key.Axis = {-1.0f, 0.0f, 0.0f};
    InsertKey(track, GetRANIindex(model, s, frame, false), frame, key);
    model.HasRANI = true;
    CalcRotMatrix(model, s);
    return true;
}

bool DeletePANIKey(ModelData& model, int s, int frame) {
    const int i = GetPANIindex(model, s, frame, true);
    if (i < 0) return false;
    auto& track = model.Sub(s).Pos;
    track.Keys.erase(track.Keys.begin() + i);
    RecalcTrackRange(track);
    model.HasPANI = AnyHeadHasKeys(model, &SubObject::Pos);
    RecalcFrameRange(model);
    return true;
}

bool DeleteRANIKey(ModelData& model, int s, int frame) {
    const int i = GetRANIindex(model, s, frame, true);
    if (i < 0) return false;
    auto& track = model.Sub(s).Rot;
    track.Keys.erase(track.Keys.begin() + i);
    RecalcTrackRange(track);
    model.HasRANI = AnyHeadHasKeys(model, &SubObject::Rot);
    RecalcFrameRange(model);
    CalcRotMatrix(model, s);
    return true;
}

bool MovePANIkey(ModelData& model, int s, int from, int to) {
    const int i = GetPANIindex(model, s, from, true);
    if (i < 0) return false;
    const Vector3 position = model.Sub(s).Pos.Keys[static_cast<std::size_t>(i)].Position;
    DeletePANIKey(model, s, from);
    InsertPANIKey(model, s, to);
    const int j = GetPANIindex(model, s, to, true);
    if (j >= 0) model.Sub(s).Pos.Keys[static_cast<std::size_t>(j)].Position = position;
    return true;
}

bool MoveRANIkey(ModelData& model, int s, int from, int to) {
    const int i = GetRANIindex(model, s, from, true);
    if (i < 0) return false;
    const RotKey kept = model.Sub(s).Rot.Keys[static_cast<std::size_t>(i)];
    DeleteRANIKey(model, s, from);
    InsertRANIKey(model, s, to);
    const int j = GetRANIindex(model, s, to, true);
    if (j >= 0) {
        RotKey& key = model.Sub(s).Rot.Keys[static_cast<std::size_t>(j)];
        key.Axis = kept.Axis;
        key.Angle = kept.Angle;
    }
    CalcRotMatrix(model, s);
    return true;
}

Vector3 InterpolatedPosition(const ModelData& model, int s, int k, float t) {
    const auto& keys = model.Sub(s).Pos.Keys;
    const Vector3 p0 = keys[static_cast<std::size_t>(k)].Position;
    const Vector3 p1 =
        k + 1 < static_cast<int>(keys.size()) ? keys[static_cast<std::size_t>(k) + 1].Position : p0;
    return Add(p0, Scale(Subtract(p1, p0), t));
}

Matrix4 InterpolatedRotation(const ModelData& model, int s, int k, float t) {
    const auto& keys = model.Sub(s).Rot.Keys;
    Vector3 axis{-1.0f, 0.0f, 0.0f};
    float angle = 0.0f;
    if (k + 1 < static_cast<int>(keys.size())) {
        const RotKey& next = keys[static_cast<std::size_t>(k) + 1];
        axis = next.Axis;
        angle = KeyAngleToRadians(static_cast<double>(static_cast<float>(next.Angle) * t));
    }
    return Concatenate3(AxisAngleMatrix(angle, axis), keys[static_cast<std::size_t>(k)].Matrix);
}

}  // namespace mw
