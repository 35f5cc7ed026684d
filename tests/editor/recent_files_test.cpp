#include "editor/recent_files.h"

#include <gtest/gtest.h>

namespace mw {
namespace {

TEST(RecentFilesTest, AnOpenedPathMovesToTheTopWithoutDuplicates) {
    std::vector<std::string> list;
    for (const char* p : {"/m/a.oof", "/m/b.oof", "/m/c.oof"})
        AddToRecent(list, p);
    EXPECT_EQ(list, (std::vector<std::string>{"/m/c.oof", "/m/b.oof", "/m/a.oof"}));
    AddToRecent(list, "/m/a.oof");
    EXPECT_EQ(list, (std::vector<std::string>{"/m/a.oof", "/m/c.oof", "/m/b.oof"}));
}

TEST(RecentFilesTest, ATenthPathPushesTheOldestOut) {
    std::vector<std::string> list;
    for (int i = 1; i <= 10; ++i)
        AddToRecent(list, "/m/" + std::to_string(i) + ".oof");
    ASSERT_EQ(list.size(), 9u);
    EXPECT_EQ(list.front(), "/m/10.oof");
    EXPECT_EQ(list.back(), "/m/2.oof");
}

TEST(RecentFilesTest, RemovingAnEntryMovesTheLaterOnesUp) {
    std::vector<std::string> list{"a", "b", "c"};
    RemoveRecent(list, 2);
    EXPECT_EQ(list, (std::vector<std::string>{"a", "c"}));
    RemoveRecent(list, 0);
    RemoveRecent(list, 3);
    EXPECT_EQ(list.size(), 2u);
}

TEST(RecentFilesTest, LongPathsShowTheirLast35Characters) {
    const std::string forty = "/home/modder/models/ships/0123456789.oof";
    ASSERT_EQ(forty.size(), 40u);
    EXPECT_EQ(RecentCaption(1, forty), "&1 ..." + forty.substr(5));
    EXPECT_EQ(RecentCaption(1, forty).size(), 6u + 35u);
    const std::string thirtyFive(35, 'x');
    EXPECT_EQ(RecentCaption(9, thirtyFive), "&9 " + thirtyFive);
    EXPECT_EQ(RecentCaption(2, thirtyFive + "y"), "&2 ..." + thirtyFive.substr(1) + "y");
}

}  // namespace
}  // namespace mw
