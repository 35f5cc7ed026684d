// Value types and pure operations on 3-vectors and 4x4 matrices shared by the
// model core, the renderer and the animation code.
#pragma once

#include <array>

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

Matrix4 IdentityMatrix();

float Length(Vector3 v);
Vector3 Normalize(Vector3 v);
Vector3 RepairIndeterminate(Vector3 v);
Vector3 Add(Vector3 a, Vector3 b);
Vector3 Subtract(Vector3 a, Vector3 b);
Vector3 Scale(Vector3 v, float s);
Vector3 DivideBy(Vector3 v, float s);
Vector3 Midpoint(Vector3 a, Vector3 b);
Vector3 ComponentMin(Vector3 a, Vector3 b);
Vector3 ComponentMax(Vector3 a, Vector3 b);
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
