#include "model/snapshot.h"

#include <gtest/gtest.h>

#include "model/geometry.h"
#include "model/oof_writer.h"
#include "model/structure.h"
#include "support/oof_bytes.h"

namespace mw {
namespace {

std::vector<std::uint8_t> Bytes(const ModelData& m) {
    ModelData copy = m;
    return WriteOOF(copy);
}

ModelData Fixture() {
    ModelData m = test::ModelWithParents({-1, 0, 1, -1});
    m.GunPoints.push_back({2, {1, 2, 3}, {0, 0.6f, 0.8f}});
    m.GroundPoints.push_back({1, {0, -1, 0}, {0, -1, 0}});
    m.Batteries.push_back({{0}, {2}});
    m.Sub(2).Name = "Turret";
    return m;
}

TEST(SnapshotTest, RestoresEverythingAnEditTouches) {
    ModelData m = Fixture();
    const auto before = Bytes(m);
    const ModelSnapshot snapshot(m, GeometryScope::None());
    ASSERT_TRUE(DeleteSOBJ(m, 1));  // takes 2, its gun point and its battery entry along
    CreatePushPop(m);
    MoveSOBJ(m);
    ASSERT_NE(Bytes(m), before);
    ASSERT_TRUE(snapshot.Restore(m));
    EXPECT_EQ(Bytes(m), before);
    EXPECT_EQ(m.PushFlags, Fixture().PushFlags);
}

TEST(SnapshotTest, KeepsOnlyTheGeometryItIsToldAbout) {
    ModelData m = Fixture();
    const auto before = Bytes(m);
    const ModelSnapshot some(m, GeometryScope::Of({3, 3, 1}));
    const ModelSnapshot all(m, GeometryScope::Everything());
    const ModelSnapshot none(m, GeometryScope::None());
    EXPECT_LT(none.ByteSize(), some.ByteSize());
    EXPECT_LT(some.ByteSize(), all.ByteSize());

    m.Sub(1).Vertices[0].Position.X += 5.0f;
    m.Sub(3).Faces[0].Normal = {1, 0, 0};
    ASSERT_TRUE(some.Restore(m));
    EXPECT_EQ(Bytes(m), before);

    ASSERT_EQ(ScaleModel(m, 300.0f), ScaleResult::Done);
    ASSERT_TRUE(all.Restore(m));
    EXPECT_EQ(Bytes(m), before);

    // Geometry outside the scope is the model's own: an edit there is not undone.
    m.Sub(0).Vertices[0].Position.Y = 9.0f;
    ASSERT_TRUE(none.Restore(m));
    EXPECT_EQ(m.Sub(0).Vertices[0].Position.Y, 9.0f);
}

TEST(SnapshotTest, RefusesAModelWithOtherRecords) {
    ModelData m = Fixture();
    const ModelSnapshot snapshot(m, GeometryScope::None());
    ModelData other = test::ModelWithParents({-1});
    EXPECT_FALSE(snapshot.Restore(other));
    EXPECT_EQ(other.SubObjects.size(), 1u);
}

TEST(ConvertToPointTest, ASubObjectBecomesAPointAtItsBoxCentreInItsParentsFrame) {
    ModelData m = Fixture();
    SubObject& s = m.Sub(3);
    s.Parent = 0;
    s.Offset = {10, 0, 0};
    s.BoxMin = {-1, -2, -3};
    s.BoxMax = {3, 2, 1};
    s.Faces[0].Normal = {0, 0, 2};  // not unit length, as exporters leave them
    RebuildSaveOrder(m);
    const int made = ConvertSOBJToPNT(m, 3, PointType::ATCH);
    ASSERT_EQ(made, 0);
    const ModelPoint& p = m.AttachPoints[0];
    EXPECT_EQ(p.Parent, 0);
    EXPECT_FLOAT_EQ(p.Position.X, 11.0f);
    EXPECT_FLOAT_EQ(p.Position.Y, 0.0f);
    EXPECT_FLOAT_EQ(p.Position.Z, -1.0f);
    EXPECT_FLOAT_EQ(p.Normal.Z, 1.0f);
    EXPECT_EQ(GetArrayIndex(m, 3), -1);

    // Sub-objects with children or points, or without a parent, stay.
    EXPECT_EQ(ConvertSOBJToPNT(m, 1, PointType::ATCH), -1);  // owns a ground point
    EXPECT_EQ(ConvertSOBJToPNT(m, 0, PointType::ATCH), -1);  // top level
}

TEST(ConvertToPointTest, APointMovesToTheEndOfAnotherList) {
    ModelData m = Fixture();
    m.AttachPoints.push_back({0, {}, {}});
    ASSERT_EQ(ConvertPNTType(m, PointType::GPNT, 0, PointType::ATCH), 1);
    EXPECT_TRUE(m.GunPoints.empty());
    EXPECT_TRUE(m.Batteries[0].GunPoints.empty());  // gone from its battery too
    EXPECT_FLOAT_EQ(m.AttachPoints[1].Position.Z, 3.0f);
    EXPECT_EQ(ConvertPNTType(m, PointType::ATCH, 1, PointType::ATCH), -1);
    EXPECT_EQ(ConvertPNTType(m, PointType::ATCH, 7, PointType::GRND), -1);
    m.GroundPoints.resize(kMaxGroundPoints);
    EXPECT_EQ(ConvertPNTType(m, PointType::ATCH, 0, PointType::GRND), -1);
}

TEST(ConvertToPointTest, DeletingSelectsTheSlotBefore) {
    const ModelData m = test::ModelWithParents({-1, 0, 1, -1});
    EXPECT_EQ(SelectionAfterDelete(m, 0), -1);
    EXPECT_EQ(SelectionAfterDelete(m, 2), 1);
    EXPECT_EQ(SelectionAfterDelete(m, 3), 2);
}

}  // namespace
}  // namespace mw
