// Keys from animation channels: turns added up (never the short way round), runs at one
// speed as one key, step and spline samplers, position keys in the model's axes, and a glTF
// file whose rotor spins a full turn.
#include "convert/scene_keys.h"

#include <gtest/gtest.h>
#include <QByteArray>
#include <cmath>
#include <fstream>

#include "convert/model_import.h"
#include "model/game_check.h"
#include "model/geometry.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

constexpr double kPi = 3.14159265358979323846;

const Transform kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// A turn of `degrees` about a unit axis as a glTF quaternion.
gltf::Quaternion About(std::array<double, 3> axis, double degrees) {
    const double h = degrees * kPi / 360.0;
    return {axis[0] * std::sin(h), axis[1] * std::sin(h), axis[2] * std::sin(h), std::cos(h)};
}

// A rotation channel sampled every frame from 0 to `frames`, turning `degrees` in all.
SceneChannel Sampled(std::array<double, 3> axis, double degrees, int frames) {
    SceneChannel c;
    c.Target = SceneChannel::Path::Rotation;
    for (int f = 0; f <= frames; ++f) {
        c.Times.push_back(static_cast<float>(f / 30.0));
        for (const double e : About(axis, degrees * f / frames))
            c.Values.push_back(static_cast<float>(e));
    }
    return c;
}

long long AngleSum(const std::vector<RotKey>& keys) {
    long long sum = 0;
    for (const RotKey& k : keys)
        sum += k.Angle;
    return sum;
}

TEST(SceneKeys, AQuarterTurnInThirtyStepsIsOneKeyOf16384) {
    const SceneChannel c = Sampled({0, 1, 0}, 90, 30);
    const SubObjectKeys keys = KeysFromChannels(nullptr, &c, {}, {0, 0, 0, 1}, kIdentity);
    ASSERT_EQ(keys.Rot.size(), 2u);
    EXPECT_EQ(keys.Rot[0].Frame, 0);
    EXPECT_EQ(keys.Rot[0].Angle, 0);
    EXPECT_EQ(keys.Rot[1].Frame, 30);
    EXPECT_EQ(keys.Rot[1].Angle, 16384);
    // The game makes its key matrices in its mirrored space: the axis has Y and Z negated,
    // and the orientation the last key reaches is the file's.
    EXPECT_NEAR(keys.Rot[1].Axis.Y, -1.0f, 1e-6f);
    ModelData m;
    m.SubObjects.emplace_back();
    m.Sub(0).Rot.Keys = keys.Rot;
    CalcRotMatrix(m, 0);
    const gltf::Quaternion reached = gltf::QuaternionFromKeyMatrix(m.Sub(0).Rot.Keys[1].Matrix);
    const gltf::Quaternion wanted = About({0, 1, 0}, 90);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(reached[i], wanted[i], 1e-5);
}

TEST(SceneKeys, AFullTurnSampledEveryFrameStaysAFullTurn) {
    const SceneChannel c = Sampled({0, 0, 1}, 360, 30);
    const SubObjectKeys keys = KeysFromChannels(nullptr, &c, {}, {0, 0, 0, 1}, kIdentity);
    ASSERT_EQ(keys.Rot.size(), 2u);
    EXPECT_EQ(keys.Rot[1].Angle, 65536);
    // Two turns the other way about a turned parent: the axis follows the parent.
    const SceneChannel back = Sampled({0, 0, 1}, -720, 60);
    const Transform turned = ComposeTransform({}, About({1, 0, 0}, 90), {1, 1, 1});
    const SubObjectKeys b = KeysFromChannels(nullptr, &back, {}, {0, 0, 0, 1}, turned);
    EXPECT_EQ(std::llabs(AngleSum(b.Rot)), 131072);
    // Local Z under a parent turned 90 degrees about X is the model's -Y (glTF) ...
    EXPECT_NEAR(std::fabs(b.Rot[1].Axis.Y), 1.0f, 1e-5f);
    EXPECT_NEAR(b.Rot[1].Axis.Z, 0.0f, 1e-5f);
}

TEST(SceneKeys, StepAndSplineSamplers) {
    SceneChannel step;
    step.Target = SceneChannel::Path::Rotation;
    step.Mode = SceneChannel::Interpolation::Step;
    step.Times = {0.0f, 1.0f};
    for (const gltf::Quaternion& q : {About({0, 0, 1}, 0), About({0, 0, 1}, 90)}) {
        for (const double e : q)
            step.Values.push_back(static_cast<float>(e));
    }
    const SubObjectKeys s = KeysFromChannels(nullptr, &step, {}, {0, 0, 0, 1}, kIdentity);
    ASSERT_EQ(s.Rot.size(), 3u);  // held until the frame before the change
    EXPECT_EQ(s.Rot[1].Frame, 29);
    EXPECT_EQ(s.Rot[1].Angle, 0);
    EXPECT_EQ(s.Rot[2].Frame, 30);
    EXPECT_EQ(s.Rot[2].Angle, 16384);

    // An eased quarter turn (zero tangents): other speeds every frame, the sum exact.
    SceneChannel spline;
    spline.Target = SceneChannel::Path::Rotation;
    spline.Mode = SceneChannel::Interpolation::CubicSpline;
    spline.Times = {0.0f, 1.0f};
    for (const gltf::Quaternion& q : {About({1, 0, 0}, 0), About({1, 0, 0}, 90)}) {
        for (int part = 0; part < 3; ++part) {
            for (const double e : q)
                spline.Values.push_back(part == 1 ? static_cast<float>(e) : 0.0f);
        }
    }
    const SubObjectKeys e = KeysFromChannels(nullptr, &spline, {}, {0, 0, 0, 1}, kIdentity);
    EXPECT_GT(e.Rot.size(), 10u);
    EXPECT_EQ(AngleSum(e.Rot), 16384);
}

TEST(SceneKeys, PositionKeysAreTheMoveFromRestInTheModelsAxes) {
    SceneChannel move;
    move.Target = SceneChannel::Path::Translation;
    for (int f = 0; f <= 30; ++f) {
        move.Times.push_back(static_cast<float>(f / 30.0));
        move.Values.insert(move.Values.end(), {1.0f, 2.0f * static_cast<float>(f) / 30.0f, 0.0f});
    }
    // Under a parent turned 90 degrees about Z, local +Y is the file's -X, the model's +X.
    const Transform parent = ComposeTransform({}, About({0, 0, 1}, 90), {1, 1, 1});
    const SubObjectKeys k = KeysFromChannels(&move, nullptr, {1, 0, 0}, {0, 0, 0, 1}, parent);
    ASSERT_EQ(k.Pos.size(), 2u);  // a straight, even move needs its two ends only
    EXPECT_EQ(k.Pos[1].Frame, 30);
    EXPECT_NEAR(k.Pos[1].Position.X, 2.0f, 1e-5f);
    EXPECT_NEAR(k.Pos[1].Position.Y, 0.0f, 1e-5f);
    EXPECT_NEAR(k.Pos[0].Position.X, 0.0f, 1e-5f);
}

// A radar (a square) with "$rotate=2" that spins a full turn about Y, sampled every frame
// as Blender writes it.
std::string SpinningGltf() {
    std::vector<float> data{-1, 0, -1, 1, 0, -1, 1, 0, 1, -1, 0, 1};
    const std::size_t timesAt = data.size() * 4;
    for (int f = 0; f <= 30; ++f)
        data.push_back(static_cast<float>(f / 30.0));
    const std::size_t valuesAt = data.size() * 4;
    for (int f = 0; f <= 30; ++f) {
        for (const double e : About({0, 1, 0}, 12.0 * f))
            data.push_back(static_cast<float>(e));
    }
    std::vector<std::uint16_t> indices{0, 2, 1, 0, 3, 2};
    QByteArray bytes(reinterpret_cast<const char*>(data.data()),
                     static_cast<qsizetype>(4 * data.size()));
    const std::size_t indicesAt = static_cast<std::size_t>(bytes.size());
    bytes.append(reinterpret_cast<const char*>(indices.data()), 12);
    const std::string uri =
        "data:application/octet-stream;base64," + bytes.toBase64().toStdString();
    nlohmann::json doc = {
        {"asset", {{"version", "2.0"}}},
        {"scene", 0},
        {"scenes", {{{"nodes", {0}}}}},
        {"nodes",
         {{{"name", "Radar"}, {"mesh", 0}, {"extras", {{"pof_properties", "$rotate=2"}}}}}},
        {"meshes", {{{"primitives", {{{"attributes", {{"POSITION", 0}}}, {"indices", 3}}}}}}},
        {"buffers", {{{"byteLength", bytes.size()}, {"uri", uri}}}},
        {"bufferViews",
         {{{"buffer", 0}, {"byteOffset", 0}, {"byteLength", 48}},
          {{"buffer", 0}, {"byteOffset", timesAt}, {"byteLength", 31 * 4}},
          {{"buffer", 0}, {"byteOffset", valuesAt}, {"byteLength", 31 * 16}},
          {{"buffer", 0}, {"byteOffset", indicesAt}, {"byteLength", 12}}}},
        {"accessors",
         {{{"bufferView", 0},
           {"componentType", 5126},
           {"count", 4},
           {"type", "VEC3"},
           {"min", {-1, 0, -1}},
           {"max", {1, 0, 1}}},
          {{"bufferView", 1},
           {"componentType", 5126},
           {"count", 31},
           {"type", "SCALAR"},
           {"min", {0}},
           {"max", {1}}},
          {{"bufferView", 2}, {"componentType", 5126}, {"count", 31}, {"type", "VEC4"}},
          {{"bufferView", 3}, {"componentType", 5123}, {"count", 6}, {"type", "SCALAR"}}}},
        {"animations",
         {{{"channels", {{{"sampler", 0}, {"target", {{"node", 0}, {"path", "rotation"}}}}}},
           {"samplers", {{{"input", 1}, {"output", 2}, {"interpolation", "LINEAR"}}}}}}}};
    return doc.dump();
}

TEST(SceneKeys, AGltfRotorComesInWithItsKeys) {
    const test::TempDir dir("import_keys");
    std::ofstream(dir / "radar.gltf") << SpinningGltf();
    const ImportResult r = ImportModel(dir / "radar.gltf");
    ASSERT_EQ(r.Status, ImportStatus::Done) << r.Error;
    const ModelData& m = r.Model;
    EXPECT_TRUE(m.HasRANI);
    EXPECT_EQ(m.FrameMin, 0);
    EXPECT_EQ(m.FrameMax, 30);
    ASSERT_EQ(m.Sub(0).Rot.Keys.size(), 2u);
    EXPECT_EQ(m.Sub(0).Rot.Keys[1].Angle, 65536);
    EXPECT_EQ(m.Sub(0).FaceCount(), 1);
    for (const Finding& f : CheckModel(m))
        ADD_FAILURE() << f.Code << ": " << f.Message;
}

}  // namespace
}  // namespace mw
