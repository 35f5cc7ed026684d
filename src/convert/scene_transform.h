// Column-major 4x4 transforms of scene nodes, in double precision.
#pragma once

#include <array>

#include "convert/gltf_common.h"
#include "math/vector.h"

namespace mw {

using Transform = std::array<double, 16>;  // element (row r, column c) at 4c + r

Transform Multiply(const Transform& a, const Transform& b);
// Translation, rotation and scale as glTF combines them: T * R * S.
Transform ComposeTransform(Vector3 translation, const gltf::Quaternion& rotation,
                           std::array<double, 3> scale);
Vector3 TransformPoint(const Transform& m, Vector3 p);
// The linear part applied to a direction (no translation).
Vector3 TransformDirection(const Transform& m, Vector3 d);
// A normal carried through the transform: the inverse transpose of the linear part.
Vector3 TransformNormal(const Transform& m, Vector3 n);
// The transform TransformDirection applies to normals for TransformNormal (made once for
// many normals).
Transform NormalTransform(const Transform& m);
bool IsIdentity(const Transform& m);
Vector3 TranslationOf(const Transform& m);

}  // namespace mw
