#include "convert/scene_transform.h"

namespace mw {

Transform Multiply(const Transform& a, const Transform& b) {
    Transform r{};
    for (int c = 0; c < 4; ++c) {
        for (int row = 0; row < 4; ++row) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k)
                sum += a[static_cast<std::size_t>(4 * k + row)] *
                       b[static_cast<std::size_t>(4 * c + k)];
            r[static_cast<std::size_t>(4 * c + row)] = sum;
        }
    }
    return r;
}

Transform ComposeTransform(Vector3 t, const gltf::Quaternion& q, std::array<double, 3> s) {
    const auto columns = gltf::ColumnsFromQuaternion(q);
    Transform m{};
    for (std::size_t c = 0; c < 3; ++c) {
        m[4 * c + 0] = columns[c].X * s[c];
        m[4 * c + 1] = columns[c].Y * s[c];
        m[4 * c + 2] = columns[c].Z * s[c];
    }
    m[12] = t.X;
    m[13] = t.Y;
    m[14] = t.Z;
    m[15] = 1.0;
    return m;
}

Vector3 TransformPoint(const Transform& m, Vector3 p) {
    const Vector3 d = TransformDirection(m, p);
    return {static_cast<float>(d.X + m[12]), static_cast<float>(d.Y + m[13]),
            static_cast<float>(d.Z + m[14])};
}

Vector3 TransformDirection(const Transform& m, Vector3 d) {
    return {static_cast<float>(m[0] * d.X + m[4] * d.Y + m[8] * d.Z),
            static_cast<float>(m[1] * d.X + m[5] * d.Y + m[9] * d.Z),
            static_cast<float>(m[2] * d.X + m[6] * d.Y + m[10] * d.Z)};
}

Transform NormalTransform(const Transform& m) {
    // The cofactor matrix is the inverse transpose up to a positive factor (for transforms
    // that keep handedness; a mirroring one flips it, which the sign of the determinant mends).
    const double a = m[0], b = m[4], c = m[8], d = m[1], e = m[5], f = m[9], g = m[2], h = m[6],
                 i = m[10];
    const double c00 = e * i - f * h, c01 = f * g - d * i, c02 = d * h - e * g;
    const double c10 = c * h - b * i, c11 = a * i - c * g, c12 = b * g - a * h;
    const double c20 = b * f - c * e, c21 = c * d - a * f, c22 = a * e - b * d;
    const double sign = a * c00 + b * c01 + c * c02 < 0.0 ? -1.0 : 1.0;
    return {sign * c00, sign * c10, sign * c20, 0, sign * c01, sign * c11, sign * c21, 0,
            sign * c02, sign * c12, sign * c22, 0, 0,          0,          0,          1};
}

Vector3 TransformNormal(const Transform& m, Vector3 n) {
    return TransformDirection(NormalTransform(m), n);
}

bool IsIdentity(const Transform& m) {
    for (std::size_t i = 0; i < 16; ++i) {
        if (m[i] != (i % 5 == 0 ? 1.0 : 0.0)) return false;
    }
    return true;
}

Vector3 TranslationOf(const Transform& m) {
    return {static_cast<float>(m[12]), static_cast<float>(m[13]), static_cast<float>(m[14])};
}

}  // namespace mw
