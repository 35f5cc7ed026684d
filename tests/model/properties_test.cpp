#include "model/properties.h"

#include <gtest/gtest.h>

namespace mw {
namespace {

SubObject Parsed(const std::string& text, std::uint32_t flags = 0) {
    SubObject s;
    s.Properties = text;
    s.PropertyFlags = flags;
    ParseProperties(s);
    return s;
}

TEST(Properties, RotateIsTrimmedFilteredAndClamped) {
    const SubObject s = Parsed("  $Rotate = 5  ");
    EXPECT_EQ(s.Properties, "$rotate = 5");
    EXPECT_EQ(s.PropertyFlags, kPropRotate);
    EXPECT_EQ(s.RotateSpeed, 5.0f);
    EXPECT_EQ(Parsed("$rotate=-3").RotateSpeed, 3.0f);  // the minus sign is filtered out
    EXPECT_EQ(Parsed("$rotate=0").RotateSpeed, 0.01f);
    EXPECT_EQ(Parsed("$rotate=").RotateSpeed, 0.01f);
    EXPECT_EQ(Parsed("$rotate=45").RotateSpeed, 20.0f);
    EXPECT_EQ(Parsed("$rotate=1.5e1").RotateSpeed, 15.0f);
}

TEST(Properties, GlowAndThrusterNeedTheirCommas) {
    const SubObject g = Parsed("$glow=1,0.5,0.25,4");
    EXPECT_EQ(g.PropertyFlags, kPropGlow);
    EXPECT_EQ(g.GlowColor, (std::array<float, 3>{1.0f, 0.5f, 0.25f}));
    EXPECT_EQ(g.GlowSize, 4.0f);
    const SubObject partial = Parsed("$glow=1,0.5");
    EXPECT_EQ(partial.GlowColor, (std::array<float, 3>{1.0f, 0.0f, 0.0f}));
    EXPECT_EQ(partial.GlowSize, 0.0f);
    const SubObject t = Parsed("$thruster=1,1,1,2");
    EXPECT_EQ(t.PropertyFlags, kPropGlow);
    EXPECT_EQ(t.GlowColor, (std::array<float, 3>{1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(t.GlowSize, 2.0f);
}

TEST(Properties, FovDefaultsAndClamps) {
    EXPECT_EQ(Parsed("$fov=90").FovValues, (std::array<float, 3>{1.0f, 1.0f, 10.0f}));
    EXPECT_EQ(Parsed("$fov=400,0,20").FovValues, (std::array<float, 3>{360.0f, 0.1f, 10.0f}));
    EXPECT_EQ(Parsed("$fov=45,30,2").FovValues, (std::array<float, 3>{45.0f, 30.0f, 2.0f}));
    EXPECT_EQ(Parsed("$fov=45,").FovValues, (std::array<float, 3>{45.0f, 1.0f, 10.0f}));
    EXPECT_EQ(Parsed("$fov=1").PropertyFlags, kPropFov);
}

TEST(Properties, KeywordsMatchByPrefixInOrder) {
    EXPECT_EQ(Parsed("$monitor011").PropertyFlags, kPropMonitor01);
    EXPECT_EQ(Parsed("$monitor08").PropertyFlags, 0x800u);
    EXPECT_EQ(Parsed("$shellfish").PropertyFlags, kPropShell);
    EXPECT_EQ(Parsed("$facing").PropertyFlags, kPropFacing);
    EXPECT_EQ(Parsed("$frontface").PropertyFlags, kPropFrontFace);
    EXPECT_EQ(Parsed("$viewer").PropertyFlags, kPropViewer);
    EXPECT_EQ(Parsed("$layer").PropertyFlags, kPropLayer);
    EXPECT_EQ(Parsed("$custom").PropertyFlags, kPropCustom);
    EXPECT_EQ(Parsed("$Jitter").PropertyFlags, kPropJitter);
    EXPECT_EQ(Parsed("$rotatex=2", kPropShell).PropertyFlags, 0u);  // no match clears
    EXPECT_EQ(Parsed("$shell", kPropRotate).PropertyFlags, kPropRotate | kPropShell);
}

TEST(Properties, ShortTextsLeaveFlagsAlone) {
    EXPECT_EQ(Parsed("", kPropLayer).PropertyFlags, kPropLayer);
    EXPECT_EQ(Parsed("ab", kPropLayer).PropertyFlags, kPropLayer);
    EXPECT_EQ(Parsed("a - b", kPropLayer).PropertyFlags, kPropLayer);  // filters to "ab"
}

TEST(Properties, ComposedTextsParseBackToTheSameValues) {
    SubObject s;
    s.PropertyFlags = kPropShell | kPropLayer;
    s.RotateSpeed = 2.5f;
    s.GlowColor = {1, 0.5f, 0.25f};
    s.GlowSize = 3;
    s.FovValues = {90, 30, 2};
    ASSERT_TRUE(ComposeProperties(s, kPropRotate));
    EXPECT_EQ(s.Properties, "$rotate=2.5");
    EXPECT_EQ(s.PropertyFlags, kPropRotate);
    ASSERT_TRUE(ComposeProperties(s, kPropGlow));
    EXPECT_EQ(s.Properties, "$glow=1,0.5,0.25,3");
    ASSERT_TRUE(ComposeProperties(s, kPropFov));
    EXPECT_EQ(s.Properties, "$fov=90,30,2");
    ASSERT_TRUE(ComposeProperties(s, kPropMonitor01 << 7));
    EXPECT_EQ(s.Properties, "$monitor08");
    EXPECT_FALSE(ComposeProperties(s, 0x80000000u));
    EXPECT_EQ(s.Properties, "$monitor08");

    for (std::uint32_t flag : {kPropRotate, kPropGlow, kPropFov, kPropJitter}) {
        SubObject a = s;
        ComposeProperties(a, flag);
        SubObject b;
        b.Properties = a.Properties;
        ParseProperties(b);
        EXPECT_EQ(b.PropertyFlags, flag);
        EXPECT_EQ(b.RotateSpeed, flag == kPropRotate ? a.RotateSpeed : 0.0f);
        EXPECT_EQ(b.GlowSize, flag == kPropGlow ? a.GlowSize : 0.0f);
    }
    EXPECT_EQ(PlainNumber(0.00001f), "0.00001");
}

TEST(Properties, LeadingNumber) {
    EXPECT_EQ(LeadingNumber("12.5abc"), 12.5);
    EXPECT_EQ(LeadingNumber(".5"), 0.5);
    EXPECT_EQ(LeadingNumber("2e3"), 2000.0);
    EXPECT_EQ(LeadingNumber("2e"), 2.0);
    EXPECT_EQ(LeadingNumber("abc"), 0.0);
    EXPECT_EQ(LeadingNumber("."), 0.0);
    EXPECT_EQ(LeadingNumber("1e999"), 0.0);  // out of range gives no number
}

}  // namespace
}  // namespace mw
