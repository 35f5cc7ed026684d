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
