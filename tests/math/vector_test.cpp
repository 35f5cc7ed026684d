#include "math/vector.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace mw {
namespace {

TEST(Vector, NormalizeAndDivideGuardZero) {
    EXPECT_EQ(Normalize({0, 0, 0}), (Vector3{0, 0, 1}));
    const Vector3 n = Normalize({3, 0, 4});
    EXPECT_FLOAT_EQ(n.X, 0.6f);
    EXPECT_FLOAT_EQ(n.Z, 0.8f);
    EXPECT_EQ(DivideBy({1, 2, 3}, 0.0f), (Vector3{1, 2, 3}));
    EXPECT_EQ(DivideBy({2, 4, 6}, 2.0f), (Vector3{1, 2, 3}));
}

TEST(Vector, ComponentMinMaxAndMidpoint) {
    EXPECT_EQ(ComponentMin({1, 5, 3}, {2, 4, 3}), (Vector3{1, 4, 3}));
    EXPECT_EQ(ComponentMax({1, 5, 3}, {2, 4, 3}), (Vector3{2, 5, 3}));
    EXPECT_EQ(Midpoint({0, 0, 0}, {10, -4, 2}), (Vector3{5, -2, 1}));
}

TEST(Vector, RepairReplacesOnlyTheIndeterminatePattern) {
    const float indeterminate = std::bit_cast<float>(std::uint32_t{0xFFC00000u});
    const float otherNan = std::numeric_limits<float>::quiet_NaN();  // 0x7FC00000
    const Vector3 r = RepairIndeterminate({indeterminate, otherNan, 2.0f});
    EXPECT_EQ(r.X, -100000.0f);
    EXPECT_TRUE(std::isnan(r.Y));
    EXPECT_EQ(r.Z, 2.0f);
}

TEST(Matrix, AxisAngleNegatesYAndZOfTheAxis) {
    const Matrix4 m = AxisAngleMatrix(static_cast<float>(kKeyPi / 2), {0, 0, 1});
    EXPECT_NEAR(m[1], -1.0f, 1e-6);
    EXPECT_NEAR(m[4], 1.0f, 1e-6);
    EXPECT_NEAR(m[0], 0.0f, 1e-6);
    EXPECT_FLOAT_EQ(m[10], 1.0f);
    EXPECT_EQ(m[15], 1.0f);
    EXPECT_EQ(m[12], 0.0f);
}

TEST(Matrix, Concatenate3IsSecondTimesFirstAndDropsTranslation) {
    Matrix4 a = IdentityMatrix(), b = IdentityMatrix();
    // a: a 3x3 with distinct entries; b: a permutation of the axes.
    const float av[9] = {1, 2, 3, 4, 5, 6, 7, 8, 10};
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            a[4 * r + c] = av[3 * r + c];
    }
    b[0] = 0, b[1] = 1, b[4] = 1, b[5] = 0;
    b[12] = 9;
    const Matrix4 p = Concatenate3(a, b);
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            float want = 0;
            for (int k = 0; k < 3; ++k)
                want += b[4 * r + k] * a[4 * k + c];
            EXPECT_EQ(p[4 * r + c], want) << r << "," << c;
        }
    }
    EXPECT_EQ(p[12], 0.0f);
    EXPECT_EQ(p[15], 1.0f);
}

TEST(Matrix, TranslationRoundTrip) {
    EXPECT_EQ(GetTranslation(TranslationMatrix({1, 2, 3})), (Vector3{1, 2, 3}));
    EXPECT_FLOAT_EQ(KeyAngleToRadians(16384), static_cast<float>(kKeyPi / 2));
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

// An axis made unit is one a second normalisation keeps bit for bit, however small the
// axis was (found by the edit fuzzer: tiny axes normalised through a float length landed 15
// epsilons off and moved again on every read).
TEST(Vector, NormalizedAxesAreFixedPoints) {
    for (const Vector3 tiny :
         {Vector3{6.82309038e-40f, 7.69481013e-40f, 0.0f}, Vector3{3e-39f, -1e-39f, 2e-39f},
          Vector3{1e30f, 3e30f, -2e30f}, Vector3{0.3f, 0.4f, 0.0f}}) {
        const Vector3 once = NormalizeAxis(tiny);
        const double x = once.X, y = once.Y, z = once.Z;
        EXPECT_LE(std::fabs(x * x + y * y + z * z - 1.0), 4.0 / 16777216.0);
        const Vector3 twice = NormalizeAxis(once);
        EXPECT_EQ(std::memcmp(&once, &twice, sizeof once), 0);
    }
}

}  // namespace
}  // namespace mw
