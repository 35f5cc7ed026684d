#include "editor/enabling.h"

#include <gtest/gtest.h>

#include "support/oof_bytes.h"

namespace mw {
namespace {

SelectionState SubObject(int s) {
    SelectionState sel;
    sel.curSOBJ = sel.hiliteSOBJ = s;
    return sel;
}

SelectionState Point(PointType t, int i) {
    SelectionState sel;
    sel.curPNT = i;
    sel.curPNTtype = PointTag(t);
    return sel;
}

TEST(EditEnablingTest, NothingSelectedDisablesEverything) {
    const ModelData m = test::ModelWithParents({-1, 0});
    const EditEnabling e = ComputeEditEnabling(m, SelectionState{});
    EXPECT_FALSE(e.Delete);
    EXPECT_FALSE(e.Convert);
    EXPECT_EQ(e.ConvertTo, (std::array<bool, 4>{}));
}

TEST(EditEnablingTest, TheLastTopLevelSubObjectStays) {
    const ModelData alone = test::ModelWithParents({-1, 0});
    EXPECT_FALSE(ComputeEditEnabling(alone, SubObject(0)).Delete);
    EXPECT_FALSE(ComputeEditEnabling(alone, SubObject(0)).Convert);  // no parent
    const ModelData pair = test::ModelWithParents({-1, -1});
    EXPECT_TRUE(ComputeEditEnabling(pair, SubObject(0)).Delete);
    EXPECT_TRUE(ComputeEditEnabling(pair, SubObject(1)).Delete);
}

TEST(EditEnablingTest, OnlyChildlessSubObjectsWithAParentConvert) {
    ModelData m = test::ModelWithParents({-1, 0, 1, 0});
    EXPECT_FALSE(ComputeEditEnabling(m, SubObject(1)).Convert);  // has a child sub-object
    EXPECT_TRUE(ComputeEditEnabling(m, SubObject(2)).Convert);
    EXPECT_TRUE(ComputeEditEnabling(m, SubObject(2)).Delete);
    m.GroundPoints.push_back({3, {}, {0, -1, 0}});
    EXPECT_FALSE(ComputeEditEnabling(m, SubObject(3)).Convert);  // owns a point
    EXPECT_EQ(ComputeEditEnabling(m, SubObject(2)).ConvertTo,
              (std::array<bool, 4>{true, true, true, true}));
}

TEST(EditEnablingTest, ConvertOffersTheOtherTypesWithRoom) {
    ModelData m = test::ModelWithParents({-1, 0});
    m.GunPoints.assign(kMaxGunPoints, ModelPoint{});
    EXPECT_EQ(ComputeEditEnabling(m, SubObject(1)).ConvertTo,
              (std::array<bool, 4>{true, true, true, false}));
    const EditEnabling gun = ComputeEditEnabling(m, Point(PointType::GPNT, 3));
    EXPECT_TRUE(gun.Delete);
    EXPECT_TRUE(gun.Convert);
    EXPECT_EQ(gun.ConvertTo, (std::array<bool, 4>{true, true, true, false}));
    m.AttachPoints.assign(kMaxAttachPoints, ModelPoint{});
    EXPECT_EQ(ComputeEditEnabling(m, Point(PointType::GRND, 0)).ConvertTo,
              (std::array<bool, 4>{false, true, false, false}));
}

}  // namespace
}  // namespace mw
