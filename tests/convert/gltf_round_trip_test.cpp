// glTF export read back through the glTF library, and brought back through the importer.
#include <gtest/gtest.h>
#include <tiny_gltf.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <set>

#include "cli/cli.h"
#include "convert/gltf_common.h"
#include "convert/gltf_export.h"
#include "convert/model_import.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "model/structure.h"
#include "sample_model.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

// A model as a load gives it.
ModelData Loaded(ModelData model) {
    ModelData loaded;
    EXPECT_EQ(readOOF(loaded, WriteOOF(model)), ResultCode::Success);
    CreatePushPop(loaded);
    return loaded;
}

// The sample with every other kind of record: a special point, stored normals that are not
// unit length, keys with no angle and with a negative one, a key at a negative frame,
// untextured faces of two colours, a face of two corners, an unused vertex and numbers glTF
// cannot hold.
ModelData EveryRecordKind() {
    ModelData m = BuildSampleModel();
    m.Special = SpecialPoint{"$engine", "glow", {0.5f, -0.25f, 2.0f}, 0.75f};
    SubObject& hull = m.Sub(0);
    hull.Vertices[0].Normal = {0.0f, 3.0f, 0.5f};
    hull.Vertices[1].Normal = {0.0f, 0.0f, 0.0f};
    hull.Vertices[2].Alpha = 0.5f;
    hull.Faces[0].TextureIndex = -1;
    hull.Faces[0].Textured = 0;
    hull.Faces[0].Color = {200, 10, 10, 255};
    hull.Faces[1].TextureIndex = -1;
    hull.Faces[1].Textured = 0;
    hull.Faces[1].Color = {10, 200, 10, 255};
    hull.Vertices.push_back({{9.0f, 9.0f, 9.0f}, {0, 1, 0}, 1.0f});
    Face line;
    line.VertexCount = 2;
    line.Primitive = PrimitiveFor(2);
    line.TextureIndex = -1;
    hull.Faces.push_back(line);
    hull.Corners.push_back({0, 0.0f, 0.0f});
    hull.Corners.push_back({1, 1.0f, 0.0f});
    // A damaged part: an infinite place and a texture place that is not a number, which
    // glTF cannot hold (the extras do).
    m.Sub(1).Vertices[0].Position.X = std::numeric_limits<float>::infinity();
    m.Sub(1).Corners[0].U = std::numeric_limits<float>::quiet_NaN();
    for (SubObject& sub : m.SubObjects) {
        if (sub.Rot.Keys.size() >= 2) {
            sub.Rot.Keys[1].Angle = -4000;
            sub.Rot.Keys.insert(sub.Rot.Keys.begin(), RotKey{-5, {0, 1, 0}, 0});
            sub.Rot.FirstFrame = -5;
            break;
        }
    }
    return Loaded(m);
}

std::filesystem::path Export(const ModelData& model, const test::TempDir& dir,
                             const std::string& name, const TexturePictures& pictures = {}) {
    const auto path = dir / name;
    EXPECT_EQ(ExportGLTF(model, pictures, path), "");
    return path;
}

tinygltf::Model ReadBack(const std::filesystem::path& path) {
    tinygltf::TinyGLTF loader;
    tinygltf::Model model;
    std::string error, warning;
    const bool ok = path.extension() == ".glb"
                        ? loader.LoadBinaryFromFile(&model, &error, &warning, path.string())
                        : loader.LoadASCIIFromFile(&model, &error, &warning, path.string());
    EXPECT_TRUE(ok) << error;
    return model;
}

std::vector<float> Floats(const tinygltf::Model& g, int accessor) {
    const auto& a = g.accessors[static_cast<std::size_t>(accessor)];
    const auto& v = g.bufferViews[static_cast<std::size_t>(a.bufferView)];
    const auto* p = g.buffers[0].data.data() + v.byteOffset + a.byteOffset;
    const std::size_t n = a.count * static_cast<std::size_t>(tinygltf::GetNumComponentsInType(
                                        static_cast<std::uint32_t>(a.type)));
    std::vector<float> out(n);
    std::memcpy(out.data(), p, 4 * n);
    return out;
}

Vector3 NodeWorldTranslation(const tinygltf::Model& g, int node) {
    // Parents hold no rotation in an export of an unanimated pose, so translations add up.
    Vector3 sum;
    for (int n = node; n >= 0;) {
        const auto& t = g.nodes[static_cast<std::size_t>(n)].translation;
        if (t.size() == 3)
            sum = Add(sum, {static_cast<float>(t[0]), static_cast<float>(t[1]),
                            static_cast<float>(t[2])});
        int parent = -1;
        for (std::size_t p = 0; p < g.nodes.size(); ++p) {
            const auto& c = g.nodes[p].children;
            if (std::find(c.begin(), c.end(), n) != c.end()) parent = static_cast<int>(p);
        }
        n = parent;
    }
    return sum;
}

// Changes a .gltf file's JSON as another program would, and imports it.
template <typename Change>
ImportResult ImportChanged(const std::filesystem::path& path, Change change) {
    const auto bytes = *ReadFileBytes(path);
    auto doc = nlohmann::json::parse(bytes.begin(), bytes.end());
    change(doc);
    const std::string text = doc.dump();
    EXPECT_EQ(
        WriteFileReplacing(path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}),
        "");
    return ImportModel(path);
}

class GltfRoundTrip : public ::testing::TestWithParam<std::string> {};

TEST_P(GltfRoundTrip, GivesTheModelBackAndTheSameSavedBytes) {
    const test::TempDir dir("gltf_round_trip");
    for (const ModelData& original : {Loaded(BuildSampleModel()), EveryRecordKind()}) {
        const auto path = Export(original, dir, "model" + GetParam());
        ImportResult back = ImportModel(path);
        ASSERT_EQ(back.Status, ImportStatus::Done) << back.Error;
        EXPECT_TRUE(back.Exact);
        EXPECT_EQ(ModelJson(back.Model, true), ModelJson(original, true));
        ModelData a = original, b = back.Model;
        EXPECT_EQ(WriteOOF(b), WriteOOF(a));
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, GltfRoundTrip, ::testing::Values(".glb", ".gltf"));

TEST(GltfExport, NodesPointsAndWindingAsAViewerSeesThem) {
    const test::TempDir dir("gltf_export");
    const ModelData model = EveryRecordKind();
    const tinygltf::Model g = ReadBack(Export(model, dir, "ship.glb"));

    // One node per sub-object, named after it, children under their parents.
    for (int s = 0; s < model.SubObjectCount(); ++s) {
        const SubObject& sub = model.Sub(s);
        EXPECT_EQ(g.nodes[static_cast<std::size_t>(s)].name, sub.Name);
        if (sub.Parent >= 0) {
            const auto& children = g.nodes[static_cast<std::size_t>(sub.Parent)].children;
            EXPECT_NE(std::find(children.begin(), children.end(), s), children.end()) << sub.Name;
        }
    }
    // Points at their world places with x negated, their directions along local +Y.
    int guns = 0;
    for (std::size_t n = 0; n < g.nodes.size(); ++n) {
        const auto name = gltf::ParsePointNodeName(g.nodes[n].name);
        if (!name) continue;
        const ModelPoint& p = model.Points(name->Type)[static_cast<std::size_t>(name->Index)];
        const Vector3 world = gltf::Mirror(Add(WorldOffset(model, p.Parent), p.Position));
        const Vector3 found = NodeWorldTranslation(g, static_cast<int>(n));
        EXPECT_NEAR(found.X, world.X, 1e-5f) << g.nodes[n].name;
        EXPECT_NEAR(found.Y, world.Y, 1e-5f);
        EXPECT_NEAR(found.Z, world.Z, 1e-5f);
        const auto& r = g.nodes[n].rotation;
        ASSERT_EQ(r.size(), 4u);
        const auto axes = gltf::ColumnsFromQuaternion({r[0], r[1], r[2], r[3]});
        const Vector3 direction = gltf::Mirror(Normalize(p.Normal));
        EXPECT_NEAR(axes[1].X, direction.X, 1e-5f);
        EXPECT_NEAR(axes[1].Y, direction.Y, 1e-5f);
        EXPECT_NEAR(axes[1].Z, direction.Z, 1e-5f);
        guns += name->Type == PointType::GPNT;
        if (name->Type == PointType::ATCH) {
            // The attach normal is local -Z.
            const Vector3 up = gltf::Mirror(Normalize(model.AttachNormals[0].Normal));
            EXPECT_NEAR(-axes[2].X, up.X, 1e-5f);
            EXPECT_NEAR(-axes[2].Y, up.Y, 1e-5f);
            EXPECT_NEAR(-axes[2].Z, up.Z, 1e-5f);
        }
    }
    EXPECT_EQ(guns, static_cast<int>(model.GunPoints.size()));

    // Each triangle turns counter-clockwise about the mirrored normal of its face.
    const SubObject& hull = model.Sub(0);
    const auto& mesh = g.meshes[static_cast<std::size_t>(g.nodes[0].mesh)];
    int checked = 0;
    for (const auto& primitive : mesh.primitives) {
        const std::vector<float> pos = Floats(g, primitive.attributes.at("POSITION"));
        const auto& ia = g.accessors[static_cast<std::size_t>(primitive.indices)];
        const auto& iv = g.bufferViews[static_cast<std::size_t>(ia.bufferView)];
        std::vector<std::uint32_t> idx(ia.count);
        std::memcpy(idx.data(), g.buffers[0].data.data() + iv.byteOffset + ia.byteOffset,
                    4 * ia.count);
        for (std::size_t t = 0; t + 2 < idx.size(); t += 3) {
            Vector3 p[3];
            for (int k = 0; k < 3; ++k)
                p[k] = {pos[3 * idx[t + k]], pos[3 * idx[t + k] + 1], pos[3 * idx[t + k] + 2]};
            const Vector3 a = Subtract(p[1], p[0]), b = Subtract(p[2], p[0]);
            const Vector3 cross{a.Y * b.Z - a.Z * b.Y, a.Z * b.X - a.X * b.Z,
                                a.X * b.Y - a.Y * b.X};
            // The face whose corners are these three places.
            std::size_t corner = 0;
            for (const Face& f : hull.Faces) {
                int hits = 0;
                for (int c = 0; c < f.VertexCount; ++c) {
                    const Vector3 v = gltf::Mirror(
                        hull
                            .Vertices[static_cast<std::size_t>(
                                hull.Corners[corner + static_cast<std::size_t>(c)].VertexIndex)]
                            .Position);
                    for (const Vector3& q : p)
                        hits += v == q;
                }
                corner += static_cast<std::size_t>(f.VertexCount);
                if (hits < 3 || f.VertexCount < 3) continue;
                const Vector3 n = gltf::Mirror(f.Normal);
                EXPECT_GT(cross.X * n.X + cross.Y * n.Y + cross.Z * n.Z, 0.0f);
                ++checked;
                break;
            }
        }
    }
    EXPECT_GT(checked, 0);
    // Untextured faces get a material of their colour; key frames one animation.
    std::set<std::array<std::uint8_t, 3>> untextured;
    for (const SubObject& sub : model.SubObjects) {
        for (const Face& f : sub.Faces) {
            if (f.TextureIndex < 0 && f.VertexCount >= 3)
                untextured.insert({f.Color[0], f.Color[1], f.Color[2]});
        }
    }
    int colours = 0;
    for (const auto& m : g.materials)
        colours += m.name.starts_with("colour_");
    EXPECT_EQ(colours, static_cast<int>(untextured.size()));
    EXPECT_GE(colours, 2);
    ASSERT_EQ(g.animations.size(), 1u);
    EXPECT_FALSE(g.animations[0].channels.empty());
}

TEST(GltfExport, GltfWritesItsBufferAndPicturesBeside) {
    const test::TempDir dir("gltf_pictures");
    const ModelData model = Loaded(BuildSampleModel());
    TexturePictures pictures(model.Textures.size());
    pictures[0] = RgbaImage{2, 2, {0xff0000ffu, 0xff00ff00u, 0xffff0000u, 0x80ffffffu}};
    const auto path = Export(model, dir, "ship.gltf", pictures);
    EXPECT_TRUE(std::filesystem::exists(dir / "ship.bin"));
    const std::string picture = model.Textures[0].Name + ".png";
    ASSERT_TRUE(std::filesystem::exists(dir / picture));
    const tinygltf::Model g = ReadBack(path);
    ASSERT_EQ(g.images.size(), 1u);
    EXPECT_EQ(g.images[0].uri, picture);
    EXPECT_EQ(g.images[0].width, 2);  // the library decoded the PNG
    EXPECT_EQ(g.materials[0].alphaMode, "BLEND");
    // A refused name writes nothing.
    EXPECT_NE(ExportGLTF(model, pictures, dir / "ship.obj"), "");
    EXPECT_FALSE(std::filesystem::exists(dir / "ship.obj"));
}

TEST(GltfImport, EditedPartsOfAnExportWin) {
    const test::TempDir dir("gltf_edited");
    const ModelData model = Loaded(BuildSampleModel());
    const auto path = Export(model, dir, "ship.gltf");
    // Move the first gun point and the second sub-object in the JSON, as an editor would.
    const ImportResult back = ImportChanged(path, [](nlohmann::json& doc) {
        for (auto& node : doc["nodes"]) {
            if (node["name"] == "Gun_0") node["translation"] = {5.0, 6.0, 7.0};
        }
        doc["nodes"][1]["translation"] = {-1.5, 0.25, 0.0};
    });
    ASSERT_EQ(back.Status, ImportStatus::Done);
    EXPECT_TRUE(back.Exact);
    EXPECT_EQ(back.Model.Sub(1).Offset, (Vector3{1.5f, 0.25f, 0.0f}));
    const ModelPoint& gun = back.Model.GunPoints[0];
    const Vector3 expected{-5.0f, 6.0f, 7.0f};  // from its sub-object's origin
    EXPECT_NEAR(gun.Position.X, expected.X, 1e-5f);
    EXPECT_NEAR(gun.Position.Y, expected.Y, 1e-5f);
    EXPECT_NEAR(gun.Position.Z, expected.Z, 1e-5f);
    // Everything else as it was.
    EXPECT_EQ(back.Model.GunPoints[1].Position, model.GunPoints[1].Position);
    EXPECT_EQ(back.Model.Sub(0).Vertices.size(), model.Sub(0).Vertices.size());
}

TEST(GltfImport, AnEditedMeshKeepsTheModelsTextures) {
    const test::TempDir dir("gltf_edited_mesh");
    const ModelData model = Loaded(BuildSampleModel());
    const auto path = Export(model, dir, "ship.gltf");
    // As after Blender: the hull's mesh no longer the one exported.
    const ImportResult back = ImportChanged(path, [](nlohmann::json& doc) {
        doc["nodes"][0]["extras"]["descent3"]["mesh_fingerprint"] = "0000000000000000";
    });
    ASSERT_EQ(back.Status, ImportStatus::Done);
    EXPECT_TRUE(back.Exact);
    ASSERT_EQ(back.Model.Textures.size(), model.Textures.size());
    for (std::size_t f = 0; f < model.Sub(0).Faces.size(); ++f)
        EXPECT_EQ(back.Model.Sub(0).Faces[f].TextureIndex, model.Sub(0).Faces[f].TextureIndex);
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

TEST(GltfExport, ManyFaceColoursBecomeVertexColoursAndComeBack) {
    for (int c = 0; c < 256; ++c)
        ASSERT_EQ(gltf::ByteFromLinear(gltf::LinearFromByte(static_cast<std::uint8_t>(c))), c);
    ModelData model = Loaded(BuildSampleModel());
    SubObject& hull = model.Sub(0);
    for (std::size_t f = 0; f < hull.Faces.size(); ++f) {
        hull.Faces[f].TextureIndex = -1;
        hull.Faces[f].Textured = 0;
    }
    // More colours than materials are made for: 3 per face of the hull, 6 faces, 2 parts.
    int n = 0;
    for (SubObject& sub : model.SubObjects) {
        for (Face& f : sub.Faces) {
            if (f.TextureIndex < 0) f.Color = {static_cast<std::uint8_t>(10 * n++), 7, 250, 255};
        }
    }
    ASSERT_GT(n, 16);
    const test::TempDir dir("gltf_colours");
    const auto path = Export(model, dir, "colours.gltf");
    const tinygltf::Model g = ReadBack(path);
    ASSERT_EQ(g.materials.back().name, "untextured");
    EXPECT_TRUE(g.meshes[0].primitives.back().attributes.contains("COLOR_0"));

    // Without the extras the colours come from the vertex colours.
    const ImportResult back = ImportChanged(
        path, [](nlohmann::json& doc) { doc["nodes"][0]["extras"]["descent3"].erase("model"); });
    ASSERT_EQ(back.Status, ImportStatus::Done);
    EXPECT_FALSE(back.Exact);
    std::set<std::uint8_t> before, after;  // the quads come back as pairs of triangles
    for (const Face& f : hull.Faces)
        before.insert(f.Color[0]);
    for (const Face& f : back.Model.Sub(0).Faces)
        after.insert(f.Color[0]);
    EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

// Writes the test models for the Khronos validator, which the test script runs over them
// (the script sets the folder; without it there is nothing to do).
TEST(GltfExport, FilesForTheValidator) {
    const char* folder = std::getenv("MW_GLTF_VALIDATOR_DIR");
    if (folder == nullptr) GTEST_SKIP() << "run by gltf_validator_test.sh";
    const ModelData model = EveryRecordKind();
    TexturePictures pictures(model.Textures.size());
    pictures[1] = RgbaImage{4, 2, std::vector<std::uint32_t>(8, 0xff336699u)};
    const std::filesystem::path out(folder);
    EXPECT_EQ(ExportGLTF(model, pictures, out / "every_record_kind.glb"), "");
    EXPECT_EQ(ExportGLTF(model, pictures, out / "every_record_kind.gltf"), "");
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

// Extras whose parents would leave a part out of the hierarchy are not used (found by
// fuzzing): the model is made from the nodes.
TEST(GltfImport, ExtrasWithALoopOfParentsAreNotUsed) {
    const test::TempDir dir("gltf_loop");
    const auto path = Export(Loaded(BuildSampleModel()), dir, "loop.gltf");
    const ImportResult back = ImportChanged(
        path, [](nlohmann::json& doc) { doc["nodes"][2]["extras"]["descent3"]["parent"] = 2; });
    ASSERT_EQ(back.Status, ImportStatus::Done);
    EXPECT_FALSE(back.Exact);
    EXPECT_EQ(back.Model.SubObjectCount(), static_cast<int>(back.Model.SubObjects.size()));
    EXPECT_EQ(back.Model.SubObjectCount(), 7);
}

// Extras that put a point on a sub-object the model does not have are not used either (the
// point's node would hang nowhere, and the file could not come back the same).
TEST(GltfImport, ExtrasWithAPointOnAMissingPartAreNotUsed) {
    const test::TempDir dir("gltf_point_parent");
    const auto path = Export(Loaded(BuildSampleModel()), dir, "point.gltf");
    const ImportResult back = ImportChanged(path, [](nlohmann::json& doc) {
        doc["nodes"][0]["extras"]["descent3"]["model"]["points"]["ATCH"][0] = 9;
        // ... and its node taken out of the scene, so nothing puts it anywhere else.
        for (auto& node : doc["nodes"]) {
            if (!node.contains("children")) continue;
            auto& children = node["children"];
            for (auto c = children.begin(); c != children.end(); ++c) {
                if (doc["nodes"][c->get<int>()]["name"] == "Attach_0") {
                    children.erase(c);
                    break;
                }
            }
        }
    });
    ASSERT_EQ(back.Status, ImportStatus::Done);
    EXPECT_FALSE(back.Exact);
}

// A model with sub-objects combined or deleted in the editor is exported as it would be saved.
TEST(GltfExport, EditedStructureIsExportedAsSaved) {
    ModelData model = Loaded(BuildSampleModel());
    ASSERT_TRUE(SOBJCombine(model, 1, 2));  // the wings, one part
    ASSERT_TRUE(DeleteSOBJ(model, 6));
    ModelData saved;
    {
        ModelData copy = model;
        ASSERT_EQ(readOOF(saved, WriteOOF(copy)), ResultCode::Success);
    }
    const test::TempDir dir("gltf_edited_structure");
    const auto path = Export(model, dir, "edited.glb");
    const tinygltf::Model g = ReadBack(path);
    int parts = 0;
    for (const auto& node : g.nodes)
        parts += !gltf::ParsePointNodeName(node.name).has_value();
    EXPECT_EQ(parts, saved.SubObjectCount());
    const ImportResult back = ImportModel(path);
    ASSERT_EQ(back.Status, ImportStatus::Done);
    ModelData a = saved, b = back.Model;
    EXPECT_EQ(WriteOOF(b), WriteOOF(a));
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

// A model whose JSON outgrows the room kept in front of its small buffer: hundreds of parts
// without faces.
TEST(GltfExport, JsonLargerThanTheRoomKeptForIt) {
    ModelData model = BuildSampleModel();
    for (int k = 0; k < 400; ++k) {
        SubObject pivot;
        pivot.Index = static_cast<int>(model.SubObjects.size());
        pivot.Parent = 0;
        pivot.Name = "pivot_with_a_long_name_" + std::to_string(k);
        pivot.Properties = "$rotate=" + std::to_string(k % 7 + 1);
        model.SubObjects.push_back(std::move(pivot));
    }
    RebuildSaveOrder(model);
    const ModelData loaded = Loaded(model);
    const GlbFile glb = ExportGLB(loaded, {});
    ImportScene scene;
    std::string error;
    ASSERT_TRUE(ReadGltfSceneFromBytes(glb.bytes(), scene, error)) << error;
    const ImportResult back = ModelFromScene(scene);
    ASSERT_EQ(back.Status, ImportStatus::Done);
    EXPECT_TRUE(back.Exact);
    ModelData a = loaded, b = back.Model;
    EXPECT_EQ(WriteOOF(b), WriteOOF(a));
}

}  // namespace
}  // namespace mw
