// The bundled sample is what its generator writes, so it can always be remade.
#include <gtest/gtest.h>

#include "cli/cli.h"
#include "model/file_io.h"
#include "model/oof_writer.h"
#include "sample_gamedata.h"
#include "sample_model.h"

namespace mw {
namespace {

TEST(SampleFile, MatchesItsGenerator) {
    const auto committed = ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof");
    ASSERT_TRUE(committed.has_value());
    ModelData sample = BuildSampleModel();
    EXPECT_EQ(WriteOOF(sample), *committed)
        << "run meshwright-make-sample samples after changing the sample";
    const auto archive = ReadFileBytes(MW_SOURCE_DIR "/samples/gamedata/d3.hog");
    ASSERT_TRUE(archive.has_value());
    EXPECT_EQ(BuildSampleArchive(), *archive)
        << "run meshwright-make-sample samples after changing the sample";
}

}  // namespace
}  // namespace mw
