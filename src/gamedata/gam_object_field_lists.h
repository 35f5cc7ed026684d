// The field lists of the generic (robot, powerup, clutter, building), ship and weapon pages,
// in the game's order, with the fields each version adds; templates over the visitor like
// the other pages' lists.
#pragma once

#include "gamedata/gam_field_lists.h"

namespace mw {

// A table of one entry per movement class and animation state, as a group per class.
template <typename V, typename T, typename Fn>
inline void PerAnimationGroup(V& v, std::string_view key, PerAnimation<T>& table, Fn&& each) {
    v.BeginGroup(key);
    for (int c = 0; c < kMovementClasses; ++c) {
        v.BeginGroup(kMovementClassKeys[c]);
        for (int a = 0; a < kAnimStates; ++a)
            each(kAnimStateKeys[a],
                 table[static_cast<std::size_t>(c)][static_cast<std::size_t>(a)]);
        v.EndGroup();
    }
    v.EndGroup();
}

template <typename V>
inline void TextTable(V& v, std::string_view key, PerBattery<std::string>& names) {
    v.BeginList(key);
    for (int b = 0; b < kPageBatteries; ++b) {
        v.BeginItem(b);
        v.BeginList("");
        for (int g = 0; g < kBatteryGunPoints; ++g) {
            v.BeginItem(g);
            v.Text("", names[static_cast<std::size_t>(b)][static_cast<std::size_t>(g)]);
            v.EndItem();
        }
        v.EndList();
        v.EndItem();
    }
    v.EndList();
}

template <typename V, std::size_t N>
inline void TextList(V& v, std::string_view key, std::array<std::string, N>& names) {
    v.BeginList(key);
    for (std::size_t i = 0; i < N; ++i) {
        v.BeginItem(static_cast<int>(i));
        v.Text("", names[i]);
        v.EndItem();
    }
    v.EndList();
}

template <typename V>
inline void VisitAi(AiBlock& a, V& v, int version) {
    v.BeginGroup("ai");
    v.UInt("flags", a.Flags);
    v.Byte("class", a.Class);
    v.Byte("type", a.Type);
    v.Byte("movement_type", a.MovementType);
    v.Byte("movement_subtype", a.MovementSubtype);
    v.Float("fov", a.Fov);
    v.Float("max_velocity", a.MaxVelocity);
    v.Float("max_delta_velocity", a.MaxDeltaVelocity);
    v.Float("max_turn_rate", a.MaxTurnRate);
    v.UInt("notify_flags", a.NotifyFlags);
    v.Float("max_delta_turn_rate", a.MaxDeltaTurnRate);
    v.Float("circle_distance", a.CircleDistance);
    v.Float("attack_velocity_percent", a.AttackVelPercent);
    v.Float("dodge_percent", a.DodgePercent);
    v.Float("dodge_velocity_percent", a.DodgeVelPercent);
    v.Float("flee_velocity_percent", a.FleeVelPercent);
    v.Float("melee_damage1", a.MeleeDamage[0]);
    v.Float("melee_damage2", a.MeleeDamage[1]);
    v.Float("melee_latency1", a.MeleeLatency[0]);
    v.Float("melee_latency2", a.MeleeLatency[1]);
    v.Float("curiosity", a.Curiosity);
    v.Float("night_vision", a.NightVision);
    v.Float("fog_vision", a.FogVision);
    v.Float("lead_accuracy", a.LeadAccuracy);
    v.Float("lead_variance", a.LeadVariance);
    v.Float("fire_spread", a.FireSpread);
    v.Float("fight_team", a.FightTeam);
    v.Float("fight_same", a.FightSame);
    v.Float("aggression", a.Aggression);
    v.Float("hearing", a.Hearing);
    v.Float("frustration", a.Frustration);
    v.Float("roaming", a.Roaming);
    v.Float("life_preservation", a.LifePreservation);
    if (version >= 16) v.Float("avoid_friends_distance", a.AvoidFriendsDistance);
    if (version >= 17) {
        v.Float("biased_flight_importance", a.BiasedFlightImportance);
        v.Float("biased_flight_min", a.BiasedFlightMin);
        v.Float("biased_flight_max", a.BiasedFlightMax);
    }
    v.EndGroup();
}

template <typename V>
inline void VisitFieldsOf(GenericRecord& r, V& v) {
    const int version = r.Version;
    v.Byte("type", r.Type);
    v.Text("name", r.Name);
    v.Text("model", r.Model);
    v.Text("medium_model", r.MediumModel);
    v.Text("low_model", r.LowModel);
    v.Float("impact_size", r.ImpactSize);
    v.Float("impact_time", r.ImpactTime);
    v.Float("damage", r.Damage);
    v.Short("score", r.Score, version >= 24);
    if (r.Type == kObjectPowerup && version >= 25) v.Short("ammo", r.Ammo);
    v.Text("script", r.Script);
    if (version >= 18) v.Text("module", r.Module);
    if (version >= 19) v.Text("script_override", r.ScriptOverride);
    v.Flag("has_description", r.HasDescription);
    if (r.HasDescription) v.Text("description", r.Description);
    v.Text("icon", r.Icon);
    v.Float("medium_distance", r.MediumDistance);
    v.Float("low_distance", r.LowDistance);
    VisitPhysics(r.Physics, v);
    v.Float("size", r.Size);
    VisitLighting(r.Lighting, v);
    v.Int("hit_points", r.HitPoints);
    v.UInt("flags", r.Flags);
    VisitAi(r.Ai, v, version);
    v.BeginList("spews");
    for (int i = 0; i < 2; ++i) {
        Spew& s = r.Spews[static_cast<std::size_t>(i)];
        v.BeginItem(i);
        v.Byte("flag", s.Flag);
        v.Float("percent", s.Percent);
        v.Short("number", s.Number);
        v.Text("name", s.Name);
        v.EndItem();
    }
    v.EndList();
    PerAnimationGroup(v, "animation", r.Animation, [&](const char* key, AnimRange& a) {
        v.BeginGroup(key);
        v.Short("from", a.From, version >= 20);
        v.Short("to", a.To, version >= 20);
        v.Float("speed", a.Speed);
        v.EndGroup();
    });
    v.BeginList("batteries");
    for (int b = 0; b < kPageBatteries; ++b) {
        v.BeginItem(b);
        VisitBattery(r.Batteries[static_cast<std::size_t>(b)], v, version >= 15);
        v.EndItem();
    }
    v.EndList();
    TextTable(v, "weapons", r.Weapons);
    TextList(v, "sounds", r.Sounds);
    if (version < 26) v.Text("old_third_sound", r.OldThirdSound);
    TextList(v, "ai_sounds", r.AiSounds);
    TextTable(v, "fire_sounds", r.FireSounds);
    PerAnimationGroup(v, "animation_sounds", r.AnimSounds,
                      [&](const char* key, std::string& s) { v.Text(key, s); });
    if (version >= 21) v.Float("respawn_scalar", r.RespawnScalar);
    if (version >= 22) {
        std::size_t count = r.Deaths.size();
        if (!v.Count("death_count", count, kMaxDeathTypes, 13)) return;
        if (v.Reading()) r.Deaths.resize(count);
        v.BeginList("deaths");
        for (std::size_t i = 0; i < r.Deaths.size(); ++i) {
            DeathType& d = r.Deaths[i];
            v.BeginItem(static_cast<int>(i));
            v.UInt("flags", d.Flags);
            v.Float("delay_min", d.DelayMin);
            v.Float("delay_max", d.DelayMax);
            v.Byte("probability", d.Probability);
            v.EndItem();
        }
        v.EndList();
    }
}

template <typename V>
inline void VisitFieldsOf(ShipRecord& r, V& v) {
    v.Text("name", r.Name);
    v.Text("cockpit", r.Cockpit);
    v.Text("hud_config", r.HudConfig);
    v.Text("model", r.Model);
    v.Text("dying_model", r.DyingModel);
    v.Text("medium_model", r.MediumModel);
    v.Text("low_model", r.LowModel);
    v.Float("medium_distance", r.MediumDistance);
    v.Float("low_distance", r.LowDistance);
    VisitPhysics(r.Physics, v);
    v.Float("size", r.Size);
    v.Float("armor_scalar", r.ArmorScalar);
    v.UInt("flags", r.Flags);
    v.BeginList("batteries");
    for (int i = 0; i < kPageBatteries; ++i) {
        ShipWeapon& w = r.Weapons[static_cast<std::size_t>(i)];
        v.BeginItem(i);
        v.Byte("fire_flags", w.FireFlags);
        v.Text("firing_sound", w.FiringSound);
        v.Text("release_sound", w.ReleaseSound);
        v.Text("spew_powerup", w.SpewPowerup);
        v.Int("max_ammo", w.MaxAmmo);
        VisitBattery(w.Battery, v, r.Version >= 6);
        TextList(v, "fire_sounds", w.FireSounds);
        TextList(v, "weapons", w.Weapons);
        v.EndItem();
    }
    v.EndList();
}

template <typename V>
inline void VisitFieldsOf(WeaponRecord& r, V& v) {
    const int version = r.Version;
    v.Text("name", r.Name);
    v.Text("hud_image", r.HudImage);
    v.Text("fire_image", r.FireImage);
    v.Text("particle", r.Particle);
    v.Byte("particle_count", r.ParticleCount);
    v.Float("particle_life", r.ParticleLife);
    v.Float("particle_size", r.ParticleSize);
    v.UInt("flags", r.Flags);
    v.Text("spawn", r.Spawn);
    v.Byte("spawn_count", r.SpawnCount);
    v.Text("robot_spawn", r.RobotSpawn);
    v.Text("alternate_spawn", r.AlternateSpawn);
    v.Byte("alternate_chance", r.AlternateChance);
    v.Float("gravity_time", r.GravityTime);
    v.Float("gravity_size", r.GravitySize);
    v.Float("homing_fov", r.HomingFov);
    v.Float("custom_size", r.CustomSize);
    v.Float("size", r.Size);
    v.Float("thrust_time", r.ThrustTime);
    VisitPhysics(r.Physics, v);
    v.Float("terrain_damage_size", r.TerrainDamageSize);
    v.Byte("terrain_damage_depth", r.TerrainDamageDepth);
    v.Float("alpha", r.Alpha);
    v.Text("explode_image", r.ExplodeImage);
    v.Float("explode_time", r.ExplodeTime);
    v.Float("explode_size", r.ExplodeSize);
    v.Float("player_damage", r.PlayerDamage);
    if (version >= 7) v.Float("generic_damage", r.GenericDamage);
    v.Float("impact_size", r.ImpactSize);
    v.Float("impact_time", r.ImpactTime);
    v.Float("impact_player_damage", r.ImpactPlayerDamage);
    if (version >= 7) v.Float("impact_generic_damage", r.ImpactGenericDamage);
    v.Float("impact_force", r.ImpactForce);
    v.Float("life_time", r.LifeTime);
    VisitLighting(r.Lighting, v);
    if (version >= 8) v.Float("recoil_force", r.RecoilForce);
    TextList(v, "sounds", r.Sounds);
    v.Text("smoke_image", r.SmokeImage);
    v.Text("scorch_image", r.ScorchImage);
    v.Float("scorch_size", r.ScorchSize);
    v.Text("icon", r.Icon);
}

}  // namespace mw
