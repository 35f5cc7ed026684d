#include "math/vector.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace mw {

Matrix4 IdentityMatrix() {
    Matrix4 m;
    m[0] = m[5] = m[10] = m[15] = 1.0f;
    return m;
}

float Length(Vector3 v) {
    const double x = v.X, y = v.Y, z = v.Z;
    return static_cast<float>(std::sqrt(x * x + y * y + z * z));
}

Vector3 Normalize(Vector3 v) {
    const float len = Length(v);
    if (len == 0.0f) return {v.X, v.Y, 1.0f};
    return {v.X / len, v.Y / len, v.Z / len};
}

Vector3 RepairIndeterminate(Vector3 v) {
    // Only the bit pattern that 0/0 produces is replaced; other NaNs stay.
    auto fix = [](float f) {
        return std::bit_cast<std::uint32_t>(f) == 0xFFC00000u ? -100000.0f : f;
    };
    return {fix(v.X), fix(v.Y), fix(v.Z)};
}

Vector3 Add(Vector3 a, Vector3 b) {
    return {a.X + b.X, a.Y + b.Y, a.Z + b.Z};
}
Vector3 Subtract(Vector3 a, Vector3 b) {
    return {a.X - b.X, a.Y - b.Y, a.Z - b.Z};
}
Vector3 Scale(Vector3 v, float s) {
    return {v.X * s, v.Y * s, v.Z * s};
}

Vector3 DivideBy(Vector3 v, float s) {
    if (s == 0.0f) return v;
    return {v.X / s, v.Y / s, v.Z / s};
}

Vector3 Midpoint(Vector3 a, Vector3 b) {
    return {(a.X + b.X) / 2.0f, (a.Y + b.Y) / 2.0f, (a.Z + b.Z) / 2.0f};
}

Vector3 ComponentMin(Vector3 a, Vector3 b) {
    return {a.X < b.X ? a.X : b.X, a.Y < b.Y ? a.Y : b.Y, a.Z < b.Z ? a.Z : b.Z};
}

Vector3 ComponentMax(Vector3 a, Vector3 b) {
    return {a.X > b.X ? a.X : b.X, a.Y > b.Y ? a.Y : b.Y, a.Z > b.Z ? a.Z : b.Z};
}

Vector3 GetTranslation(const Matrix4& m) {
    return {m[12], m[13], m[14]};
}

Matrix4 TranslationMatrix(Vector3 v) {
    Matrix4 m = IdentityMatrix();
    m[12] = v.X;
    m[13] = v.Y;
    m[14] = v.Z;
    return m;
}

void AxisAngleMatrix(Matrix4& m, float angle, Vector3 axis) {
    // The model is left-handed: Y and Z of the axis are negated.
    const float x = axis.X, y = -axis.Y, z = -axis.Z;
    const float s = std::sin(angle), c = std::cos(angle), t = 1.0f - c;
    m[0] = t * x * x + c;
    m[1] = t * x * y + s * z;
    m[2] = t * x * z - s * y;
    m[4] = t * x * y - s * z;
    m[5] = t * y * y + c;
    m[6] = t * y * z + s * x;
    m[8] = t * x * z + s * y;
    m[9] = t * y * z - s * x;
    m[10] = t * z * z + c;
}

Matrix4 AxisAngleMatrix(float angle, Vector3 axis) {
    Matrix4 m = IdentityMatrix();
    AxisAngleMatrix(m, angle, axis);
    return m;
}

Matrix4 Concatenate3(const Matrix4& a, const Matrix4& b) {
    Matrix4 r = IdentityMatrix();
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            r[4 * j + i] = a[i] * b[4 * j] + a[4 + i] * b[4 * j + 1] + a[8 + i] * b[4 * j + 2];
        }
    }
    return r;
}

float KeyAngleToRadians(double units) {
    return static_cast<float>(units * kKeyPi / 32768.0);
}

}  // namespace mw
