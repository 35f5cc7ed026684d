#include "model/batteries.h"

#include <gtest/gtest.h>

#include "model/structure.h"
#include "support/oof_bytes.h"

namespace mw {
namespace {

using Entries = std::vector<std::string>;

// Three turrets (two named alike, and the second of those in an earlier save slot than its
// record number suggests) and three gun points in two batteries.
ModelData Fixture() {
    ModelData m = test::ModelWithParents({-1, 0, 0, 0, 0});
    m.Sub(1).Name = "Gun";
    m.Sub(2).Name = "Twin";
    m.Sub(3).Name = "Twin";
    m.Sub(4).Name = "Plain";
    for (int s : {1, 2, 3})
        m.Sub(s).PropertyFlags = kPropFov;
    std::swap(m.MergeTable[2], m.MergeTable[3]);  // slot order: 0 1 3 2 4
    m.GunPoints.resize(3);
    m.Batteries = {{{0, 2}, {1}}, {{}, {}}};
    return m;
}

TEST(BatteriesTest, ListsTurretsThenGunPoints) {
    const ModelData m = Fixture();
    EXPECT_EQ(AssignedBatteryEntries(m, 0), (Entries{"Gun", "GPNT0", "GPNT2"}));
    // Save-slot order; the plain sub-object is no turret.
    EXPECT_EQ(AvailableBatteryEntries(m, 0), (Entries{"Twin", "Twin", "GPNT1"}));
    // What battery 1 holds is still available for battery 2.
    EXPECT_EQ(AvailableBatteryEntries(m, 1),
              (Entries{"Gun", "Twin", "Twin", "GPNT0", "GPNT1", "GPNT2"}));
    EXPECT_TRUE(AssignedBatteryEntries(m, 1).empty());
    EXPECT_TRUE(AvailableBatteryEntries(m, 2).empty());
}

TEST(BatteriesTest, EntriesAreReadBackAsTheListsWriteThem) {
    const ModelData m = Fixture();
    // Two turrets named alike: the first in slot order (record 3) stands for both.
    EXPECT_EQ(ParseBatteryEntry(m, "Twin", false)->Index, 3);
    EXPECT_FALSE(ParseBatteryEntry(m, "Twin", false)->GunPoint);
    EXPECT_EQ(ParseBatteryEntry(m, "GPNT12", false)->Index, 12);
    EXPECT_TRUE(ParseBatteryEntry(m, "GPNT12", false)->GunPoint);
    // Only the assigned list finds "GPNT" inside a text.
    EXPECT_FALSE(ParseBatteryEntry(m, "xGPNT1", false).has_value());
    EXPECT_TRUE(ParseBatteryEntry(m, "xGPNT1", true)->GunPoint);
    EXPECT_FALSE(ParseBatteryEntry(m, "twin", false).has_value());  // names match exactly
}

TEST(BatteriesTest, AddingRespectsTheLimits) {
    ModelData m = Fixture();
    EXPECT_TRUE(AddToWBAT(m, 1, {true, 1}));
    EXPECT_FALSE(AddToWBAT(m, 1, {true, 1}));   // already there
    EXPECT_FALSE(AddToWBAT(m, 1, {true, 3}));   // no such gun point
    EXPECT_FALSE(AddToWBAT(m, 1, {false, 9}));  // no such sub-object
    EXPECT_FALSE(AddToWBAT(m, 2, {true, 0}));   // no such battery
    m.GunPoints.resize(12);
    for (int g = 2; g < 9; ++g)
        EXPECT_TRUE(AddToWBAT(m, 1, {true, g}));
    EXPECT_EQ(m.Batteries[1].GunPoints.size(), 8u);
    EXPECT_FALSE(AddToWBAT(m, 1, {true, 10}));
    EXPECT_TRUE(AddToWBAT(m, 1, {false, 3}));

    while (AddWBAT(m)) {
    }
    EXPECT_EQ(m.Batteries.size(), static_cast<std::size_t>(kMaxBatteries));
}

TEST(BatteriesTest, RemovingTakesOneEntryFromOneBattery) {
    ModelData m = Fixture();
    m.Batteries[1].GunPoints = {0};
    EXPECT_TRUE(RemoveFromWBAT(m, 0, {true, 0}));
    EXPECT_EQ(m.Batteries[0].GunPoints, (std::vector<std::int32_t>{2}));
    EXPECT_EQ(m.Batteries[1].GunPoints, (std::vector<std::int32_t>{0}));
    EXPECT_FALSE(RemoveFromWBAT(m, 0, {true, 0}));
    EXPECT_TRUE(RemoveFromWBAT(m, 0, {false, 1}));
    EXPECT_TRUE(m.Batteries[0].Turrets.empty());
}

}  // namespace
}  // namespace mw
