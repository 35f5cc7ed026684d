// Pages of older versions brought to the current one as the game's reader brings them: the
// fields a version lacks set as the game sets them when it reads that version.
#include <algorithm>

#include "gamedata/file_names.h"
#include "gamedata/gam_table.h"

namespace mw {
namespace {

// What the game does to the fields an older page lacks, for a page written anew.
void Upgrade(GenericRecord& g) {
    if (g.Version < 16) {
        if (g.Ai.MaxVelocity > 0.0f) {
            g.Ai.Flags |= 1u << 25;  // avoid friends automatically
            g.Ai.AvoidFriendsDistance = std::max(g.Ai.CircleDistance / 10.0f, 4.0f);
        } else {
            g.Ai.AvoidFriendsDistance = 4.0f;
        }
    }
    if (g.Version < 24 && (g.Flags & 4u) &&
        (g.Type == kObjectRobot || (g.Type == kObjectBuilding && (g.Flags & 1u)))) {
        // Stored in the page's 16 bits as the game stores it.
        g.Score = static_cast<std::int16_t>(3 * static_cast<std::int64_t>(g.HitPoints));
    }
    if (g.Version < 25 && g.Type == kObjectPowerup) {
        struct Ammo {
            const char* Name;
            std::int16_t Count;
        };
        static constexpr Ammo kDefaults[] = {
            {"Vauss", 5000},     {"Napalm", 500},      {"MassDriver", 20},    {"Frag", 1},
            {"ImpactMortar", 1}, {"NapalmRocket", 1},  {"Cyclone", 1},        {"BlackShark", 1},
            {"Concussion", 1},   {"Homing", 1},        {"Smart", 1},          {"Mega", 1},
            {"Guided", 1},       {"4PackHoming", 4},   {"4PackConc", 4},      {"4PackFrag", 4},
            {"4PackGuided", 4},  {"Vauss clip", 1250}, {"MassDriverAmmo", 5}, {"NapalmTank", 100}};
        g.Ammo = 0;
        for (const Ammo& a : kDefaults) {
            if (EqualsIgnoringCase(g.Name, a.Name)) g.Ammo = a.Count;
        }
    }
    if (g.Version < 27) {
        for (DeathType& d : g.Deaths) {
            if ((d.Flags & 3u) != 1u) d.DelayMin = d.DelayMax = 0.0f;
        }
    }
}

void Upgrade(WeaponRecord& w) {
    if (w.Version < 7) {
        w.GenericDamage = w.PlayerDamage;
        w.ImpactGenericDamage = w.ImpactPlayerDamage;
    }
}

void Upgrade(TextureRecord& t) {
    if (EqualsIgnoringCase(std::string_view(t.DestroyBitmap).substr(0, 7), "INVALID"))
        t.DestroyBitmap.clear();
    if ((t.Flags & (1u << 24)) && t.Elements.empty()) t.Flags &= ~(1u << 24);
    if ((t.Flags & (1u << 24)) && t.Palette.size() != 255) t.Palette.resize(255);
}

template <typename R>
void Upgrade(R&) {}

}  // namespace

void UpgradeRecord(PageRecord& record) {
    VisitRecord(record, [&](auto& r) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
            Upgrade(r);
            r.Version = CurrentPageVersion(PageTypeOf(record));
        }
    });
}

}  // namespace mw
