// Stored normals survive open and save as they are, and saving a saved file changes nothing.
#include <gtest/gtest.h>

#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "sample_model.h"

namespace mw {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The sample ship as a real exporter leaves it: normals from 0.03 to 1 long, axes of unit
// length only to within rounding, an axis that is not unit length, and zero-angle keys.
ModelData UntidyShip() {
    ModelData m = BuildSampleModel();
    int n = 0;
    for (SubObject& sub : m.SubObjects) {
        for (Vertex& v : sub.Vertices) {
            const float scale = 0.03f + 0.97f * static_cast<float>(n++ % 17) / 16.0f;
            v.Normal = Scale(v.Normal, scale);
        }
        for (Face& f : sub.Faces)
            f.Normal = Scale(f.Normal, 0.5f + 0.01f * static_cast<float>(n++ % 40));
    }
    auto& keys = m.Sub(3).Rot.Keys;
    keys[2].Axis = {0.6000001f, 0.8f, 0.0f};                  // |length² - 1| about 1.2e-7
    keys.push_back({30, {0, 2.0f, 0}, 0, IdentityMatrix()});  // not unit; zero angle
    m.Sub(3).Rot.LastFrame = 30;
    for (int s = 0; s < static_cast<int>(m.SubObjects.size()); ++s)
        CalcRotMatrix(m, s);
    // Unit only to within rounding, as an exporter wrote it: normalising it again moves it by
    // a unit in the last place, and again on each of the next generations.
    keys[1].Axis = {-0.159790426f, -0.457405061f, 0.87478441f};
    return m;
}

Bytes Resave(const Bytes& file) {
    ModelData m;
    EXPECT_EQ(readOOF(m, file), ResultCode::Success);
    return WriteOOF(m);
}

TEST(StableSaveTest, StoredNormalsAreKeptAsTheyAre) {
    ModelData untidy = UntidyShip();
    ModelData read;
    ASSERT_EQ(readOOF(read, WriteOOF(untidy)), ResultCode::Success);
    for (int s = 0; s < static_cast<int>(read.SubObjects.size()); ++s) {
        const SubObject& a = untidy.Sub(s);
        const SubObject& b = read.Sub(s);
        ASSERT_EQ(a.Vertices.size(), b.Vertices.size());
        for (std::size_t i = 0; i < a.Vertices.size(); ++i)
            EXPECT_EQ(a.Vertices[i].Normal, b.Vertices[i].Normal) << s << " " << i;
        for (std::size_t i = 0; i < a.Faces.size(); ++i)
            EXPECT_EQ(a.Faces[i].Normal, b.Faces[i].Normal) << s << " " << i;
    }
    // Axes already of unit length within rounding keep every bit; others become unit length.
    const auto& keys = read.Sub(3).Rot.Keys;
    EXPECT_EQ(keys[1].Axis, untidy.Sub(3).Rot.Keys[1].Axis);
    EXPECT_EQ(keys[2].Axis, (Vector3{0.6000001f, 0.8f, 0.0f}));
    EXPECT_FLOAT_EQ(Length(keys[3].Axis), 1.0f);
}

TEST(StableSaveTest, SavingASavedFileAgainSettles) {
    const Bytes file = WriteOOF(*std::make_unique<ModelData>(UntidyShip()));
    const Bytes first = Resave(file);
    const Bytes second = Resave(first);
    const Bytes third = Resave(second);
    EXPECT_EQ(first, third);
    // The first and second saves differ only in the axes of zero-angle keys, which the writer
    // turns round on every save.
    EXPECT_NE(first, second);
    ModelData a, b;
    ASSERT_EQ(readOOF(a, first), ResultCode::Success);
    ASSERT_EQ(readOOF(b, second), ResultCode::Success);
    for (SubObject& sub : b.SubObjects) {
        for (RotKey& k : sub.Rot.Keys) {
            if (k.Angle == 0) k.Axis = {-k.Axis.X, -k.Axis.Y, -k.Axis.Z};
        }
    }
    EXPECT_EQ(WriteOOF(a), WriteOOF(b));
}

TEST(StableSaveTest, TheSampleResavesToItself) {
    const auto sample = ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof");
    ASSERT_TRUE(sample);
    EXPECT_EQ(Resave(Resave(*sample)), *sample);
}

TEST(StableSaveTest, RecalculatedNormalsAreUnitLength) {
    ModelData m = UntidyShip();
    RecalcVertexNormals(m);
    for (const SubObject& sub : m.SubObjects) {
        for (const Vertex& v : sub.Vertices)
            EXPECT_NEAR(Length(v.Normal), 1.0f, 1e-6f);
        for (const Face& f : sub.Faces)
            EXPECT_NEAR(Length(f.Normal), 1.0f, 1e-6f);
    }
}

}  // namespace
}  // namespace mw
