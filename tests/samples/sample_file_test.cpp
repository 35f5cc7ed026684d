// The bundled sample is what its generator writes, so it can always be remade.
#include <gtest/gtest.h>

#include "cli/cli.h"
#include "model/file_io.h"
#include "model/oof_writer.h"
#include "sample_model.h"

namespace mw {
namespace {

TEST(SampleFile, MatchesItsGenerator) {
    const auto committed = ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof");
    ASSERT_TRUE(committed.has_value());
    ModelData sample = BuildSampleModel();
    EXPECT_EQ(WriteOOF(sample), *committed)
        << "run meshwright-make-sample samples/ship.oof after changing the sample";
}

}  // namespace
}  // namespace mw
