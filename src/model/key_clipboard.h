// The key clipboard of the Animation menu: one key (a position and a rotation key, each
// present or not) or all keys of a frame range with frames relative to its start. Cutting,
// copying and pasting work on one sub-object, for the kinds the key filter takes.
#pragma once

#include <optional>
#include <vector>

#include "model/key_edits.h"
#include "model/model_data.h"

namespace mw {

// Frames a key can sit at, and the most keys of each kind the clipboard holds.
inline constexpr int kLastKeyFrame = 999;
inline constexpr int kClipboardKeys = 1000;

struct KeyClipboard {
    std::optional<PosKey> Position;  // the single key's parts; empty when not copied
    std::optional<RotKey> Rotation;
    bool singleKeyHeld = false;
    // Frames of these are relative to the start of the copied range.
    std::vector<PosKey> AllPositions;
    std::vector<RotKey> AllRotations;
    bool allKeysHeld = false;
};

// Cut Key / Copy Key: the keys exactly at `frame` of s go into the single-key part (a kind
// the filter takes but without a key there is marked empty). With `cut` they are deleted.
// Returns true when the model changed.
bool CopyKey(ModelData& model, int s, int frame, KeyFilter filter, bool cut, KeyClipboard& clip);
// Paste Key: at `frame` each held kind the filter takes is inserted when missing and given
// the held values. Returns true when the model changed.
bool PasteKey(ModelData& model, int s, int frame, KeyFilter filter, const KeyClipboard& clip);

// Cut All Keys / Copy All Keys over frames start..end.
bool CopyAllKeys(ModelData& model, int s, int start, int end, KeyFilter filter, bool cut,
                 KeyClipboard& clip);
// Paste All Keys with the first relative frame at `frame`; keys that would land past the
// last frame are left out.
bool PasteAllKeys(ModelData& model, int s, int frame, KeyFilter filter, const KeyClipboard& clip);

}  // namespace mw
