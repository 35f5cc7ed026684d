// The compilers' switches, and the rules for what a compiler run leaves behind.
#include "convert/pofgen.h"

#include <gtest/gtest.h>

namespace mw {
namespace {

TEST(PofgenSwitchesTest, DefaultsGiveNoSwitchesAndStrayPathsAreDropped) {
    Settings s;
    s.POFGENPath = "/games/d3/tools/PofGen.EXE";
    BuildPofgenSwitches(s);
    EXPECT_EQ(s.PofgenSwitches, "");
    EXPECT_EQ(s.POFGENPath, "/games/d3/tools/PofGen.EXE");
    s.POFGENPath = "/usr/bin/gcc";
    BuildPofgenSwitches(s);
    EXPECT_EQ(s.POFGENPath, "");
}

TEST(PofgenSwitchesTest, ScaleShadingChunksAndFlagsInOrder) {
    Settings s;
    s.PofScale = 0.05f;
    s.PofShadingMode = 2;
    s.PofChunkSplits = {4, 4, 4};
    s.PofCapitalShips = true;
    BuildPofgenSwitches(s);
    EXPECT_EQ(s.PofgenSwitches, "-s0.05 -d2 -n4,4,4 -b ");

    Settings all;
    all.PofErrorFactor = 1.5f;
    for (const PofgenFlag& f : kPofgenFlags)
        all.*f.field = true;
    BuildPofgenSwitches(all);
    EXPECT_EQ(all.PofgenSwitches, "-e1.5 -p -f -m -g -1 -a -b ");
}

TEST(PofgenSwitchesTest, OptionsAreBroughtIntoRange) {
    Settings s;
    s.PofChunkSplits = {1, 5, 5};
    BuildPofgenSwitches(s);
    EXPECT_EQ(s.PofgenSwitches, "-n0,5,5 ");
    EXPECT_EQ(s.PofChunkSplits[0], 0);

    Settings odd;
    odd.PofScale = -3.0f;        // becomes the smallest scale: no switch
    odd.PofErrorFactor = -1.0f;  // becomes 0
    odd.PofShadingMode = 7;      // becomes 2
    BuildPofgenSwitches(odd);
    EXPECT_EQ(odd.PofgenSwitches, "-d2 ");
    EXPECT_FLOAT_EQ(odd.PofScale, 0.0254f);

    Settings big;
    big.PofScale = 1e6f;
    big.PofErrorFactor = 1e9f;
    BuildPofgenSwitches(big);
    EXPECT_EQ(big.PofgenSwitches, "-s65535 -e65535 ");
}

TEST(PofgenSwitchesTest, TheDialogWritesItsFieldsAsTyped) {
    PofgenFields f;
    f.scale = "0.02540000";
    f.error = "0.00000000";
    EXPECT_EQ(PofgenSwitchesFromFields(f), "");
    f.scale = "0.05000000";
    f.shading = 2;
    f.chunks = {"4", "4", "4"};
    f.flags[6] = true;
    EXPECT_EQ(PofgenSwitchesFromFields(f), "-s0.05000000 -d2 -n4,4,4 -b ");
    f = PofgenFields{"12.00000000", "0.00100000", 1, {"0", "5", "5"}, {true}};
    EXPECT_EQ(PofgenSwitchesFromFields(f), "-s12.00000000 -e0.00100000 -d1 -n0,5,5 -p ");
}

TEST(PofgenOutputTest, ErrorsInAnyCapitalsAndTheModelBesideTheSource) {
    EXPECT_TRUE(CompilerReportedErrors("line 3: ERROR Processing object 'hull'"));
    EXPECT_TRUE(CompilerReportedErrors("error processing"));
    EXPECT_FALSE(CompilerReportedErrors("0 errors. Processing done."));
    EXPECT_EQ(CompiledModelPath("/models/Ship.p3d"), "/models/Ship.OOF");
    EXPECT_EQ(CompiledModelPath("C:\\Models\\Ship.p3d"), "C:\\Models\\Ship.OOF");
}

}  // namespace
}  // namespace mw
