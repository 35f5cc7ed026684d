// Importing files made by other programs: glTF, OBJ and PLY written here as text.
#include <gtest/gtest.h>

#include <QByteArray>
#include <cmath>
#include <fstream>

#include "cli/cli.h"
#include "convert/model_import.h"

#include "model/file_io.h"
#include "model/game_check.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

void WriteText(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string DataUri(const std::vector<float>& floats, const std::vector<std::uint16_t>& indices) {
    QByteArray bytes(reinterpret_cast<const char*>(floats.data()),
                     static_cast<qsizetype>(4 * floats.size()));
    bytes.append(reinterpret_cast<const char*>(indices.data()),
                 static_cast<qsizetype>(2 * indices.size()));
    return "data:application/octet-stream;base64," + bytes.toBase64().toStdString();
}

// A square of side 2 in the XY plane facing +Z (two triangles, counter-clockwise), under a
// node turned 90 degrees about +Y and scaled by 2, with a gun point under it that fires
// along the node's local +Y, and an empty pivot that holds a second square.
std::string SceneGltf() {
    const std::vector<float> positions{-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
    const std::vector<std::uint16_t> indices{0, 1, 2, 0, 2, 3};
    const double h = std::sqrt(0.5);
    nlohmann::json doc = {
        {"asset", {{"version", "2.0"}}},
        {"scene", 0},
        {"scenes", {{{"nodes", {0, 2}}}}},
        {"nodes",
         {{{"name", "Body"},
           {"mesh", 0},
           {"rotation", {0.0, h, 0.0, h}},
           {"scale", {2.0, 2.0, 2.0}},
           {"translation", {1.0, 0.0, 0.0}},
           {"children", {1}},
           {"extras", {{"pof_properties", "$rotate=5"}}}},
          {{"name", "gun_0.001"}, {"translation", {0.0, 0.0, 1.0}}},
          {{"name", "Pivot"}, {"translation", {0.0, 3.0, 0.0}}, {"children", {3}}},
          {{"name", "Flap"}, {"mesh", 0}, {"translation", {0.0, 1.0, 0.0}}}}},
        {"meshes",
         {{{"primitives",
            {{{"attributes", {{"POSITION", 0}}}, {"indices", 1}, {"material", 0}}}}}}},
        {"materials", {{{"name", "Some Material"}, {"extras", {{"d3_texture", "Hull_Plates"}}}}}},
        {"buffers", {{{"byteLength", 60}, {"uri", DataUri(positions, indices)}}}},
        {"bufferViews",
         {{{"buffer", 0}, {"byteOffset", 0}, {"byteLength", 48}},
          {{"buffer", 0}, {"byteOffset", 48}, {"byteLength", 12}}}},
        {"accessors",
         {{{"bufferView", 0},
           {"componentType", 5126},
           {"count", 4},
           {"type", "VEC3"},
           {"min", {-1, -1, 0}},
           {"max", {1, 1, 0}}},
          {{"bufferView", 1}, {"componentType", 5123}, {"count", 6}, {"type", "SCALAR"}}}}};
    return doc.dump();
}

// The imported model is what loading its saved file gives.
void ExpectAsLoaded(const ModelData& imported) {
    ModelData copy = imported, loaded;
    ASSERT_EQ(readOOF(loaded, WriteOOF(copy)), ResultCode::Success);
    CreatePushPop(loaded);
    copy = imported;
    copy.Version = loaded.Version;  // the writer's
    copy.PinfText = loaded.PinfText;
    EXPECT_EQ(ModelJson(copy, true), ModelJson(loaded, true));
    EXPECT_EQ(copy.PushFlags, loaded.PushFlags);
    EXPECT_EQ(copy.PopFlags, loaded.PopFlags);
}

void ExpectNear(Vector3 a, Vector3 b) {
    EXPECT_NEAR(a.X, b.X, 1e-5f);
    EXPECT_NEAR(a.Y, b.Y, 1e-5f);
    EXPECT_NEAR(a.Z, b.Z, 1e-5f);
}

TEST(ModelImport, GltfNodesBecomeSubObjectsAndPoints) {
    const test::TempDir dir("import_gltf");
    WriteText(dir / "scene.gltf", SceneGltf());
    const ImportResult r = ImportModel(dir / "scene.gltf");
    ASSERT_EQ(r.Status, ImportStatus::Done) << r.Error;
    EXPECT_FALSE(r.Exact);
    const ModelData& m = r.Model;
    ASSERT_EQ(m.SubObjectCount(), 3);
    const SubObject& body = m.Sub(0);
    EXPECT_EQ(body.Name, "Body");
    EXPECT_EQ(body.Properties, "$rotate=5");
    EXPECT_EQ(body.Parent, -1);
    ExpectNear(body.Offset, {-1.0f, 0.0f, 0.0f});  // x negated
    // Turned about +Y and doubled, the square lies in the YZ plane, 4 wide; shared corners.
    ASSERT_EQ(body.VertexCount(), 4);
    for (const Vertex& v : body.Vertices) {
        EXPECT_NEAR(v.Position.X, 0.0f, 1e-5f);
        EXPECT_NEAR(std::fabs(v.Position.Y), 2.0f, 1e-5f);
        EXPECT_NEAR(std::fabs(v.Position.Z), 2.0f, 1e-5f);
    }
    // The square faced +Z, turned it faces +X, mirrored -X; normals computed as none given.
    // Its two triangles are one face again.
    ASSERT_EQ(body.FaceCount(), 1);
    EXPECT_EQ(body.Faces[0].VertexCount, 4);
    ExpectNear(body.Faces[0].Normal, {-1.0f, 0.0f, 0.0f});
    ExpectNear(body.Vertices[0].Normal, {-1.0f, 0.0f, 0.0f});
    ASSERT_EQ(m.Textures.size(), 1u);
    EXPECT_EQ(m.Textures[0].Name, "hull_plates");
    EXPECT_EQ(body.Faces[0].TextureIndex, 0);
    // The pivot holds the flap and has no faces of its own.
    EXPECT_EQ(m.Sub(1).Name, "Pivot");
    EXPECT_EQ(m.Sub(1).FaceCount(), 0);
    EXPECT_EQ(m.Sub(2).Parent, 1);
    ExpectNear(m.Sub(2).Offset, {0.0f, 1.0f, 0.0f});
    // "gun_0.001" is gun point 0 of the body; (0, 0, 1) under the node is (2, 0, 0) from
    // its origin, and it fires along the node's local +Y.
    ASSERT_EQ(m.GunPoints.size(), 1u);
    EXPECT_EQ(m.GunPoints[0].Parent, 0);
    ExpectNear(m.GunPoints[0].Position, {-2.0f, 0.0f, 0.0f});
    ExpectNear(m.GunPoints[0].Normal, {0.0f, 1.0f, 0.0f});
    ExpectAsLoaded(m);
}

TEST(ModelImport, AThrusterOfTwoTrianglesIsOneFace) {
    const test::TempDir dir("import_thruster");
    std::string gltf = SceneGltf();
    gltf.replace(gltf.find("$rotate=5"), 9, "$thruster=1,0.5,0.1,2");
    WriteText(dir / "thruster.gltf", gltf);
    const ImportResult r = ImportModel(dir / "thruster.gltf");
    ASSERT_EQ(r.Status, ImportStatus::Done) << r.Error;
    EXPECT_EQ(r.MergedTriangles, 2);  // the thruster's and the flap's
    EXPECT_EQ(r.Model.Sub(0).FaceCount(), 1);
    for (const Finding& f : CheckModel(r.Model))
        EXPECT_NE(f.Code, "single-face-required");
}

TEST(ModelImport, GltfMaterialsWithAColourAndNoPictureAreUntexturedFaces) {
    const test::TempDir dir("import_colours");
    const auto import = [&](const nlohmann::json& material) {
        nlohmann::json doc = nlohmann::json::parse(SceneGltf());
        doc["materials"][0] = material;
        WriteText(dir / "colour.gltf", doc.dump());
        return ImportModel(dir / "colour.gltf");
    };
    const ImportResult paint = import(
        {{"name", "Paint"}, {"pbrMetallicRoughness", {{"baseColorFactor", {1.0, 0.0, 0.0, 1.0}}}}});
    ASSERT_EQ(paint.Status, ImportStatus::Done) << paint.Error;
    EXPECT_TRUE(paint.Model.Textures.empty());
    EXPECT_EQ(paint.Model.Sub(0).Faces[0].Textured, 0);
    EXPECT_EQ(paint.Model.Sub(0).Faces[0].Color, (std::array<std::uint8_t, 4>{255, 0, 0, 255}));
    // Our own colour materials, their extras gone: the colour their name holds, exactly.
    const ImportResult ours = import({{"name", "colour_12ab34"}});
    ASSERT_EQ(ours.Status, ImportStatus::Done) << ours.Error;
    EXPECT_TRUE(ours.Model.Textures.empty());
    EXPECT_EQ(ours.Model.Sub(0).Faces[0].Color,
              (std::array<std::uint8_t, 4>{0x12, 0xab, 0x34, 255}));
    // A white material without a picture still names a texture after itself.
    EXPECT_EQ(import({{"name", "Hull"}}).Model.Textures.size(), 1u);
}

TEST(ModelImport, ObjQuadsStayQuadsWithTheirTextureNames) {
    const test::TempDir dir("import_obj");
    WriteText(dir / "box.mtl",
              "newmtl plates\nKd 1 1 1\nmap_Kd Textures\\Hull_PLATES.png\n"
              "newmtl red\nKd 1 0 0\n");
    WriteText(dir / "box.obj",
              "mtllib box.mtl\no Crate\n"
              "v -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\nv -1 1 -1\nv -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 1\n"
              "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
              "usemtl plates\nf 5/1 6/2 7/3 8/4\nf 2/1 1/2 4/3 3/4\n"
              "usemtl red\nf 1 5 8 4\nf 6 2 3 7\nf 8 7 3 4\nf 1 2 6 5\n");
    const ImportResult r = ImportModel(dir / "box.obj", {.Scale = 2.0f});
    ASSERT_EQ(r.Status, ImportStatus::Done) << r.Error;
    const ModelData& m = r.Model;
    ASSERT_EQ(m.SubObjectCount(), 1);
    const SubObject& box = m.Sub(0);
    EXPECT_EQ(box.FaceCount(), 6);
    for (const Face& f : box.Faces)
        EXPECT_EQ(f.VertexCount, 4);
    // No normals in the file: vertices shared by place, eight corners of a cube.
    EXPECT_EQ(box.VertexCount(), 8);
    // "red" has a colour and no picture: its faces are untextured and red.
    ASSERT_EQ(m.Textures.size(), 1u);
    EXPECT_EQ(m.Textures[0].Name, "hull_plates");
    EXPECT_EQ(box.Faces[2].Textured, 0);
    EXPECT_EQ(box.Faces[2].TextureIndex, -1);
    EXPECT_EQ(box.Faces[2].Color, (std::array<std::uint8_t, 4>{255, 0, 0, 255}));
    // Scaled by 2; the front face (+Z in the file) faces +Z, outward, in the game too.
    EXPECT_NEAR(m.Header.Max.Z, 2.0f, 1e-5f);
    ExpectNear(box.Faces[0].Normal, {0.0f, 0.0f, 1.0f});
    // The texture's top-left corner: OBJ counts v from the bottom, the game from the top.
    const FaceVertex& first = box.Corners[3];  // the file's first corner, now last
    EXPECT_FLOAT_EQ(first.U, 0.0f);
    EXPECT_FLOAT_EQ(first.V, 1.0f);
    ExpectAsLoaded(m);
}

TEST(ModelImport, PlyPolygons) {
    const test::TempDir dir("import_ply");
    WriteText(dir / "wedge.ply",
              "ply\nformat ascii 1.0\nelement vertex 5\nproperty float x\nproperty float y\n"
              "property float z\nelement face 2\nproperty list uchar int vertex_indices\n"
              "end_header\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n0.5 0.5 1\n4 0 1 2 3\n3 0 1 4\n");
    const ImportResult r = ImportModel(dir / "wedge.ply");
    ASSERT_EQ(r.Status, ImportStatus::Done) << r.Error;
    ASSERT_EQ(r.Model.SubObjectCount(), 1);
    const SubObject& s = r.Model.Sub(0);
    ASSERT_EQ(s.FaceCount(), 2);
    EXPECT_EQ(s.Faces[0].VertexCount + s.Faces[1].VertexCount, 7);  // a quad and a triangle
    EXPECT_EQ(s.Faces[0].TextureIndex, -1);                         // no material: a coloured face
    EXPECT_EQ(s.VertexCount(), 5);
}

TEST(ModelImport, FilesWithoutMeshesOrUnreadableAreRefusedAndNothingIsWritten) {
    const test::TempDir dir("import_refused");
    WriteText(
        dir / "empty.gltf",
        R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"name":"Gun_0"}]})");
    WriteText(dir / "broken.glb", std::string("glTF\x02\0\0\0garbage", 15));
    WriteText(dir / "broken.obj", "this is not\x01\x02 a model\n");
    EXPECT_EQ(ImportModel(dir / "empty.gltf").Status, ImportStatus::NoMesh);
    const ImportResult broken = ImportModel(dir / "broken.glb");
    EXPECT_EQ(broken.Status, ImportStatus::Unreadable);
    EXPECT_FALSE(broken.Error.empty());
    for (const char* file : {"empty.gltf", "broken.glb", "broken.obj", "missing.fbx"}) {
        const auto run = test::Cli({"import", (dir / file).string(), (dir / "out.oof").string()});
        EXPECT_EQ(run.status, 65) << file << run.err;
        EXPECT_NE(run.err.find(file), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(dir / "out.oof"));
    }
}

TEST(ModelImport, CommandWritesTheModelAndItsFindings) {
    const test::TempDir dir("import_cli");
    WriteText(dir / "scene.gltf", SceneGltf());
    const auto run =
        test::Cli({"import", (dir / "scene.gltf").string(), (dir / "out.oof").string()});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("3 sub-objects"), std::string::npos) << run.out;
    // The body rotates ("$rotate=5") but has no rotation keys: written, and said.
    EXPECT_NE(run.out.find("warning no-rotation-keys"), std::string::npos) << run.out;
    EXPECT_TRUE(std::filesystem::exists(dir / "out.oof"));
    const auto info = test::Cli({"info", (dir / "out.oof").string()});
    EXPECT_EQ(info.status, 0);
    EXPECT_EQ(test::Cli({"import", (dir / "scene.gltf").string()}).status, 64);
    EXPECT_EQ(test::Cli({"import", (dir / "scene.gltf").string(), (dir / "o.oof").string(),
                         "--scale", "0"})
                  .status,
              64);
}

}  // namespace
}  // namespace mw

#include <QImage>

#include "convert/texture_images.h"

namespace mw {
namespace {

class KeepSizes : public TextureUploader {
  public:
    std::vector<std::pair<int, int>> sizes;
    void AllocModelTextures(int count) override {
        sizes.assign(static_cast<std::size_t>(count), {});
    }
    void UploadModelTexture(int t, int w, int h, const std::uint32_t*) override {
        sizes[static_cast<std::size_t>(t)] = {w, h};
    }
};

TEST(ModelImport, AnImportedModelShowsThePicturesBesideIt) {
    const test::TempDir dir("import_pictures");
    WriteText(dir / "box.mtl",
              "newmtl a\nmap_Kd Hull.PNG\nnewmtl b\nmap_Kd stripes.tga\nnewmtl c\nKd 1 0 0\n");
    WriteText(dir / "box.obj",
              "mtllib box.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
              "usemtl a\nf 1 2 3\nusemtl b\nf 1 3 4\nusemtl c\nf 1 2 4\n");
    QImage hull(48, 64, QImage::Format_RGBA8888);  // not a power of two across
    hull.fill(Qt::blue);
    ASSERT_TRUE(hull.save(QString::fromStdString((dir / "HULL.png").string())));
    const ImportResult r = ImportModel(dir / "box.obj");
    ASSERT_EQ(r.Status, ImportStatus::Done) << r.Error;
    ASSERT_EQ(r.Model.Textures.size(), 2u);  // "c" is a colour

    GameData game;
    Settings settings;
    KeepSizes uploader;
    LoadedTextures loaded;
    LoadModelTextures(r.Model, (dir / "box.oof").string(), game, settings, MakeMissingTexture(1),
                      uploader, loaded, DecodePictureFile);
    ASSERT_EQ(loaded.Resolved.size(), 2u);
    EXPECT_EQ(loaded.Resolved[0].Source, TextureSource::Loose);  // found ignoring case
    EXPECT_TRUE(loaded.Resolved[0].Decoded);
    EXPECT_EQ(uploader.sizes[0], (std::pair{64, 64}));
    EXPECT_EQ(loaded.Resolved[1].Source, TextureSource::Missing);  // no stripes.tga there
    // Without a decoder the loader looks for game images only.
    LoadModelTextures(r.Model, (dir / "box.oof").string(), game, settings, MakeMissingTexture(1),
                      uploader, loaded);
    EXPECT_EQ(loaded.Resolved[0].Source, TextureSource::Missing);
}

}  // namespace
}  // namespace mw

namespace mw {
namespace {

// The commands: export, import, and the file is what re-saving the model writes.
TEST(ModelImport, ExportThenImportWritesWhatAResaveWrites) {
    const test::TempDir dir("import_resave");
    const std::string ship = MW_SOURCE_DIR "/samples/ship.oof";
    for (const char* file : {"ship.glb", "ship.gltf"}) {
        ASSERT_EQ(test::Cli({"export", ship, (dir / file).string()}).status, 0);
        const auto run = test::Cli({"import", (dir / file).string(), (dir / "back.oof").string()});
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_NE(run.out.find("as exported"), std::string::npos);
        ASSERT_EQ(test::Cli({"resave", ship, (dir / "resaved.oof").string()}).status, 0);
        EXPECT_EQ(*ReadFileBytes(dir / "back.oof"), *ReadFileBytes(dir / "resaved.oof")) << file;
    }
    EXPECT_EQ(test::Cli({"export", ship, (dir / "ship.obj").string()}).status, 73);
    EXPECT_EQ(
        test::Cli({"export", (dir / "missing.oof").string(), (dir / "x.glb").string()}).status, 66);
}

// Damaged files found by fuzzing are refused with a message, not read.
TEST(ModelImport, CornerListsOfFloatsAreRefused) {
    nlohmann::json doc = nlohmann::json::parse(SceneGltf());
    doc["accessors"][1]["componentType"] = 5126;  // the corner list as floats
    doc["accessors"][1]["count"] = 3;
    ImportScene scene;
    std::string error;
    const std::string text = doc.dump();
    EXPECT_FALSE(ReadGltfSceneFromBytes(
        {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, scene, error));
    EXPECT_FALSE(error.empty());
}

TEST(ModelImport, TextureNamesTheGameCannotLoadAreCutApartAndReported) {
    test::TempDir dir("import-long-names");
    const std::string a = "spaceship_hull_panels_weathered_dark";   // 36 characters
    const std::string b = "spaceship_hull_panels_weathered_light";  // the same first 28
    WriteText(dir / "box.mtl", "newmtl m1\nmap_Kd " + a + ".png\nnewmtl m2\nmap_Kd " + b +
                                   ".png\nnewmtl m3\nmap_Kd " + a + ".png\n");
    WriteText(dir / "box.obj",
              "mtllib box.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
              "usemtl m1\nf 1 2 3\nusemtl m2\nf 1 3 4\nusemtl m3\nf 1 2 4\n");
    const ImportResult r = ImportModel(dir / "box.obj");
    ASSERT_EQ(r.Status, ImportStatus::Done) << r.Error;
    ASSERT_EQ(r.Model.Textures.size(), 2u);  // m1 and m3 share a picture
    EXPECT_EQ(r.Model.Textures[0].Name, "spaceship_hull_panels_wea_00");
    EXPECT_EQ(r.Model.Textures[1].Name, "spaceship_hull_panels_wea_01");
    ASSERT_EQ(r.Notes.size(), 2u);
    EXPECT_NE(r.Notes[0].find("is \"spaceship_hull_panels_wea_00\" now"), std::string::npos);
    // What the import keeps, the check with game data and a package accept.
    const std::vector<bool> unresolved(2, false);
    for (const Finding& f : CheckModel(r.Model, &unresolved))
        EXPECT_NE(f.Code.rfind("texture-name", 0), 0u) << f.Code;
}

}  // namespace
}  // namespace mw
