// The field lists of the texture, sound and door pages and of the blocks the object pages
// share (physics, lighting, weapon battery) as templates over the visitor, so that reading and
// writing bytes visit fields without a virtual call each; gam_fields.h gives them to any
// FieldVisitor. The object pages' lists are in gam_object_field_lists.h.
#pragma once

#include "gamedata/gam_fields.h"

namespace mw {

inline constexpr std::uint32_t kTexFlagProcedural = 1u << 24;

template <typename V>
inline void VisitPhysics(PhysicsBlock& p, V& v) {
    v.BeginGroup("physics");
    v.Float("mass", p.Mass);
    v.Float("drag", p.Drag);
    v.Float("full_thrust", p.FullThrust);
    v.UInt("flags", p.Flags);
    v.Float("rotational_drag", p.RotDrag);
    v.Float("full_rotational_thrust", p.FullRotThrust);
    v.Int("bounces", p.Bounces);
    v.Float("velocity", p.VelocityZ);
    v.BeginList("rotational_velocity");
    for (int i = 0; i < 3; ++i) {
        v.BeginItem(i);
        v.Float("", p.RotVelocity[static_cast<std::size_t>(i)]);
        v.EndItem();
    }
    v.EndList();
    v.Float("wiggle_amplitude", p.WiggleAmplitude);
    v.Float("wiggles_per_second", p.WigglesPerSecond);
    v.Float("restitution", p.Restitution);
    v.Float("hit_die_dot", p.HitDieDot);
    v.Float("max_turnroll_rate", p.MaxTurnrollRate);
    v.Float("turnroll_ratio", p.TurnrollRatio);
    v.EndGroup();
}

template <typename V>
inline void VisitLighting(LightingBlock& l, V& v) {
    v.BeginGroup("lighting");
    v.Float("distance", l.Distance);
    v.Float("red1", l.Red1);
    v.Float("green1", l.Green1);
    v.Float("blue1", l.Blue1);
    v.Float("time_interval", l.TimeInterval);
    v.Float("flicker_distance", l.FlickerDistance);
    v.Float("directional_dot", l.DirectionalDot);
    v.Float("red2", l.Red2);
    v.Float("green2", l.Green2);
    v.Float("blue2", l.Blue2);
    v.UInt("flags", l.Flags);
    v.UInt("time_bits", l.TimeBits);
    v.Byte("angle", l.Angle);
    v.Byte("render_type", l.RenderType);
    v.EndGroup();
}

template <typename V>
inline void VisitBattery(BatteryBlock& b, V& v, bool wideFlags) {
    v.Float("energy_usage", b.EnergyUsage);
    v.Float("ammo_usage", b.AmmoUsage);
    v.BeginList("gun_weapon_index");
    for (int g = 0; g < kBatteryGunPoints; ++g) {
        v.BeginItem(g);
        v.Short("", b.GunWeapon[static_cast<std::size_t>(g)]);
        v.EndItem();
    }
    v.EndList();
    v.BeginList("masks");
    for (int m = 0; m < kBatteryMasks; ++m) {
        FiringMask& f = b.Masks[static_cast<std::size_t>(m)];
        v.BeginItem(m);
        v.Byte("mask", f.Mask);
        v.Float("fire_wait", f.FireWait);
        v.Float("anim_time", f.AnimTime);
        v.Float("anim_start", f.AnimStart);
        v.Float("anim_fire", f.AnimFire);
        v.Float("anim_end", f.AnimEnd);
        v.EndItem();
    }
    v.EndList();
    v.Byte("mask_count", b.MaskCount);
    v.Short("aiming_gun_point", b.AimingGunPoint);
    v.Byte("aiming_flags", b.AimingFlags);
    v.Float("aiming_3d_dot", b.Aiming3dDot);
    v.Float("aiming_3d_distance", b.Aiming3dDistance);
    v.Float("aiming_xz_dot", b.AimingXzDot);
    v.UShort("flags", b.Flags, wideFlags);
    v.Byte("quad_fire_mask", b.QuadFireMask);
}

template <typename V>
inline void VisitFieldsOf(TextureRecord& r, V& v) {
    const int version = r.Version;
    v.Text("name", r.Name);
    v.Text("bitmap", r.Bitmap);
    v.Text("destroy_bitmap", r.DestroyBitmap);
    v.Float("red", r.Red);
    v.Float("green", r.Green);
    v.Float("blue", r.Blue);
    v.Float("alpha", r.Alpha);
    v.Float("speed", r.Speed);
    v.Float("slide_u", r.SlideU);
    v.Float("slide_v", r.SlideV);
    v.Float("reflectivity", r.Reflectivity);
    v.Byte("corona", r.Corona);
    v.Int("damage", r.Damage);
    v.UInt("flags", r.Flags);
    if (r.Flags & kTexFlagProcedural) {
        v.BeginGroup("procedural");
        if (v.Reading()) r.Palette.assign(255, 0);
        v.BeginList("palette");
        for (std::size_t i = 0; i < r.Palette.size(); ++i) {
            v.BeginItem(static_cast<int>(i));
            v.UShort("", r.Palette[i]);
            v.EndItem();
        }
        v.EndList();
        v.Byte("heat", r.Heat);
        v.Byte("light", r.Light);
        v.Byte("thickness", r.Thickness);
        v.Float("evaluation_time", r.EvaluationTime);
        if (version >= 6) {
            v.Float("oscillation_time", r.OscillationTime);
            v.Byte("oscillation_value", r.OscillationValue);
        }
        std::size_t count = r.Elements.size();
        if (!v.Count("element_count", count, kMaxProcElements, 8)) return;
        if (v.Reading()) r.Elements.resize(count);
        v.BeginList("elements");
        for (std::size_t i = 0; i < r.Elements.size(); ++i) {
            v.BeginItem(static_cast<int>(i));
            static constexpr const char* kElementKeys[8] = {"type", "frequency", "speed", "size",
                                                            "x1",   "y1",        "x2",    "y2"};
            for (std::size_t k = 0; k < 8; ++k)
                v.Byte(kElementKeys[k], r.Elements[i][k]);
            v.EndItem();
        }
        v.EndList();
        v.EndGroup();
    }
    if (version >= 5) {
        if (version < 7) {
            v.Int("old_sound", r.OldSound);
        } else {
            v.Text("sound", r.Sound);
        }
        v.Float("sound_volume", r.SoundVolume);
    }
}

template <typename V>
inline void VisitFieldsOf(SoundRecord& r, V& v) {
    v.Text("name", r.Name);
    v.Text("file", r.File);
    v.UInt("flags", r.Flags);
    v.Int("loop_start", r.LoopStart);
    v.Int("loop_end", r.LoopEnd);
    v.Float("outer_cone_volume", r.OuterConeVolume);
    v.Int("inner_cone_angle", r.InnerConeAngle);
    v.Int("outer_cone_angle", r.OuterConeAngle);
    v.Float("max_distance", r.MaxDistance);
    v.Float("min_distance", r.MinDistance);
    v.Float("import_volume", r.ImportVolume);
}

template <typename V>
inline void VisitFieldsOf(DoorRecord& r, V& v) {
    v.Text("name", r.Name);
    v.Text("model", r.Model);
    v.Float("open_time", r.OpenTime);
    v.Float("close_time", r.CloseTime);
    v.Float("stay_open_time", r.StayOpenTime);
    v.Byte("flags", r.Flags);
    if (r.Version >= 3) v.Short("hit_points", r.HitPoints);
    v.Text("open_sound", r.OpenSound);
    v.Text("close_sound", r.CloseSound);
    if (r.Version >= 2) v.Text("module", r.Module);
}

}  // namespace mw
