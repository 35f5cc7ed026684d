#include <gtest/gtest.h>

#include "model/file_io.h"
#include "model/oof_writer.h"
#include "model/properties.h"
#include "sample_model.h"
#include "support/cli_run.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

using test::Cli;

const std::string kSample = MW_SOURCE_DIR "/samples/ship.oof";

class CliCheckTest : public ::testing::Test {
  protected:
    CliCheckTest() : dir_("cli_check") {}
    std::string Write(ModelData m, const char* name) {
        const std::string path = (dir_ / name).string();
        EXPECT_EQ(WriteFileReplacing(path, WriteOOF(m)), "");
        return path;
    }
    test::TempDir dir_;
};

TEST_F(CliCheckTest, TheSampleIsClean) {
    const auto r =
        Cli({"check", kSample, "--json", "--d3hog", MW_SOURCE_DIR "/samples/gamedata/d3.hog"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "{\"findings\":[]}\n");
}

TEST_F(CliCheckTest, ErrorsExitOneAndWarningsAloneExitZero) {
    ModelData m = BuildSampleModel();
    m.AttachPoints.push_back(m.AttachPoints[0]);
    const std::string warned = Write(m, "warned.oof");
    const auto w = Cli({"check", warned, "--json"});
    EXPECT_EQ(w.status, 0);
    EXPECT_EQ(w.out,
              "{\"findings\":[{\"severity\":\"warning\",\"code\":\"attach-normals-unmatched\","
              "\"subobject\":null,\"point\":\"NATH:0\",\"texture\":null,\"battery\":null,"
              "\"message\":\"The model has 1 attach normals and 2 attach points; the game "
              "ignores the normals unless the counts are equal.\"}]}\n");

    m.Sub(3).Properties = "$fov=90";
    ParseProperties(m.Sub(3));
    const auto e = Cli({"check", Write(m, "broken.oof")});
    EXPECT_EQ(e.status, 1);
    EXPECT_NE(e.out.find("error turret-values: Sub-object 'turret': the turret property needs"),
              std::string::npos)
        << e.out;
    EXPECT_NE(e.out.find("warning attach-normals-unmatched"), std::string::npos);
}

TEST_F(CliCheckTest, MissingTexturesNeedGameDataAndUnreadableFilesKeepTheirCodes) {
    ModelData m = BuildSampleModel();
    m.Textures[1].Name = "no_such_texture";
    const std::string path = Write(m, "textures.oof");
    EXPECT_EQ(Cli({"check", path}).out, "No findings: the game takes this model as it is.\n");
    const auto r =
        Cli({"check", path, "--json", "--d3hog", MW_SOURCE_DIR "/samples/gamedata/d3.hog"});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("\"code\":\"texture-unresolved\",\"subobject\":null,\"point\":null,"
                         "\"texture\":1"),
              std::string::npos)
        << r.out;

    ASSERT_EQ(WriteFileReplacing(dir_ / "junk.oof", std::vector<std::uint8_t>(40, 7)), "");
    const auto junk = Cli({"check", (dir_ / "junk.oof").string()});
    EXPECT_EQ(junk.status, 1);  // the reader's "not an OOF file"
    EXPECT_FALSE(junk.err.empty());
    EXPECT_EQ(Cli({"check", (dir_ / "none.oof").string()}).status, kExitNoInput);
}

}  // namespace
}  // namespace mw
