// Whatever bytes `info` is given, it ends with a reader's status and never crashes.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "cli/cli.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"
#include "sample_model.h"
#include "support/mutate.h"

namespace mw {
namespace {

TEST(CliRobustness, MutatedModelsEndWithAReaderStatus) {
    ModelData sample = BuildSampleModel();
    sample.Special = SpecialPoint{"$s", "", {}, 1};
    const std::vector<std::uint8_t> original = WriteOOF(sample);
    std::mt19937 rng(20261123);
    int succeeded = 0;
    for (int round = 0; round < 4000; ++round) {
        const std::vector<std::uint8_t> bytes = test::Mutated(original, rng);
        ModelData m;
        const int status = static_cast<int>(readOOF(m, bytes));
        ASSERT_GE(status, 0);
        ASSERT_LE(status, 7);
        if (status == 0) {
            ++succeeded;
            // What reads must also print and write back.
            ASSERT_FALSE(ModelJson(m, true).empty());
            ModelData again;
            ASSERT_EQ(readOOF(again, WriteOOF(m)), ResultCode::Success);
        }
    }
    EXPECT_GT(succeeded, 0);
}

}  // namespace
}  // namespace mw
