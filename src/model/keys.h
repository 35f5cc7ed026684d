// Position and rotation key tracks: lookup, insert, delete and move, keeping the track
// ranges, the model-wide frame range and the presence flags current.
#pragma once

#include "model/model_data.h"

namespace mw {

// The key at `frame`; when not `exact`, the key at or before it (the last key past the
// track's end). -1 when there is none.
int GetPANIindex(const ModelData& model, int s, int frame, bool exact);
int GetRANIindex(const ModelData& model, int s, int frame, bool exact);

// Each returns false, changing nothing, when s is not a record or the track is full.
bool InsertPANIKey(ModelData& model, int s, int frame);
bool InsertRANIKey(ModelData& model, int s, int frame);
// Each returns false, changing nothing, when no key sits at the frame.
bool DeletePANIKey(ModelData& model, int s, int frame);
bool DeleteRANIKey(ModelData& model, int s, int frame);
bool MovePANIkey(ModelData& model, int s, int from, int to);
bool MoveRANIkey(ModelData& model, int s, int from, int to);

// FrameMin and FrameMax from the tracks of the save slots' heads.
void RecalcFrameRange(ModelData& model);

// Pose of sub-object s at fraction t of the way from key k to key k+1.
Vector3 InterpolatedPosition(const ModelData& model, int s, int k, float t);
Matrix4 InterpolatedRotation(const ModelData& model, int s, int k, float t);

}  // namespace mw
