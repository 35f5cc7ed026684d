// Edits of the key at one frame of a sub-object, as the animation panel makes them: values,
// mirrored axes, start poses, and the angle conversions between degrees, key units and
// rotation matrices.
#pragma once

#include "model/model_data.h"

namespace mw {

// Which tracks an operation touches: 0 both, 1 position keys only, 2 rotation keys only.
enum class KeyFilter { All = 0, Positional = 1, Rotational = 2 };
inline bool TakesPositions(KeyFilter f) {
    return f != KeyFilter::Rotational;
}
inline bool TakesRotations(KeyFilter f) {
    return f != KeyFilter::Positional;
}

// Degrees to key units (65536 a full turn), rounded half to even, and back.
int DegreesToKeyAngle(double degrees);
double KeyAngleToDegrees(int units);

// The rotation held in a matrix (row-major, as the keys keep it) as a key's axis and angle.
struct AxisAngle {
    Vector3 Axis{-1.0f, 0.0f, 0.0f};
    int Angle = 0;
};
AxisAngle MatrixToAxisAngle(const Matrix4& matrix);

// Each sets a value of the key exactly at `frame` of sub-object s; false, changing nothing,
// when there is no such key or the value is already there. Rotation edits recompute the
// sub-object's rotation matrices.
// The position or rotation key of s at exactly `frame`, or null.
PosKey* PositionKeyAt(ModelData& model, int s, int frame);
RotKey* RotationKeyAt(ModelData& model, int s, int frame);

bool SetPANIPosition(ModelData& model, int s, int frame, Vector3 position);
bool SetRANIAngle(ModelData& model, int s, int frame, int angle);
bool SetRANIAxis(ModelData& model, int s, int frame, Vector3 axis);
// Negates component 0 (x), 1 (y) or 2 (z) of the rotation key's axis.
bool MirrorRANIAxis(ModelData& model, int s, int frame, int component);

// Key navigation: the frame of the key before (direction -1) or after (+1) `frame` on the
// position (rotation false) or rotation track of s, or -1 when there is none. From a key
// it is the neighbouring key; between two keys, the nearer one of the two in that direction.
int NeighbourKeyFrame(const ModelData& model, int s, bool rotation, int frame, int direction);

// Moves the keys at `from` to `to`, of the kinds the filter takes. True when any moved.
bool MoveKeysAt(ModelData& model, int s, int from, int to, KeyFilter filter);

// Puts s at its start pose at `frame`: a missing key is inserted when s has keys of that kind,
// the position key goes to (0, 0, 0) and the rotation key takes the rotation its stored
// matrix holds. True when a key was touched.
bool SubToStart(ModelData& model, int s, int frame);
// The same for the head sub-object of every save slot, in save-slot order.
bool AllSubsToStart(ModelData& model, int frame);

}  // namespace mw
