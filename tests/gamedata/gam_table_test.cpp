// Tables page by page: every page kind and version the game reads comes back byte for byte,
// a field set leaves every other field as it was, an edited page is what the game reads, and
// damaged tables are refused before anything is allocated for them.
#include "gamedata/gam_table.h"

#include <gtest/gtest.h>

#include "gamedata/gam_json.h"
#include "gamedata_writers.h"
#include "support/alloc_tracker.h"
#include "support/engine_pages.h"

namespace mw {
namespace {

using Json = nlohmann::ordered_json;

Bytes EveryKind() {
    GamWriter w;
    for (int v : {1, 4, 5, 6, 7})
        w.oldTexture("Lava " + std::to_string(v), "lava.ogf", v, v >= 6 ? 2 : 0);
    w.texture({"Hull", "hull.ogf", 1.0f, 0.0f, 0.0f, 0.0f, 0});
    w.sound("Laser Fire", "laser.wav");
    for (int v = 1; v <= 3; ++v)
        w.door("Door " + std::to_string(v), "door.oof", v);
    for (std::int16_t v = 14; v <= 27; ++v)
        w.object(
            ObjectPage("Robot " + std::to_string(v), {"r.oof", "r_med.oof", "r_lo.oof"}, 0, v));
    w.object(ObjectPage("Vauss", {"vauss.oof", "", ""}, 0, 24, kObjectPowerup));
    w.object(ObjectPage("Shield", {"shield.oof", "", ""}, 0, 27, kObjectPowerup));
    w.ship("Pyro-GL", "pyro.oof", 5);
    w.ship("Phoenix", "phoenix.oof", 6);
    for (int v = 6; v <= 8; ++v)
        w.weapon("Laser " + std::to_string(v), "laser.oof", 0, v);
    w.otherPage(8, 24);  // a megacell: kept as bytes
    w.otherPage(3, 10);  // an old robot page
    return w.bytes();
}

GamTable Read(const Bytes& bytes) {
    std::string error;
    auto table = ReadGamPages(bytes, error);
    EXPECT_TRUE(table.has_value()) << error;
    return table.value_or(GamTable{});
}

TEST(GamTable, EveryKindAndVersionReadsAndWritesTheSameBytes) {
    const Bytes bytes = EveryKind();
    const GamTable table = Read(bytes);
    ASSERT_EQ(table.Pages.size(), 5u + 1 + 1 + 3 + 14 + 2 + 2 + 3 + 2);
    EXPECT_EQ(WriteGamPages(table), bytes);
    for (const TablePage& p : table.Pages)
        EXPECT_EQ(p.ExtraBytes(), 0u) << p.Name();

    const auto& v5 = (*RecordAs<TextureRecord>(table.Pages[2].Record()));
    EXPECT_EQ(v5.OldSound, 12);
    EXPECT_EQ(v5.Sound, "");
    const auto& v6 = (*RecordAs<TextureRecord>(table.Pages[3].Record()));
    ASSERT_EQ(v6.Elements.size(), 2u);
    EXPECT_EQ(v6.Elements[1][7], 15);
    EXPECT_EQ(v6.OscillationValue, 9);
    EXPECT_EQ(v6.Palette[254], 254 * 3);
    EXPECT_EQ((*RecordAs<TextureRecord>(table.Pages[4].Record())).Sound, "Lava Sound");
    EXPECT_EQ((*RecordAs<DoorRecord>(table.Pages[7].Record())).HitPoints, 0);  // version 1
    EXPECT_EQ((*RecordAs<DoorRecord>(table.Pages[9].Record())).Module, "doormodule");
    const auto& robot = (*RecordAs<GenericRecord>(table.Pages[10].Record()));
    EXPECT_EQ(robot.Version, 14);
    EXPECT_EQ(robot.LowModel, "r_lo.oof");
    const auto& ship = (*RecordAs<ShipRecord>(table.Pages[27].Record()));
    EXPECT_EQ(ship.Weapons[0].Weapons[0], "Laser");
    EXPECT_EQ(ship.Weapons[0].Battery.Masks[0].Mask, 0x05);
    EXPECT_EQ(ship.Weapons[3].MaxAmmo, 30);
    EXPECT_EQ((*RecordAs<WeaponRecord>(table.Pages[30].Record())).FireImage, "laser.oof");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(table.Pages[31].Record()));
    EXPECT_EQ(FindPage(table, "PHOENIX"), 27);
}

TEST(GamTable, SettingAFieldKeepsEveryOther) {
    const GamTable table = Read(EveryKind());
    struct Case {
        int page;
        const char* path;
        const char* value;
    };
    for (const Case& c : {Case{23, "size", "12.5"}, Case{27, "batteries.0.weapons.1", "Vauss"},
                          Case{30, "fire_image", "laser2.oof"}, Case{5, "speed", "0.8"},
                          Case{6, "max_distance", "300"}}) {
        TablePage page = table.Pages[static_cast<std::size_t>(c.page)];
        const Json before = PageJson(page);
        ASSERT_EQ(SetPageField(page, c.path, c.value), "") << c.path;
        Json after = PageJson(page);
        // The changed field alone differs.
        Json changed = after;
        Json expected = before;
        std::string pointer = "/" + std::string(c.path);
        for (char& ch : pointer) {
            if (ch == '.') ch = '/';
        }
        expected[Json::json_pointer(pointer)] = changed[Json::json_pointer(pointer)];
        EXPECT_EQ(after, expected) << c.path;
        EXPECT_NE(before, after) << c.path;
        // What was written is what the game reads.
        const test::EngineTable engine = test::ReadAsEngine(page.Bytes);
        EXPECT_EQ(engine.Error, "") << c.path;
    }
}

TEST(GamTable, AnOlderPageIsWrittenInTheCurrentVersionWithTheGamesDefaults) {
    const GamTable table = Read(EveryKind());
    TablePage robot = table.Pages[12];  // version 16
    ASSERT_EQ((*RecordAs<GenericRecord>(robot.Record())).Version, 16);
    ASSERT_EQ(SetPageField(robot, "animation.standing.idle.to", "40"), "");
    const auto& g = (*RecordAs<GenericRecord>(robot.Record()));
    EXPECT_EQ(g.Version, 27);
    EXPECT_EQ(g.RespawnScalar, 1.0f);     // not in version 16: the game's default
    EXPECT_EQ(g.Score, 3 * g.HitPoints);  // older robots score three times their hit points
    EXPECT_EQ(g.Ai.BiasedFlightMax, 50.0f);
    EXPECT_EQ(g.Model, "r.oof");
    const test::EngineTable engine = test::ReadAsEngine(robot.Bytes);
    ASSERT_EQ(engine.Error, "");
    EXPECT_EQ(engine.Pages[0].Version, 27);
    EXPECT_EQ(engine.Pages[0].AnimTo[0][10], 40);
    // A field only the newer version has can be set on an older page.
    TablePage old = table.Pages[10];
    EXPECT_EQ(SetPageField(old, "respawn_scalar", "2"), "");
    // Powerups before version 25 get their ammo by name, as the game gives it.
    TablePage vauss = table.Pages[24];
    ASSERT_EQ(SetPageField(vauss, "size", "3"), "");
    EXPECT_EQ((*RecordAs<GenericRecord>(vauss.Record())).Ammo, 5000);

    // Any hit points: the score is what the game's 16 bits make of three times them (found by
    // the page fuzzer as an overflow).
    GamObjectPage tough = ObjectPage("Tough", {"t.oof", "", ""}, 0, 16);
    tough.HitPoints = -858964532;
    TablePage toughPage = Read(GamWriter().object(tough).bytes()).Pages[0];
    ASSERT_EQ(SetPageField(toughPage, "size", "2"), "");
    EXPECT_EQ((*RecordAs<GenericRecord>(toughPage.Record())).Score,
              static_cast<std::int16_t>(3 * std::int64_t{-858964532}));

    EXPECT_NE(SetPageField(robot, "no_such_field", "1"), "");
    EXPECT_NE(SetPageField(robot, "hit_points", "lots"), "");
    EXPECT_NE(SetPageField(robot, "type", "300"), "");  // a byte
    EXPECT_NE(SetPageField(robot, "version", "12"), "");
    TablePage megacell = table.Pages[31];
    EXPECT_NE(SetPageField(megacell, "name", "x"), "");
}

TEST(GamTable, DamagedTablesAreRefusedWithTheirPage) {
    GamWriter w;
    w.sound("Laser Fire", "laser.wav");
    const Bytes good = w.bytes();
    std::string error;
    auto refused = [&](const Bytes& b) {
        error.clear();
        return !ReadGamPages(b, error).has_value() && !error.empty();
    };
    Bytes cut(good.begin(), good.end() - 3);  // the length runs past the data
    EXPECT_TRUE(refused(cut));
    EXPECT_NE(error.find("runs past the end of the table"), std::string::npos) << error;
    Bytes version = good;
    version[5] = 9;  // sound pages have version 1
    EXPECT_TRUE(refused(version));
    EXPECT_NE(error.find("version 9"), std::string::npos) << error;
    Bytes shorter = good;
    shorter[1] -= 8;  // the fields now run past the page's length
    shorter.resize(shorter.size() - 8);
    EXPECT_TRUE(refused(shorter));
    GamWriter noEnd;
    noEnd.otherPage(7, 0);
    Bytes text = noEnd.bytes();
    for (const char c : {'\x01', '\x00', 'a', 'b'})
        text.push_back(static_cast<std::uint8_t>(c));
    text[1] = static_cast<std::uint8_t>(text.size() - 1);
    EXPECT_TRUE(refused(text));
    EXPECT_NE(error.find("has no end"), std::string::npos) << error;
    Bytes tiny{1, 2, 0, 0, 0};  // a length shorter than itself
    EXPECT_TRUE(refused(tiny));

    // A procedural count the page cannot hold is refused before anything is allocated.
    GamWriter procedural;
    procedural.oldTexture("Fire", "fire.ogf", 7, 1);
    Bytes many = procedural.bytes();
    const std::size_t countAt = many.size() - (8 + 11 + 4) - 2;
    many[countAt] = 0x40;  // 8000 elements: within the game's limit, past the data
    many[countAt + 1] = 0x1F;
    test::ResetLargestAllocation();
    EXPECT_TRUE(refused(many));
    EXPECT_LT(test::LargestAllocation(), 8000u * 8u);
}

}  // namespace
}  // namespace mw
