#include "model/text_codec.h"

#include <gtest/gtest.h>

namespace mw {
namespace {

TEST(TextCodec, EveryByteSurvivesTheTripThroughUtf8) {
    std::string all;
    for (int b = 1; b < 256; ++b)
        all.push_back(static_cast<char>(b));
    EXPECT_EQ(Cp1252FromUtf8(Utf8From1252(all)), all);
    EXPECT_EQ(Utf8From1252("\x80"), "\xE2\x82\xAC");  // the euro sign
    EXPECT_EQ(Utf8From1252("\xE9"), "\xC3\xA9");
}

TEST(TextCodec, LowerCaseKnowsTheAccentedLetters) {
    EXPECT_EQ(LowerCase1252("Tech Pan\xC9\xD7\x8A\x9F"), "tech pan\xE9\xD7\x9A\xFF");
}

TEST(TextCodec, UnknownCharactersBecomeQuestionMarks) {
    EXPECT_EQ(Cp1252FromUtf8("\xE4\xB8\xAD"), "?");  // a CJK character
    EXPECT_EQ(Cp1252FromUtf8("a\xC3"), "a?");        // cut short
}

TEST(TextCodec, TrimSpaces) {
    EXPECT_EQ(TrimSpaces("  a b  "), "a b");
    EXPECT_EQ(TrimSpaces("   "), "");
}

}  // namespace
}  // namespace mw
