// Each finding of the table, archive and model-page checks raised by a small case and not by
// a clean one.
#include "gamedata/table_check.h"

#include <gtest/gtest.h>

#include <set>

#include "gamedata/gam_json.h"
#include "gamedata/hog_writer.h"
#include "gamedata_writers.h"
#include "sample_model.h"

namespace mw {
namespace {

std::multiset<std::string> Codes(const std::vector<TableFinding>& findings) {
    std::multiset<std::string> codes;
    for (const TableFinding& f : findings)
        codes.insert(f.Code);
    return codes;
}

GamTable Read(const Bytes& bytes) {
    std::string error;
    auto table = ReadGamPages(bytes, error);
    EXPECT_TRUE(table.has_value()) << error;
    return table.value_or(GamTable{});
}

GamTable Clean() {
    GamWriter w;
    w.texture({"Hull", "hull.ogf", 1, 0, 0, 0, 0}).sound("Laser Fire", "laser.wav");
    w.door("Door", "door.oof", 1).ship("Pyro-GL", "pyro.oof").weapon("Laser", "laser.oof", 0);
    GamObjectPage robot = ObjectPage("Robot", {"robot.oof", "", ""}, 0);
    w.object(robot);
    GamTable t = Read(w.bytes());
    // The fixture's generic page names a script; the clean table names none.
    EXPECT_EQ(SetPageField(t.Pages[5], "script", ""), "");
    EXPECT_EQ(SetPageField(t.Pages[5], "module", ""), "");
    EXPECT_EQ(SetPageField(t.Pages[5], "script_override", ""), "");
    return t;
}

GamTable ManyPages(int n) {
    GamTable t;
    for (int i = 0; i < n; ++i) {
        SoundRecord s;
        s.Name = "Sound " + std::to_string(i);
        t.Pages.push_back(MakePage(s));
    }
    return t;
}

TEST(TableCheck, EachTableRuleHasACaseAndACleanTableHasNone) {
    EXPECT_EQ(Codes(CheckTable(Clean(), true)), std::multiset<std::string>{});

    struct Case {
        const char* code;
        std::function<void(GamTable&)> change;
    };
    const std::vector<Case> cases = {
        {"page-string-too-long",
         [](GamTable& t) { SetPageField(t.Pages[1], "file", std::string(35, 'f')); }},
        {"page-string-too-long",
         [](GamTable& t) { SetPageField(t.Pages[3], "model", std::string(31, 's') + ".oof"); }},
        {"bitmap-name-too-long",
         [](GamTable& t) { SetPageField(t.Pages[0], "bitmap", std::string(30, 'b') + ".ogf"); }},
        {"model-name-not-oof",
         [](GamTable& t) { SetPageField(t.Pages[5], "low_model", "robot.pof"); }},
        {"page-twice", [](GamTable& t) { t.Pages.push_back(t.Pages[4]); }},
        {"too-many-pages", [](GamTable& t) { t = ManyPages(1001); }},
        {"page-type-not-read",
         [](GamTable& t) {
             TablePage robot;  // an old robot page, kept as its bytes
             robot.Type = 3;
             robot.Bytes = {3, 4, 0, 0, 0};
             t.Pages.push_back(robot);
         }},
        {"page-length",
         [](GamTable& t) {
             Bytes b = t.Pages[1].Bytes;
             b.push_back(0);
             b[1] += 1;
             t.Pages[1] = Read(b).Pages[0];
         }},
        {"page-script", [](GamTable& t) { SetPageField(t.Pages[5], "module", "robotai"); }},
        {"page-script", [](GamTable& t) { SetPageField(t.Pages[2], "module", "doorai"); }},
        {"page-without-name", [](GamTable& t) { SetPageField(t.Pages[1], "name", ""); }},
    };
    for (const Case& c : cases) {
        GamTable t = Clean();
        c.change(t);
        const auto codes = Codes(CheckTable(t, true));
        EXPECT_EQ(codes.count(c.code), 1u) << c.code;
        EXPECT_EQ(codes.size(), 1u) << c.code << ": " << *codes.begin();
    }
    // Too many pages counts only for a mission's table.
    EXPECT_EQ(Codes(CheckTable(ManyPages(1000), true)), std::multiset<std::string>{});
    EXPECT_EQ(Codes(CheckTable(ManyPages(1001), false)), std::multiset<std::string>{});

    // A powerup the game's tables do not know does nothing when picked up.
    GamWriter game;
    game.object(ObjectPage("Shield", {"shield.oof", "", ""}, 0, 27, kObjectPowerup));
    const std::vector<NamedTable> gamePages{{"d3.hog", Read(game.bytes())}};
    GamTable powerups = Clean();
    SetPageField(powerups.Pages[5], "name", "Shield");
    powerups.Pages[5] = MakePage([&] {
        auto g = (*RecordAs<GenericRecord>(powerups.Pages[5].Record()));
        g.Type = kObjectPowerup;
        return PageRecord(g);
    }());
    EXPECT_EQ(Codes(CheckTable(powerups, true, gamePages)).size(), 0u);
    SetPageField(powerups.Pages[5], "name", "Mega Shield");
    EXPECT_EQ(Codes(CheckTable(powerups, true, gamePages)),
              std::multiset<std::string>{"new-powerup"});
}

TEST(TableCheck, ArchivesAsTheGameReadsThem) {
    const Bytes table = WriteGamPages(Clean());
    const Bytes image = WriteOGF(RgbaImage{2, 2, {0, 0, 0, 0}}, {121, 32, true, 1, "i", 0});
    const auto archive = [&](std::vector<HogFile> files, bool keepOrder = false) {
        if (!keepOrder) return BuildHOG(std::move(files), 0);
        std::vector<std::pair<std::string, Bytes>> raw;
        for (HogFile& f : files)
            raw.emplace_back(f.Name, std::move(f.Data));
        return WriteHOG(raw);
    };
    EXPECT_EQ(Codes(CheckArchive("Mine.mn3", archive({{"mine.gam", table}, {"hull.ogf", image}}))),
              std::multiset<std::string>{});
    EXPECT_EQ(Codes(CheckArchive("mine.mn3", archive({{"ship.gam", table}}))),
              std::multiset<std::string>{"table-name"});
    EXPECT_EQ(Codes(CheckArchive("mine.mn3", archive({{"hull.ogf", image}}))),
              std::multiset<std::string>{"no-table"});
    EXPECT_EQ(Codes(CheckArchive("pack.hog", archive({{"b.ogf", image}, {"A.ogf", image}}, true))),
              std::multiset<std::string>{"archive-order"});
    OgfOptions named{10, 32, true, 1, "named", 0};
    named.NamedTrueColour = true;
    const Bytes old = WriteOGF(RgbaImage{2, 2, {1, 2, 3, 4}}, named);
    EXPECT_EQ(Codes(CheckArchive("pack.hog", archive({{"old.ogf", old}}))),
              std::multiset<std::string>{"image-header"});
    Bytes broken = image;
    broken[2] = 125;
    EXPECT_EQ(Codes(CheckArchive("pack.hog", archive({{"x.ogf", broken}}))),
              std::multiset<std::string>{"image-unreadable"});
    EXPECT_EQ(Codes(CheckArchive("pack.hog", archive({{std::string(30, 'n') + ".ogf", image}}))),
              std::multiset<std::string>{"bitmap-name-too-long"});
    // The table inside is checked too.
    GamTable twice = Clean();
    twice.Pages.push_back(twice.Pages[0]);
    EXPECT_EQ(Codes(CheckArchive("m.mn3", archive({{"m.gam", WriteGamPages(twice)}}))),
              std::multiset<std::string>{"page-twice"});
}

TEST(TableCheck, AModelAgainstThePagesThatNameIt) {
    const ModelData model = BuildSampleModel();  // frames 0 to 20, two batteries of 2 gun points
    GamWriter w;
    GamObjectPage page = ObjectPage("Cutter", {"Ship.OOF", "ship_med.oof", ""}, 0);
    page.IdleFrom = 2;
    page.IdleTo = 20;
    page.FirstWeapon = "Laser";
    page.FirstMask = 0x03;
    w.object(page).weapon("Laser", "laser.oof", 0).sound("object sound", "s.wav");
    w.ship("Other", "other.oof");  // names another model: not checked
    std::vector<NamedTable> tables{{"mission", Read(w.bytes())}};
    const auto has = [](const std::string& m) { return m == "ship_med.oof"; };
    EXPECT_EQ(Codes(CheckModelPages(model, "ship.oof", tables, has)), std::multiset<std::string>{});
    EXPECT_EQ(PagesNamingModel(tables, "SHIP.oof").size(), 1u);

    struct Case {
        const char* code;
        const char* path;
        const char* value;
    };
    for (const Case& c : {Case{"animation-range", "animation.flying.alert.to", "21"},
                          Case{"animation-range", "animation.standing.death.from", "-1"},
                          Case{"battery-mask-gunpoint", "batteries.0.masks.1.mask", "4"},
                          Case{"battery-not-in-model", "batteries.2.masks.0.mask", "1"},
                          Case{"weapon-undefined", "batteries.0.weapons.1", "Plasma"},
                          Case{"sound-undefined", "animation.standing.idle.sound", "Roar"},
                          Case{"detail-model-missing", "low_model", "ship_lo.oof"}}) {
        std::vector<NamedTable> changed = tables;
        ASSERT_EQ(SetPageField(changed[0].Table.Pages[0], c.path, c.value), "") << c.code;
        EXPECT_EQ(Codes(CheckModelPages(model, "ship.oof", changed, has)),
                  std::multiset<std::string>{c.code})
            << c.code;
    }
}

}  // namespace
}  // namespace mw
