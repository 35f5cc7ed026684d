#include "model/structure.h"

#include <gtest/gtest.h>

#include "model/geometry.h"
#include "support/oof_bytes.h"

namespace mw {
namespace {

using test::ModelWithParents;

std::vector<int> Heads(const ModelData& m) {
    std::vector<int> heads;
    for (int k = 0; k < m.SubObjectCount(); ++k)
        heads.push_back(m.Head(k));
    return heads;
}

ModelPoint At(int parent, float x = 0) {
    return {parent, {x, 0, 0}, {0, 0, 1}};
}

TEST(Structure, DeletingALeafRemovesItsColumnPointsAndTurrets) {
    ModelData m = ModelWithParents({-1, 0, 0});
    m.GroundPoints = {At(0), At(1), At(2), At(1)};
    m.GunPoints = {At(1), At(2), At(0)};
    m.Batteries = {{{0, 1, 2}, {1, 2}}};
    ASSERT_TRUE(DeleteSOBJ(m, 1));
    EXPECT_EQ(Heads(m), (std::vector<int>{0, 2}));
    ASSERT_EQ(m.GroundPoints.size(), 2u);
    EXPECT_EQ(m.GroundPoints[0].Parent, 0);
    EXPECT_EQ(m.GroundPoints[1].Parent, 2);
    ASSERT_EQ(m.GunPoints.size(), 2u);
    // Gun point 0 (on the deleted part) left the battery; the others moved down.
    EXPECT_EQ(m.Batteries[0].GunPoints, (std::vector<std::int32_t>{0, 1}));
    EXPECT_EQ(m.Batteries[0].Turrets, (std::vector<std::int32_t>{2}));
    EXPECT_EQ(m.SubObjects.size(), 3u);  // records are kept
    EXPECT_FALSE(DeleteSOBJ(m, 1));      // no longer heads a slot
}

TEST(Structure, DeletingASubObjectTakesItsSubtree) {
    // 0 -> {1 -> {3, 4}, 2}; slots 0 1 3 4 2.
    ModelData m = ModelWithParents({-1, 0, 0, 1, 1});
    m.AttachPoints = {At(3), At(4), At(2)};
    m.Batteries = {{{}, {3, 4, 2}}};
    ASSERT_TRUE(DeleteSOBJ(m, 1));
    EXPECT_EQ(Heads(m), (std::vector<int>{0, 2}));
    ASSERT_EQ(m.AttachPoints.size(), 1u);
    EXPECT_EQ(m.AttachPoints[0].Parent, 2);
    EXPECT_EQ(m.Batteries[0].Turrets, (std::vector<std::int32_t>{2}));
}

TEST(Structure, BatteryEntryRemoval) {
    ModelData m = ModelWithParents({-1});
    m.GunPoints = {At(0), At(0), At(0), At(0), At(0), At(0)};
    m.Batteries = {{{0, 2, 5}, {}}, {{2, 3}, {0}}};
    ASSERT_TRUE(DeletePNT(m, PointType::GPNT, 2));
    EXPECT_EQ(m.Batteries[0].GunPoints, (std::vector<std::int32_t>{0, 4}));
    EXPECT_EQ(m.Batteries[1].GunPoints, (std::vector<std::int32_t>{2}));
    EXPECT_EQ(m.GunPoints.size(), 5u);

    RemoveSingleWBATGPNT(m, 0, 4);
    EXPECT_EQ(m.Batteries[0].GunPoints, (std::vector<std::int32_t>{0}));
    RemoveSingleWBATturret(m, 1, 7);  // not in the list: nothing happens
    EXPECT_EQ(m.Batteries[1].Turrets, (std::vector<std::int32_t>{0}));
    RemoveSingleWBATturret(m, 5, 0);  // no such battery
    EXPECT_FALSE(DeletePNT(m, PointType::ATCH, 0));
}

TEST(Structure, DeleteBatteryMovesTheRestDown) {
    ModelData m = ModelWithParents({-1});
    m.Batteries = {{{1}, {}}, {{1, 2, 3}, {0}}};
    ASSERT_TRUE(DeleteWBAT(m, 0));
    ASSERT_EQ(m.Batteries.size(), 1u);
    EXPECT_EQ(m.Batteries[0].GunPoints, (std::vector<std::int32_t>{1, 2, 3}));
    EXPECT_FALSE(DeleteWBAT(m, 1));
}

TEST(Structure, CombineMovesGeometryIntoTheTargetFrame) {
    // Root 0 at the origin; A = 1 at world (10, 0, 0); B = 2 at world (4, 0, 0).
    ModelData m = ModelWithParents({-1, 0, 0});
    m.Sub(1).Offset = {10, 0, 0};
    m.Sub(2).Offset = {4, 0, 0};
    m.GunPoints = {At(1, 1)};
    const float oldRadius = m.Sub(2).Radius;
    ASSERT_TRUE(SOBJCombine(m, 1, 2));
    EXPECT_EQ(Heads(m), (std::vector<int>{0, 2}));
    EXPECT_EQ(m.MergeTable[1], (std::vector<int>{2, 1}));
    EXPECT_EQ(m.Sub(1).Vertices[1].Position, (Vector3{7, 0, 0}));
    EXPECT_EQ(m.GunPoints[0].Position, (Vector3{7, 0, 0}));
    EXPECT_EQ(m.GunPoints[0].Parent, 1);  // the caller gives it the target
    EXPECT_EQ(m.Sub(2).BoxMax.X, 7.0f);
    EXPECT_GT(m.Sub(2).Radius, oldRadius);
    EXPECT_EQ(m.Sub(1).Offset, (Vector3{10, 0, 0}));  // A's own record is untouched
}

TEST(Structure, CombineRefusals) {
    ModelData m = ModelWithParents({-1, 0});
    EXPECT_FALSE(SOBJCombine(m, 1, 1));
    EXPECT_FALSE(SOBJCombine(m, 5, 0));
    EXPECT_FALSE(CombineAndAdopt(m, 0, 1));  // a parent into its own child
    // A full column takes no more members.
    m.MergeTable[0].resize(kMaxColumnEntries, 0);
    EXPECT_FALSE(SOBJCombine(m, 1, 0));
    EXPECT_EQ(m.SubObjectCount(), 2);
}

TEST(Structure, CombineAndAdoptHandsPointsAndChildrenToTheTarget) {
    // 0 -> {1 -> {3, 4}, 2}; merge 1 into 2.
    ModelData m = ModelWithParents({-1, 0, 0, 1, 1});
    m.Sub(1).Offset = {1, 0, 0};
    m.Sub(2).Offset = {5, 0, 0};
    m.Sub(3).Offset = {0, 2, 0};
    m.AttachPoints = {At(1)};
    ASSERT_TRUE(CombineAndAdopt(m, 1, 2));
    EXPECT_EQ(Heads(m), (std::vector<int>{0, 2, 3, 4}));
    EXPECT_EQ(m.Sub(3).Parent, 2);
    EXPECT_EQ(m.Sub(4).Parent, 2);
    EXPECT_EQ(WorldOffset(m, 3), (Vector3{1, 2, 0}));  // stayed in place
    EXPECT_EQ(m.AttachPoints[0].Parent, 2);
}

TEST(Structure, CombiningATurretAwayTakesItOutOfItsBatteries) {
    // 0 -> {1, 2}; 2 is a turret in both batteries. Merging 2 into 1 leaves no slot for it.
    ModelData m = ModelWithParents({-1, 0, 0});
    m.GunPoints = {At(0)};
    m.Batteries = {{{0}, {2, 1}}, {{}, {2}}};
    ASSERT_TRUE(CombineAndAdopt(m, 2, 1));
    EXPECT_EQ(m.Batteries[0].Turrets, (std::vector<std::int32_t>{1}));
    EXPECT_TRUE(m.Batteries[1].Turrets.empty());
    EXPECT_EQ(m.Batteries[0].GunPoints, (std::vector<std::int32_t>{0}));
}

TEST(Structure, ReparentKeepsWorldPositionAndMovesTheBlock) {
    // 0 -> {1 -> {2}, 3}; slots 0 1 2 3.
    ModelData m = ModelWithParents({-1, 0, 1, 0});
    m.Sub(0).Offset = {1, 0, 0};
    m.Sub(1).Offset = {0, 2, 0};
    m.Sub(2).Offset = {0, 0, 3};
    m.Sub(3).Offset = {5, 0, 0};
    ASSERT_TRUE(ChangeSOBJParent(m, 1, 3));
    EXPECT_EQ(Heads(m), (std::vector<int>{0, 3, 1, 2}));
    EXPECT_EQ(m.Sub(1).Parent, 3);
    EXPECT_EQ(WorldOffset(m, 2), (Vector3{1, 2, 3}));

    ASSERT_TRUE(ChangeSOBJParent(m, 1, -1));
    EXPECT_EQ(Heads(m), (std::vector<int>{1, 2, 0, 3}));
    EXPECT_EQ(m.Sub(1).Offset, (Vector3{1, 2, 0}));
    EXPECT_EQ(WorldOffset(m, 2), (Vector3{1, 2, 3}));

    // Back under a parent that sits in a later slot.
    ASSERT_TRUE(ChangeSOBJParent(m, 1, 0));
    EXPECT_EQ(Heads(m), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(m.Sub(1).Offset, (Vector3{0, 2, 0}));
}

TEST(Structure, ReparentRefusesLoopsAndUnknowns) {
    ModelData m = ModelWithParents({-1, 0, 1});
    EXPECT_FALSE(ChangeSOBJParent(m, 0, 2));
    EXPECT_FALSE(ChangeSOBJParent(m, 1, 1));
    EXPECT_FALSE(ChangeSOBJParent(m, 1, 9));
    EXPECT_FALSE(ChangeSOBJParent(m, 9, -1));
    EXPECT_EQ(Heads(m), (std::vector<int>{0, 1, 2}));
    EXPECT_TRUE(IsInSubtree(m, 0, 2));
    EXPECT_FALSE(IsInSubtree(m, 2, 0));
}

TEST(Structure, PointParentChangeKeepsThePosition) {
    ModelData m = ModelWithParents({-1, 0});
    m.AttachNormals = {At(0, 3)};
    ASSERT_TRUE(ChangePNTParent(m, PointType::NATH, 0, 1));
    EXPECT_EQ(m.AttachNormals[0].Parent, 1);
    EXPECT_EQ(m.AttachNormals[0].Position.X, 3.0f);
    EXPECT_FALSE(ChangePNTParent(m, PointType::NATH, 1, 1));
}

TEST(Structure, DeletingAnAttachPointTakesItsNormalWhenTheyArePaired) {
    ModelData m = ModelWithParents({-1});
    m.AttachPoints = {At(0, 1), At(0, 2)};
    m.AttachNormals = {At(0, 10), At(0, 20)};
    ASSERT_TRUE(DeletePNT(m, PointType::ATCH, 0));
    ASSERT_EQ(m.AttachNormals.size(), 1u);
    EXPECT_EQ(m.AttachPoints[0].Position.X, 2.0f);
    EXPECT_EQ(m.AttachNormals[0].Position.X, 20.0f);

    // Unpaired lists (the game ignores the normals) keep their normals.
    m.AttachPoints.push_back(At(0, 3));
    ASSERT_TRUE(DeletePNT(m, PointType::ATCH, 1));
    EXPECT_EQ(m.AttachNormals.size(), 1u);
    // Deleting a normal never touches the points.
    ASSERT_TRUE(DeletePNT(m, PointType::NATH, 0));
    EXPECT_EQ(m.AttachPoints.size(), 1u);
}

}  // namespace
}  // namespace mw
