// A model checked against the pages that make it a game object.
#include <set>

#include "gamedata/file_names.h"
#include "gamedata/gam_fields.h"
#include "gamedata/game_object.h"
#include "gamedata/table_check.h"
#include "model/text_codec.h"

namespace mw {
namespace {

struct Known {
    std::set<std::string> Weapons, Sounds;  // lower case
};

Known KnownNames(const std::vector<NamedTable>& tables) {
    Known k;
    for (const NamedTable& t : tables) {
        for (const TablePage& p : t.Table.Pages) {
            if (p.Type == 2) k.Weapons.insert(AsciiLower(p.Name()));
            if (p.Type == 7) k.Sounds.insert(AsciiLower(p.Name()));
        }
    }
    return k;
}

class ModelPageCheck {
  public:
    ModelPageCheck(const ModelData& model, const Known& known, std::vector<TableFinding>& out)
        : m_(model), known_(known), out_(out) {}

    void Animation(const GenericRecord& g, const std::string& where) {
        for (int c = 0; c < kMovementClasses; ++c) {
            for (int a = 0; a < kAnimStates; ++a) {
                const AnimRange& r =
                    g.Animation[static_cast<std::size_t>(c)][static_cast<std::size_t>(a)];
                if (!AnimRangeFits(r, m_)) {
                    Add(Severity::Error, "animation-range", where,
                        std::string("The ") + kMovementClassKeys[c] + " " + kAnimStateKeys[a] +
                            " animation runs from frame " + std::to_string(r.From) + " to " +
                            std::to_string(r.To) + "; the model's keys cover frames " +
                            std::to_string(m_.FrameMin) + " to " + std::to_string(m_.FrameMax) +
                            ".");
                }
            }
        }
    }

    void Battery(const BatteryBlock& b, const std::array<std::string, 8>& weapons, int index,
                 const std::string& where) {
        bool used = b.MaskCount > 0;
        for (const FiringMask& f : b.Masks)
            used = used || f.Mask != 0;
        for (const std::string& w : weapons)
            used = used || !w.empty();
        if (!used) return;
        const std::string battery = "Battery " + std::to_string(index);
        if (index >= static_cast<int>(m_.Batteries.size())) {
            Add(Severity::Error, "battery-not-in-model", where,
                battery + " fires, but the model has " + std::to_string(m_.Batteries.size()) +
                    " weapon batteries.");
            return;
        }
        const std::size_t guns = m_.Batteries[static_cast<std::size_t>(index)].GunPoints.size();
        for (std::size_t k = 0; k < b.Masks.size(); ++k) {
            const int g = FirstMissingGunPoint(b.Masks[k].Mask, guns);
            if (g >= 0) {
                Add(Severity::Error, "battery-mask-gunpoint", where,
                    battery + "'s firing mask " + std::to_string(k) + " fires gun point " +
                        std::to_string(g) + "; the model's battery has " + std::to_string(guns) +
                        ".");
            }
        }
        if (b.AimingFlags != 0 &&
            (b.AimingGunPoint < 0 || b.AimingGunPoint >= static_cast<int>(m_.GunPoints.size()))) {
            Add(Severity::Error, "battery-mask-gunpoint", where,
                battery + " aims with gun point " + std::to_string(b.AimingGunPoint) +
                    "; the model has " + std::to_string(m_.GunPoints.size()) + " gun points.");
        }
        if (!known_.Weapons.empty()) {
            for (const std::string& w : weapons) {
                if (!w.empty() && !known_.Weapons.contains(AsciiLower(w))) {
                    Add(Severity::Warning, "weapon-undefined", where,
                        battery + " fires \"" + Utf8From1252(w) +
                            "\", which no weapon page defines.");
                }
            }
        }
    }

    void Sound(const std::string& sound, const std::string& where) {
        if (sound.empty() || known_.Sounds.empty() || known_.Sounds.contains(AsciiLower(sound)))
            return;
        Add(Severity::Warning, "sound-undefined", where,
            "The sound \"" + Utf8From1252(sound) + "\" is defined by no sound page.");
    }

  private:
    void Add(Severity level, const char* code, const std::string& where, std::string message) {
        out_.push_back({level, code, where, std::move(message)});
    }
    const ModelData& m_;
    const Known& known_;
    std::vector<TableFinding>& out_;
};

}  // namespace

bool AnimRangeFits(const AnimRange& r, const ModelData& model) {
    if (r.From == 0 && r.To == 0) return true;
    return r.From >= model.FrameMin && r.To <= model.FrameMax && r.From <= r.To;
}

int FirstMissingGunPoint(std::uint8_t mask, std::size_t guns) {
    for (std::size_t g = guns; g < 8; ++g) {
        if (mask & (1u << g)) return static_cast<int>(g);
    }
    return -1;
}

std::vector<TableFinding> CheckModelPages(const ModelData& model, const std::string& modelFile,
                                          const std::vector<NamedTable>& tables,
                                          const std::function<bool(const std::string&)>& hasModel) {
    std::vector<TableFinding> out;
    const Known known = KnownNames(tables);
    ModelPageCheck check(model, known, out);
    for (const PageRef& ref : PagesNamingModel(tables, modelFile)) {
        const TablePage& page = tables[ref.Table].Table.Pages[ref.Page];
        const std::string where = PageLabel(page) + " in " + tables[ref.Table].Source;
        for (const std::string& other : PageModels(page)) {
            if (!EqualsIgnoringCase(other, modelFile) && !hasModel(other)) {
                out.push_back({Severity::Error, "detail-model-missing", where,
                               "The model \"" + Utf8From1252(other) +
                                   "\" the page names is in no archive of the game data."});
            }
        }
        if (const auto* g = RecordAs<GenericRecord>(page.Record())) {
            check.Animation(*g, where);
            for (int b = 0; b < kPageBatteries; ++b) {
                check.Battery(g->Batteries[static_cast<std::size_t>(b)],
                              g->Weapons[static_cast<std::size_t>(b)], b, where);
                for (const std::string& s : g->FireSounds[static_cast<std::size_t>(b)])
                    check.Sound(s, where);
            }
            for (const std::string& s : g->Sounds)
                check.Sound(s, where);
            for (const std::string& s : g->AiSounds)
                check.Sound(s, where);
            for (const auto& perClass : g->AnimSounds) {
                for (const std::string& s : perClass)
                    check.Sound(s, where);
            }
        } else if (const auto* s = RecordAs<ShipRecord>(page.Record())) {
            for (int b = 0; b < kPageBatteries; ++b) {
                const ShipWeapon& w = s->Weapons[static_cast<std::size_t>(b)];
                check.Battery(w.Battery, w.Weapons, b, where);
                check.Sound(w.FiringSound, where);
                check.Sound(w.ReleaseSound, where);
                for (const std::string& fire : w.FireSounds)
                    check.Sound(fire, where);
            }
        }
    }
    return out;
}

}  // namespace mw
