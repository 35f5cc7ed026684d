// A sub-object's keys from its node's animation: frame = time x 30, rounded. A rotation key
// is the turn from the previous key's orientation to its own (the first one from the node's
// rest orientation), as axis and angle in 65536ths of a turn in the game's space; the turns
// between samples are added up, so a full turn sampled every frame stays a full turn, and
// keys that go on about the same axis at the same speed are one key. A position key is the
// node's place less its rest place, in the model's axes.
#pragma once

#include <vector>

#include "convert/import_scene.h"
#include "convert/scene_transform.h"
#include "model/model_data.h"

namespace mw {

struct SubObjectKeys {
    std::vector<PosKey> Pos;
    std::vector<RotKey> Rot;
};

// `translation` and `rotation` may be null. The rest pose is the node's own translation and
// rotation; `parentWorld` the transform of its parent at rest (identity for a root).
SubObjectKeys KeysFromChannels(const SceneChannel* translation, const SceneChannel* rotation,
                               Vector3 restTranslation, const gltf::Quaternion& restRotation,
                               const Transform& parentWorld);

}  // namespace mw
