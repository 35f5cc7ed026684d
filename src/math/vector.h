// Value types and pure operations on 3-vectors and 4x4 matrices shared by the
// model core, the renderer and the animation code.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace mw {

struct Vector3 {
    float X = 0.0f;
    float Y = 0.0f;
    float Z = 0.0f;

    friend bool operator==(const Vector3&, const Vector3&) = default;
};

// Element (row r, column c) sits at index 4r + c; the translation at 12..14.
struct Matrix4 {
    std::array<float, 16> m{};

    float& operator[](int i) { return m[static_cast<std::size_t>(i)]; }
    float operator[](int i) const { return m[static_cast<std::size_t>(i)]; }
    friend bool operator==(const Matrix4&, const Matrix4&) = default;
};

// The value of pi used for rotation-key angles: 65536 units make a full turn.
inline constexpr double kKeyPi = 3.14159265358979;

inline constexpr double kDegreesPerRadian = 180.0 / std::numbers::pi;

Matrix4 IdentityMatrix();

// The small operations are inline: the readers and the renderer call them per vertex.
inline float Length(Vector3 v) {
    const double x = v.X, y = v.Y, z = v.Z;
    return static_cast<float>(std::sqrt(x * x + y * y + z * z));
}

// v / Length(v); a zero vector gives (X, Y, 1), that is (0, 0, 1).
inline Vector3 Normalize(Vector3 v) {
    const float len = Length(v);
    if (len == 0.0f) return {v.X, v.Y, 1.0f};
    return {v.X / len, v.Y / len, v.Z / len};
}

// A rotation axis made unit length. An axis already of unit length within float precision
// (|length² - 1| at most 4 float epsilons of 2^-24) is kept bit for bit, so that reading and
// writing a file again does not move its axes by rounding.
inline Vector3 NormalizeAxis(Vector3 v) {
    const double x = v.X, y = v.Y, z = v.Z;
    const double lengthSquared = x * x + y * y + z * z;
    if (std::fabs(lengthSquared - 1.0) <= 4.0 / 16777216.0) return v;
    // Divided in double and rounded once, so the result is itself unit within that
    // tolerance and a second normalisation keeps it (dividing by a length already rounded
    // to float can land 5 epsilons off, and the axis would move on every read).
    const double length = std::sqrt(lengthSquared);
    if (length == 0.0) return {v.X, v.Y, 1.0f};
    return {static_cast<float>(x / length), static_cast<float>(y / length),
            static_cast<float>(z / length)};
}

// Components holding the not-a-number that 0/0 produces (bit pattern 0xFFC00000) become
// -100000; other values, other NaNs included, stay.
inline Vector3 RepairIndeterminate(Vector3 v) {
    auto fix = [](float f) {
        return std::bit_cast<std::uint32_t>(f) == 0xFFC00000u ? -100000.0f : f;
    };
    return {fix(v.X), fix(v.Y), fix(v.Z)};
}

inline Vector3 Add(Vector3 a, Vector3 b) {
    return {a.X + b.X, a.Y + b.Y, a.Z + b.Z};
}
inline Vector3 Subtract(Vector3 a, Vector3 b) {
    return {a.X - b.X, a.Y - b.Y, a.Z - b.Z};
}
inline Vector3 Scale(Vector3 v, float s) {
    return {v.X * s, v.Y * s, v.Z * s};
}

// v / s; a divisor of exactly 0 leaves v unchanged.
inline Vector3 DivideBy(Vector3 v, float s) {
    if (s == 0.0f) return v;
    return {v.X / s, v.Y / s, v.Z / s};
}

inline Vector3 Midpoint(Vector3 a, Vector3 b) {
    return {(a.X + b.X) / 2.0f, (a.Y + b.Y) / 2.0f, (a.Z + b.Z) / 2.0f};
}

inline Vector3 ComponentMin(Vector3 a, Vector3 b) {
    return {a.X < b.X ? a.X : b.X, a.Y < b.Y ? a.Y : b.Y, a.Z < b.Z ? a.Z : b.Z};
}

inline Vector3 ComponentMax(Vector3 a, Vector3 b) {
    return {a.X > b.X ? a.X : b.X, a.Y > b.Y ? a.Y : b.Y, a.Z > b.Z ? a.Z : b.Z};
}

Vector3 GetTranslation(const Matrix4& m);
Matrix4 TranslationMatrix(Vector3 v);

// Writes the nine rotation entries of `m`; the other seven are left as they are.
void AxisAngleMatrix(Matrix4& m, float angle, Vector3 axis);
// Identity with the rotation entries of AxisAngleMatrix.
Matrix4 AxisAngleMatrix(float angle, Vector3 axis);
// 3x3 product; in row-major terms the rotation part is b * a.
Matrix4 Concatenate3(const Matrix4& a, const Matrix4& b);

// Radians of a rotation-key angle (65536 units per turn).
float KeyAngleToRadians(double units);

}  // namespace mw
