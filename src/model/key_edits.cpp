#include "model/key_edits.h"

#include <cmath>

#include "model/geometry.h"
#include "model/keys.h"

namespace mw {
namespace {

constexpr double kUnitsPerDegree = 182.044444444444;

struct Quaternion {
    double x = 0.0, y = 0.0, z = 0.0, w = 1.0;
};

Quaternion MatrixQuaternion(const Matrix4& m) {
    Quaternion q;
    const double trace = double{m[0]} + m[5] + m[10];
    if (trace > 0.0) {
        double s = std::sqrt(trace + 1.0);
        q.w = s / 2.0;
        s = s == 0.0 ? 1e-6 : 0.5 / s;
        q.x = (double{m[9]} - m[6]) * s;
        q.y = (double{m[2]} - m[8]) * s;
        q.z = (double{m[4]} - m[1]) * s;
        return q;
    }
    // By the largest diagonal element; ties go to the earlier one.
    if (m[0] >= m[5] && m[0] >= m[10]) {
        double s = std::sqrt(double{m[0]} - m[5] - m[10] + 1.0);
        q.x = s / 2.0;
        s = s == 0.0 ? 1e-7 : 0.5 / s;
        q.y = (double{m[4]} + m[1]) * s;
        q.z = (double{m[8]} + m[2]) * s;
        q.w = (double{m[9]} - m[6]) * s;
    } else if (m[5] >= m[10]) {
        double s = std::sqrt(double{m[5]} - m[10] - m[0] + 1.0);
        q.y = s / 2.0;
        s = s == 0.0 ? 1e-7 : 0.5 / s;
        q.x = (double{m[4]} + m[1]) * s;
        q.z = (double{m[9]} + m[6]) * s;
        q.w = (double{m[2]} - m[8]) * s;
    } else {
        double s = std::sqrt(double{m[10]} - m[0] - m[5] + 1.0);
        q.z = s / 2.0;
        s = s == 0.0 ? 1e-7 : 0.5 / s;
        q.x = (double{m[8]} + m[2]) * s;
        q.y = (double{m[9]} + m[6]) * s;
        q.w = (double{m[4]} - m[1]) * s;
    }
    return q;
}

}  // namespace

PosKey* PositionKeyAt(ModelData& model, int s, int frame) {
    const int i = GetPANIindex(model, s, frame, true);
    return i < 0 ? nullptr : &model.Sub(s).Pos.Keys[static_cast<std::size_t>(i)];
}

RotKey* RotationKeyAt(ModelData& model, int s, int frame) {
    const int i = GetRANIindex(model, s, frame, true);
    return i < 0 ? nullptr : &model.Sub(s).Rot.Keys[static_cast<std::size_t>(i)];
}

int DegreesToKeyAngle(double degrees) {
    // nearbyint rounds halves to even in the default rounding mode.
    return static_cast<int>(std::nearbyint(degrees * kUnitsPerDegree));
}

double KeyAngleToDegrees(int units) {
    return static_cast<double>(units) * 360.0 / 65536.0;
}

AxisAngle MatrixToAxisAngle(const Matrix4& matrix) {
    Quaternion q = MatrixQuaternion(matrix);
    const double length = std::sqrt(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w);
    if (length != 0.0) {
        q.x /= length;
        q.y /= length;
        q.z /= length;
        q.w /= length;
    }
    AxisAngle result;
    const double v = q.x * q.x + q.y * q.y + q.z * q.z;
    if (v == 0.0) return result;
    double angle = std::fabs(q.w) < 1.0 ? -2.0 * std::acos(q.w) : 0.0;
    const double root = std::sqrt(v);
    result.Axis = {static_cast<float>(-q.x / root), static_cast<float>(q.y / root),
                   static_cast<float>(q.z / root)};
    if (std::fabs(angle) >= 3.1415927) {
        angle = (angle > 0.0 ? -1.0 : 1.0) * (2.0 * kKeyPi - std::fabs(angle));
    }
    result.Angle = static_cast<int>(std::nearbyint(angle * 32768.0 / kKeyPi));
    return result;
}

bool SetPANIPosition(ModelData& model, int s, int frame, Vector3 position) {
    PosKey* key = PositionKeyAt(model, s, frame);
    if (key == nullptr || key->Position == position) return false;
    key->Position = position;
    return true;
}

bool SetRANIAngle(ModelData& model, int s, int frame, int angle) {
    RotKey* key = RotationKeyAt(model, s, frame);
    if (key == nullptr || key->Angle == angle) return false;
    key->Angle = angle;
    CalcRotMatrix(model, s);
    return true;
}

bool SetRANIAxis(ModelData& model, int s, int frame, Vector3 axis) {
    RotKey* key = RotationKeyAt(model, s, frame);
    if (key == nullptr || key->Axis == axis) return false;
    key->Axis = axis;
    CalcRotMatrix(model, s);
    return true;
}

bool MirrorRANIAxis(ModelData& model, int s, int frame, int component) {
    RotKey* key = RotationKeyAt(model, s, frame);
    if (key == nullptr || component < 0 || component > 2) return false;
    float* const parts[3] = {&key->Axis.X, &key->Axis.Y, &key->Axis.Z};
    *parts[component] = -*parts[component];
    CalcRotMatrix(model, s);
    return true;
}

int NeighbourKeyFrame(const ModelData& model, int s, bool rotation, int frame, int direction) {
    if (!model.IsRecord(s)) return -1;
    const SubObject& sub = model.Sub(s);
    const int k =
        rotation ? GetRANIindex(model, s, frame, false) : GetPANIindex(model, s, frame, false);
    const int count = rotation ? sub.Rot.KeyCount() : sub.Pos.KeyCount();
    const auto frameOf = [&](int i) {
        const auto at = static_cast<std::size_t>(i);
        return rotation ? sub.Rot.Keys[at].Frame : sub.Pos.Keys[at].Frame;
    };
    if (count == 0) return -1;
    if (direction < 0) {
        if (k < 0) return -1;
        if (frameOf(k) < frame) return frameOf(k);
        return k >= 1 ? frameOf(k - 1) : -1;
    }
    const int next = k + 1;  // k is -1 before the first key
    return next < count ? frameOf(next) : -1;
}

bool MoveKeysAt(ModelData& model, int s, int from, int to, KeyFilter filter) {
    if (from == to) return false;
    bool moved = false;
    if (TakesPositions(filter)) moved = MovePANIkey(model, s, from, to);
    if (TakesRotations(filter)) moved = MoveRANIkey(model, s, from, to) || moved;
    return moved;
}

bool SubToStart(ModelData& model, int s, int frame) {
    if (!model.IsRecord(s)) return false;
    if (GetPANIindex(model, s, frame, true) < 0 && model.Sub(s).Pos.KeyCount() > 0) {
        InsertPANIKey(model, s, frame);
    }
    if (GetRANIindex(model, s, frame, true) < 0 && model.Sub(s).Rot.KeyCount() > 0) {
        InsertRANIKey(model, s, frame);
    }
    bool touched = false;
    if (PosKey* key = PositionKeyAt(model, s, frame)) {
        key->Position = {};
        touched = true;
    }
    if (RotKey* key = RotationKeyAt(model, s, frame)) {
        const AxisAngle start = MatrixToAxisAngle(key->Matrix);
        key->Axis = start.Axis;
        key->Angle = start.Angle;
        CalcRotMatrix(model, s);
        touched = true;
    }
    return touched;
}

bool AllSubsToStart(ModelData& model, int frame) {
    bool touched = false;
    for (int k = 0; k < model.SubObjectCount(); ++k) {
        touched = SubToStart(model, model.Head(k), frame) || touched;
    }
    return touched;
}

}  // namespace mw
