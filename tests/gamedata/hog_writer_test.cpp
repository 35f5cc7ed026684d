// Writing archives: what our reader lists and extracts is what went in; the same inputs give
// the same bytes; refusals write nothing.
#include "gamedata/hog_writer.h"

#include <gtest/gtest.h>

#include <map>

#include "gamedata/hog.h"
#include "model/file_io.h"
#include "support/temp_dir.h"

namespace mw {
namespace {

class HogWriterTest : public ::testing::Test {
  protected:
    HogWriterTest() : dir_("hog-writer") {}
    std::filesystem::path File(const std::string& name, std::size_t size, std::uint8_t fill) {
        const auto path = dir_ / name;
        EXPECT_EQ(WriteFileReplacing(path, std::vector<std::uint8_t>(size, fill)), "");
        return path;
    }
    std::vector<HogFile> Read(const std::filesystem::path& archive) {
        const auto bytes = ReadFileBytes(archive);
        EXPECT_TRUE(bytes.has_value());
        auto files = ReadHogFiles(*bytes);
        EXPECT_TRUE(files.has_value());
        return files.value_or(std::vector<HogFile>{});
    }
    std::vector<std::string> Names(const std::filesystem::path& archive) {
        std::vector<std::string> names;
        for (const HogFile& f : Read(archive))
            names.push_back(f.Name);
        return names;
    }
    test::TempDir dir_;
};

TEST_F(HogWriterTest, CreateAddAndRemoveKeepASortedDirectory) {
    const auto hog = dir_ / "pack.hog";
    const auto b = File("b_tex.ogf", 30, 2), a = File("A_Model.oof", 10, 1);
    const auto c = File("c.gam", 0, 0);  // an empty file is an entry too
    HogEdit edit = CreateHog(hog, {b, a, c}, 0);
    ASSERT_EQ(edit.Error, "");
    EXPECT_EQ(Names(hog), (std::vector<std::string>{"A_Model.oof", "b_tex.ogf", "c.gam"}));
    const auto files = Read(hog);
    EXPECT_EQ(files[1].Data, std::vector<std::uint8_t>(30, 2));
    EXPECT_TRUE(files[2].Data.empty());
    // Our reader indexes it as the game would.
    clsHOG index;
    ASSERT_EQ(index.ReadHogDirectory(hog.string(), 1, nullptr), HogStatus::Ok);
    EXPECT_EQ(index.Models.size(), 1u);
    ASSERT_EQ(index.Textures.size(), 1u);
    EXPECT_EQ(EntryName(index.Textures[0].Name), "b_tex.ogf");

    // Adding: a name already there in other capitals replaces it; a new one goes in order
    // (compared in lower case, "_" before the letters).
    const auto b2 = File("B_TEX.OGF", 12, 9), aa = File("aa.ogf", 5, 4);
    edit = AddToHog(hog, {b2, aa}, 0);
    ASSERT_EQ(edit.Error, "");
    EXPECT_EQ(edit.Replaced, std::vector<std::string>{"B_TEX.OGF"});
    EXPECT_EQ(edit.Added, std::vector<std::string>{"aa.ogf"});
    EXPECT_EQ(Names(hog),
              (std::vector<std::string>{"A_Model.oof", "aa.ogf", "B_TEX.OGF", "c.gam"}));
    EXPECT_EQ(Read(hog)[2].Data, std::vector<std::uint8_t>(12, 9));

    edit = RemoveFromHog(hog, {"A_MODEL.OOF"}, 0);
    ASSERT_EQ(edit.Error, "");
    EXPECT_EQ(Names(hog), (std::vector<std::string>{"aa.ogf", "B_TEX.OGF", "c.gam"}));
}

TEST_F(HogWriterTest, TheSameInputsGiveTheSameBytesStampedWithTheGivenTime) {
    const auto a = File("a.ogf", 100, 3), b = File("b.ogf", 7, 4);
    ASSERT_EQ(CreateHog(dir_ / "1.hog", {a, b}, 1700000000).Error, "");
    ASSERT_EQ(CreateHog(dir_ / "2.hog", {b, a}, 1700000000).Error, "");
    const auto one = ReadFileBytes(dir_ / "1.hog"), two = ReadFileBytes(dir_ / "2.hog");
    EXPECT_EQ(one, two);
    // The time sits after the name, flags and length of the first entry.
    const std::size_t stamp = 68 + 36 + 8;
    EXPECT_EQ((*one)[stamp] | (*one)[stamp + 1] << 8 | (*one)[stamp + 2] << 16 |
                  static_cast<std::uint32_t>((*one)[stamp + 3]) << 24,
              1700000000u);
    EXPECT_EQ(ArchiveTime("1700000000"), 1700000000u);
    EXPECT_EQ(ArchiveTime(nullptr), 0u);
    EXPECT_EQ(ArchiveTime("soon"), 0u);
}

TEST_F(HogWriterTest, RefusalsWriteNothing) {
    const auto hog = dir_ / "keep.hog";
    const auto a = File("a.ogf", 4, 1);
    ASSERT_EQ(CreateHog(hog, {a}, 0).Error, "");
    const auto before = ReadFileBytes(hog);
    const auto longName = File(std::string(36, 'x') + ".ogf", 1, 1);
    EXPECT_NE(AddToHog(hog, {longName}, 0).Error.find("longer than the 35"), std::string::npos);
    const auto upper = File("A.OGF", 4, 2);
    EXPECT_NE(CreateHog(hog, {a, upper}, 0).Error.find("same name"), std::string::npos);
    EXPECT_NE(AddToHog(hog, {dir_ / "absent.ogf"}, 0).Error.find("Cannot read"), std::string::npos);
    EXPECT_NE(RemoveFromHog(hog, {"absent.ogf"}, 0).Error.find("is not in"), std::string::npos);
    EXPECT_EQ(ReadFileBytes(hog), before);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "new.hog"));
    EXPECT_NE(CreateHog(dir_ / "new.hog", {longName}, 0).Error, "");
    EXPECT_FALSE(std::filesystem::exists(dir_ / "new.hog"));
    // Adding to something that is no archive.
    EXPECT_NE(AddToHog(a, {upper}, 0).Error.find("not a HOG2 archive"), std::string::npos);
}

TEST_F(HogWriterTest, AThousandFilesListAndExtractAsTheyWent) {
    std::vector<HogFile> files;
    for (int i = 0; i < 1000; ++i) {
        files.push_back({"f" + std::to_string(i) + ".ogf",
                         std::vector<std::uint8_t>(static_cast<std::size_t>(i % 17 + 1),
                                                   static_cast<std::uint8_t>(i))});
    }
    ASSERT_EQ(WriteHogFiles(dir_ / "big.hog", files, 0).Error, "");
    const auto read = Read(dir_ / "big.hog");
    ASSERT_EQ(read.size(), 1000u);
    std::map<std::string, std::vector<std::uint8_t>> byName;
    for (const HogFile& f : read)
        byName[f.Name] = f.Data;
    for (const HogFile& f : files)
        EXPECT_EQ(byName[f.Name], f.Data) << f.Name;
}

TEST_F(HogWriterTest, NamesAreWindows1252InTheOrderTheGameSearches) {
    // "Ä" (0xC4) and "ä" (0xE4) differ to the game, which folds ASCII letters only; "_" sorts
    // between the capitals and the small letters it folds to.
    const auto archive = dir_ / "order.mn3";
    ASSERT_EQ(CreateHog(archive,
                        {File("\xC3\xA4x.ogf", 1, 1), File("B.ogf", 1, 2),
                         File("\xC3\x84y.ogf", 1, 3), File("_a.ogf", 1, 4), File("a.ogf", 1, 5)},
                        0)
                  .Error,
              "");
    const std::vector<std::string> names = Names(archive);
    EXPECT_EQ(names,
              (std::vector<std::string>{"_a.ogf", "a.ogf", "B.ogf", "\xC4y.ogf", "\xE4x.ogf"}));
    EXPECT_EQ(FirstOutOfOrder(names), -1);
    EXPECT_EQ(FirstOutOfOrder({"b.ogf", "A.ogf"}), 1);
    // Windows-1252 folding would put "äx" before "Äy": not the game's order.
    EXPECT_EQ(FirstOutOfOrder({"\xE4x.ogf", "\xC4y.ogf"}), 1);

    // A name with no Windows-1252 form is refused, and nothing is written.
    const auto refused = CreateHog(dir_ / "cjk.mn3", {File("\xE4\xB8\xAD.ogf", 1, 6)}, 0);
    EXPECT_NE(refused.Error.find("Windows-1252"), std::string::npos) << refused.Error;
    EXPECT_FALSE(std::filesystem::exists(dir_ / "cjk.mn3"));
}

}  // namespace
}  // namespace mw
