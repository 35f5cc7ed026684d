#include "cli/cli.h"
#include "model/file_io.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "sample_model.h"
#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

using test::Cli;
using test::CliRun;

class CliTest : public ::testing::Test {
  protected:
    CliTest() : dir_("cli") {
        ModelData sample = BuildSampleModel();
        EXPECT_EQ(SaveOOF(sample, Path("ship.oof")), "");
    }
    std::string Path(const std::string& name) const { return (dir_ / name).string(); }
    ModelData Load(const std::string& name) const {
        ModelData m;
        EXPECT_EQ(readOOF(m, *ReadFileBytes(Path(name))), ResultCode::Success);
        return m;
    }

    test::TempDir dir_;
};

TEST_F(CliTest, InfoJsonHasExactlyTheDocumentedKeys) {
    const CliRun r = Cli({"info", Path("ship.oof"), "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string& j = r.out;
    EXPECT_TRUE(j.starts_with(
        "{\"version\":2300,\"radius\":5.1633325,\"min\":[-4.5,-1,-4.6000004],\"max\":[4.5,2.25,4],"
        "\"frame_min\":0,\"frame_max\":20,\"has_pani\":true,\"has_rani\":true,\"textures\":[{"
        "\"name\":\"ship_hull\",\"game_name\":\"\"}"));
    EXPECT_NE(j.find("{\"slot\":0,\"index\":0,\"name\":\"hull\",\"parent\":-1,\"offset\":[0,0,0],"
                     "\"radius\":4.582576,\"center\":[0,0,0],\"properties\":\"\",\"flags\":0,"
                     "\"rotate_speed\":0,\"glow\":[0,0,0,0],\"fov\":[0,0,0],\"vertices\":8,"
                     "\"faces\":6,\"corners\":24,\"box_min\":[-2,-1,-4],\"box_max\":[2,1,4],"
                     "\"has_alpha\":false,\"merged\":[],\"pos_range\":[0,0],\"rot_range\":[0,0],"
                     "\"pos_keys\":[],\"rot_keys\":[]}"),
              std::string::npos);
    EXPECT_NE(j.find("\"rot_keys\":[{\"frame\":0,\"axis\":[-0,-1,-0],\"angle\":0},{\"frame\":10,"
                     "\"axis\":[0,1,0],\"angle\":16384},{\"frame\":20,\"axis\":[0,-1,0],"
                     "\"angle\":16384}]"),
              std::string::npos);
    EXPECT_NE(j.find("\"points\":{\"ATCH\":[{\"parent\":0,\"position\":[0,-1,0],\"normal\":[0,-1,"
                     "0]}],\"NATH\":"),
              std::string::npos);
    EXPECT_NE(j.find("\"special_point\":null,\"batteries\":[{\"gun_points\":[0,1],\"turrets\":[]},"
                     "{\"gun_points\":[2],\"turrets\":[3]}]}"),
              std::string::npos);
    EXPECT_EQ(j.find("vertex_list"), std::string::npos);

    const CliRun g = Cli({"info", "--geometry", "--json", Path("ship.oof")});
    EXPECT_NE(g.out.find("\"vertex_list\":[{\"position\":[-2,-1,-4],\"normal\":["),
              std::string::npos);
    EXPECT_NE(g.out.find("\"face_list\":[{\"normal\":[0,0,-1],\"textured\":true,\"texture\":0,"
                         "\"color\":[255,255,255,255],\"corners\":[{\"vertex\":0,\"u\":0,\"v\":0}"),
              std::string::npos);
}

TEST_F(CliTest, InfoTextAndUsage) {
    const CliRun r = Cli({"info", Path("ship.oof")});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("Sub-objects: 7"), std::string::npos);
    EXPECT_NE(r.out.find("\"radar\""), std::string::npos);
    EXPECT_EQ(Cli({}).status, kExitUsage);
    EXPECT_EQ(Cli({"frobnicate"}).status, kExitUsage);
    EXPECT_EQ(Cli({"info"}).status, kExitUsage);
    EXPECT_EQ(Cli({"info", "a", "b"}).status, kExitUsage);
    EXPECT_EQ(Cli({"info", "a", "--jsn"}).status, kExitUsage);
    for (const char* command : {"info", "resave", "edit"}) {
        const CliRun h = Cli({command, "--help"});
        EXPECT_EQ(h.status, 0);
        EXPECT_NE(h.out.find("Usage: meshwright-cli"), std::string::npos);
    }
    EXPECT_EQ(Cli({"--help"}).status, 0);
}

TEST_F(CliTest, ExitStatusesForUnreadableFiles) {
    EXPECT_EQ(Cli({"info", Path("missing.oof")}).status, kExitNoInput);
    EXPECT_EQ(Cli({"info", dir_.path().string()}).status, kExitNoInput);
    std::ofstream(Path("bad.oof")) << "PSPX....";
    const CliRun bad = Cli({"info", Path("bad.oof")});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err, "Not a valid OOF file\n");
    const std::string cutShort("PSPO\xFC\x08\x00\x00OHDR", 12);  // version 2300, then cut
    std::ofstream(Path("cut.oof"), std::ios::binary) << cutShort;
    const CliRun cut = Cli({"info", Path("cut.oof")});
    EXPECT_EQ(cut.status, 4);
    EXPECT_EQ(cut.err, "Error reading OOF file\n");
}

TEST_F(CliTest, ResaveWritesWhatReadsBackTheSame) {
    ASSERT_EQ(Cli({"resave", Path("ship.oof"), Path("again.oof")}).status, 0);
    ASSERT_EQ(Cli({"resave", Path("again.oof"), Path("third.oof")}).status, 0);
    ASSERT_EQ(Cli({"resave", Path("third.oof"), Path("fourth.oof")}).status, 0);
    // Keys with angle 0 turn their axis round on every save, so every second save is the same.
    EXPECT_EQ(ReadFileBytes(Path("fourth.oof")), ReadFileBytes(Path("again.oof")));
    EXPECT_EQ(ModelJson(Load("fourth.oof"), true), ModelJson(Load("again.oof"), true));
    EXPECT_EQ(Cli({"resave", Path("ship.oof"), Path("nowhere/x.oof")}).status, kExitCantCreate);
    EXPECT_EQ(Cli({"resave", Path("ship.oof")}).status, kExitUsage);

    // A .pof (the Blender add-on's models) reads as a model, and is written as the .oof.
    std::filesystem::copy_file(Path("again.oof"), Path("addon.pof"));
    const CliRun pof = Cli({"resave", Path("addon.pof"), Path("back.pof")});
    ASSERT_EQ(pof.status, 0) << pof.err;
    EXPECT_NE(pof.err.find("back.oof"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Path("back.pof")));
    EXPECT_EQ(ReadFileBytes(Path("back.oof")), ReadFileBytes(Path("third.oof")));
}

TEST_F(CliTest, EditAppliesOperationsInOrder) {
    const CliRun r = Cli({"edit",
                          Path("ship.oof"),
                          Path("out.oof"),
                          "--rename",
                          "1:left",
                          "--properties",
                          "5:$Glow=0,0,1,2",
                          "--delete-point",
                          "GRND:1",
                          "--point-parent",
                          "ATCH:0:3",
                          "--insert-pos-key",
                          "6:5",
                          "--move-rot-key",
                          "3:20:30",
                          "--delete-battery",
                          "0",
                          "--scale",
                          "200",
                          "--recalc-normals"});
    ASSERT_EQ(r.status, 0) << r.err;
    ModelData m = Load("out.oof");
    EXPECT_EQ(m.Sub(1).Name, "left");
    EXPECT_EQ(m.Sub(5).Properties, "$glow=0,0,1,2");
    EXPECT_EQ(m.Sub(5).GlowColor, (std::array<float, 3>{0, 0, 1}));
    EXPECT_EQ(m.Sub(5).GlowSize, 2.0f);  // parsed again on load; not scaled
    EXPECT_EQ(m.GroundPoints.size(), 2u);
    EXPECT_EQ(m.AttachPoints[0].Parent, 3);
    EXPECT_EQ(m.Sub(6).Pos.KeyCount(), 4);
    EXPECT_EQ(m.Sub(3).Rot.Keys[2].Frame, 30);
    EXPECT_EQ(m.Batteries.size(), 1u);
    EXPECT_EQ(m.Sub(1).Offset, (Vector3{-6, -0.4f, -2}));
    EXPECT_EQ(m.FrameMax, 30);
}

TEST_F(CliTest, EditStructuralOperations) {
    ASSERT_EQ(Cli({"edit", Path("ship.oof"), Path("a.oof"), "--combine", "4:3", "--reparent", "2:1",
                   "--delete-sobj", "5"})
                  .status,
              0);
    ModelData m = Load("a.oof");
    EXPECT_EQ(m.SubObjectCount(), 5);  // radar merged into the turret, thruster gone
    // Slot order: hull, wing_left, wing_right (now its child), turret, hatch.
    EXPECT_EQ(m.Sub(2).Name, "wing_right");
    EXPECT_EQ(m.Sub(2).Parent, 1);
    EXPECT_EQ(m.Sub(3).Name, "turret");
    EXPECT_EQ(m.Sub(3).VertexCount(), 16);
}

TEST_F(CliTest, CombiningTheTurretAwayWritesNoEmptyTurretSlot) {
    ModelData sample = Load("ship.oof");
    ASSERT_EQ(sample.Batteries[1].Turrets, (std::vector<std::int32_t>{3}));
    ASSERT_EQ(Cli({"edit", Path("ship.oof"), Path("b.oof"), "--combine", "3:0"}).status, 0);
    const ModelData m = Load("b.oof");
    ASSERT_EQ(m.Batteries.size(), 2u);
    EXPECT_TRUE(m.Batteries[1].Turrets.empty());  // not the -1 of a slot that is gone
    EXPECT_EQ(m.Batteries[1].GunPoints, sample.Batteries[1].GunPoints);
}

TEST_F(CliTest, RefusedOperationsWriteNothing) {
    const auto refused = [&](std::vector<std::string> ops, const std::string& message) {
        std::vector<std::string> args{"edit", Path("ship.oof"), Path("no.oof")};
        args.insert(args.end(), ops.begin(), ops.end());
        const CliRun r = Cli(args);
        EXPECT_EQ(r.status, kExitRefused) << ops[0];
        EXPECT_EQ(r.err, message + "\n");
        EXPECT_FALSE(std::filesystem::exists(Path("no.oof")));
    };
    refused({"--scale", "1"}, "Scaling would result in a Model Radius < 0.1 - Scaling not done.");
    refused({"--scale", "10000000"},
            "Scalng would result in a Model Radius > 90000.0 - Scaling not done.");
    refused({"--reparent", "0:4"}, "You can not make a Sub-Object a child of its children");
    refused({"--combine", "0:3"}, "You can not combine a Parent Sub-Object to it's childen");
    refused({"--delete-sobj", "0"}, "The only top-level sub-object cannot be deleted");
    refused({"--delete-sobj", "9"}, "Sub-object 9 does not exist");
    refused({"--delete-point", "GPNT:3"}, "There is no GPNT point 3");
    refused({"--delete-battery", "2"}, "There is no battery 2");
    refused({"--delete-pos-key", "6:3"}, "No position key can be changed at frame 3");
    refused({"--insert-rot-key", "3:10"}, "No rotation key can be changed at frame 10");
    refused({"--rename", "1:x", "--combine", "4:4"}, "Sub-object 4 cannot be combined into 4");

    for (auto bad : {std::vector<std::string>{"--scale", "x"},
                     {"--delete-point", "FOO:1"},
                     {"--combine", "1"},
                     {"--rename", "x:y"},
                     {"--move-pos-key", "1:2"},
                     {"--bogus", "1"},
                     {"--delete-sobj"}}) {
        std::vector<std::string> args{"edit", Path("ship.oof"), Path("no.oof")};
        args.insert(args.end(), bad.begin(), bad.end());
        EXPECT_EQ(Cli(args).status, kExitUsage) << bad[0];
    }
}

TEST_F(CliTest, DeletingTheSamplesAttachPointTakesItsNormal) {
    ASSERT_EQ(Cli({"edit", Path("ship.oof"), Path("out.oof"), "--delete-point", "ATCH:0"}).status,
              0);
    const ModelData m = Load("out.oof");
    EXPECT_TRUE(m.AttachPoints.empty());
    EXPECT_TRUE(m.AttachNormals.empty());  // no normal left without its point
    EXPECT_EQ(Cli({"check", Path("out.oof")}).status, 0);
}

}  // namespace
}  // namespace mw
