// Each of the game loader's limits, on the sample ship broken in exactly that one way.
#include "model/game_check.h"

#include <gtest/gtest.h>

#include <functional>

#include "model/geometry.h"
#include "model/properties.h"
#include "model/structure.h"
#include "sample_model.h"

namespace mw {
namespace {

struct Rule {
    const char* code;
    Severity level;
    std::function<void(ModelData&)> breakIt;
    int subObject = -1;
    int battery = -1;
};

void SetProperties(ModelData& m, int s, const char* text) {
    m.Sub(s).Properties = text;
    ParseProperties(m.Sub(s));
}

// Adds a copy of the wing (record 1, a leaf under the hull) n times.
void AddParts(ModelData& m, int n) {
    for (int i = 0; i < n; ++i) {
        SubObject copy = m.Sub(1);
        copy.Index = static_cast<int>(m.SubObjects.size());
        copy.Name = "copy" + std::to_string(i);
        m.SubObjects.push_back(copy);
        m.MergeTable.push_back({copy.Index});
    }
}

std::vector<Rule> Rules() {
    return {
        {"too-many-subobjects", Severity::Error, [](ModelData& m) { AddParts(m, 24); }},
        {"too-many-textures", Severity::Error,
         [](ModelData& m) { m.Textures.resize(35, m.Textures[0]); }},
        {"too-many-vertices", Severity::Error,
         [](ModelData& m) { m.Sub(2).Vertices.resize(2500, m.Sub(2).Vertices[0]); }, 2},
        {"face-corners", Severity::Error, [](ModelData& m) { m.Sub(0).Faces[3].VertexCount = 100; },
         0},
        {"single-face-required", Severity::Error,
         [](ModelData& m) { m.Sub(5).Faces.push_back(m.Sub(5).Faces[0]); }, 5},
        {"single-face-required", Severity::Error,
         [](ModelData& m) { SetProperties(m, 6, "$facing"); }, 6},
        {"glow-values", Severity::Error,
         [](ModelData& m) { SetProperties(m, 5, "$thruster=1,0.5,0"); }, 5},
        {"turret-values", Severity::Error, [](ModelData& m) { SetProperties(m, 3, "$fov=90,3"); },
         3},
        {"turret-values", Severity::Error,
         [](ModelData& m) { SetProperties(m, 3, "$fov=400,3,1"); }, 3},
        {"turret-values", Severity::Error,
         [](ModelData& m) { SetProperties(m, 3, "$fov=90,61,1"); }, 3},
        {"turret-values", Severity::Error,
         [](ModelData& m) { SetProperties(m, 3, "$fov=90,3,-0.5"); }, 3},
        {"no-rotation-keys", Severity::Warning, [](ModelData& m) { m.Sub(4).Rot.Keys.clear(); }, 4},
        {"no-rotation-keys", Severity::Warning, [](ModelData& m) { m.Sub(3).Rot.Keys.clear(); }, 3},
        {"attach-normals-overflow", Severity::Error,
         [](ModelData& m) { m.AttachNormals.push_back(m.AttachNormals[0]); }},
        {"attach-normals-unmatched", Severity::Warning,
         [](ModelData& m) { m.AttachPoints.push_back(m.AttachPoints[0]); }},
        {"name-too-long", Severity::Error,
         [](ModelData& m) { m.Sub(2).Name = std::string(32, 'w'); }, 2},
        {"property-too-long", Severity::Error,
         [](ModelData& m) { m.Sub(6).Properties = "$custom" + std::string(249, ' '); }, 6},
        {"too-many-batteries", Severity::Error, [](ModelData& m) { m.Batteries.resize(22); }},
        {"battery-too-many-turrets", Severity::Error,
         [](ModelData& m) { m.Batteries[1].Turrets.assign(9, 3); }, -1, 1},
        {"battery-too-many-gunpoints", Severity::Error,
         [](ModelData& m) { m.Batteries[0].GunPoints.assign(9, 0); }, -1, 0},
        {"battery-not-a-turret", Severity::Error,
         [](ModelData& m) { m.Batteries[0].Turrets.push_back(2); }, 2, 0},
        {"battery-missing-gunpoint", Severity::Error,
         [](ModelData& m) { m.Batteries[1].GunPoints.push_back(3); }, -1, 1},
    };
}

TEST(GameCheckTest, TheSamplePassesClean) {
    const ModelData sample = BuildSampleModel();
    EXPECT_TRUE(CheckModel(sample).empty());
    const std::vector<bool> resolved(sample.Textures.size(), true);
    EXPECT_TRUE(CheckModel(sample, &resolved).empty());
}

TEST(GameCheckTest, EachRuleReportsTheModelThatBreaksIt) {
    for (const Rule& rule : Rules()) {
        ModelData m = BuildSampleModel();
        rule.breakIt(m);
        const std::vector<Finding> found = CheckModel(m);
        std::string codes;
        for (const Finding& f : found)
            codes += f.Code + " ";
        ASSERT_EQ(found.size(), 1u) << rule.code << ": " << codes;
        const Finding& f = found.front();
        EXPECT_EQ(f.Code, rule.code);
        EXPECT_EQ(f.Level, rule.level) << rule.code;
        EXPECT_EQ(f.SubObject, rule.subObject) << rule.code;
        EXPECT_EQ(f.Battery, rule.battery) << rule.code;
        EXPECT_FALSE(f.Message.empty());
        EXPECT_EQ(HasErrors(found), rule.level == Severity::Error) << rule.code;
    }
}

TEST(GameCheckTest, LimitsAreReportedOnlyPastThem) {
    ModelData m = BuildSampleModel();
    AddParts(m, 23);  // exactly 30
    m.Textures.resize(34, m.Textures[0]);
    m.Sub(2).Vertices.resize(2499, m.Sub(2).Vertices[0]);
    m.Sub(2).Name = std::string(31, 'w');
    m.Sub(5).Faces[0].VertexCount = 30;
    m.Sub(5).Corners.resize(30, m.Sub(5).Corners[0]);
    m.Batteries.resize(21);
    SetProperties(m, 3, "$fov=360,60,10");
    EXPECT_TRUE(CheckModel(m).empty()) << CheckModel(m).front().Code;
}

TEST(GameCheckTest, UnresolvedTexturesAreNamedWhenGameDataIsGiven) {
    const ModelData m = BuildSampleModel();
    const std::vector<bool> resolved = {true, false, true};
    const std::vector<Finding> found = CheckModel(m, &resolved);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].Code, "texture-unresolved");
    EXPECT_EQ(found[0].Level, Severity::Warning);
    EXPECT_EQ(found[0].Texture, 1);
    EXPECT_NE(found[0].Message.find("ship_wing"), std::string::npos);
}

TEST(GameCheckTest, TextureNamesTheGameCannotLoadAnImageByAreErrors) {
    ModelData m = BuildSampleModel();
    m.Textures[1].Name = std::string(29, 'a');  // the longest that loads: clean
    const std::vector<bool> resolved = {true, false, true};
    ASSERT_EQ(CheckModel(m, &resolved).size(), 1u);  // texture-unresolved only
    m.Textures[1].Name = std::string(30, 'a');
    auto found = CheckModel(m, &resolved);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[1].Code, "texture-name-too-long");
    EXPECT_EQ(found[1].Texture, 1);
    // Names agreeing in the 28 characters the game keeps collide; a resolved one does not.
    m.Textures[1].Name = std::string(28, 'b') + "1";
    m.Textures[2].Name = std::string(28, 'B') + "2";
    const std::vector<bool> both = {true, false, false};
    found = CheckModel(m, &both);
    ASSERT_EQ(found.size(), 3u);
    EXPECT_EQ(found[2].Code, "texture-names-collide");
    EXPECT_EQ(found[2].Texture, 2);
    const std::vector<bool> one = {true, false, true};
    EXPECT_EQ(CheckModel(m, &one).size(), 1u);
    // Without game data nothing is said about names.
    EXPECT_TRUE(CheckModel(m).empty());
}

}  // namespace
}  // namespace mw
