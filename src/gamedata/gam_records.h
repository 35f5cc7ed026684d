// The records of a GAM table's pages: every field the game's table loader reads from a
// texture, sound, door, generic object, ship or weapon page. Texts are Windows-1252 bytes, kept
// whole (the game keeps 34 characters of a page string; the check says so).
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace mw {

// Page types as the table stores them.
enum class PageType : std::uint8_t {
    Texture = 1,
    Weapon = 2,
    Robot = 3,    // no longer read by the game
    Powerup = 4,  // no longer read by the game
    Door = 5,
    Ship = 6,
    Sound = 7,
    Megacell = 8,
    Gamefile = 9,
    Generic = 10,
};

// The versions the game writes today.
inline constexpr std::int16_t kTexturePageCurrent = 7;
inline constexpr std::int16_t kSoundPageCurrent = 1;
inline constexpr std::int16_t kDoorPageCurrent = 3;
inline constexpr std::int16_t kGenericPageCurrent = 27;
inline constexpr std::int16_t kShipPageCurrent = 6;
inline constexpr std::int16_t kWeaponPageCurrent = 8;

inline constexpr int kMovementClasses = 5;
inline constexpr int kAnimStates = 24;
inline constexpr int kPageBatteries = 21;
inline constexpr int kBatteryGunPoints = 8;
inline constexpr int kBatteryMasks = 8;
inline constexpr int kMaxDeathTypes = 4;
inline constexpr int kMaxProcElements = 8000;

// Object types of a generic page.
inline constexpr std::uint8_t kObjectRobot = 2;
inline constexpr std::uint8_t kObjectPowerup = 7;
inline constexpr std::uint8_t kObjectClutter = 11;
inline constexpr std::uint8_t kObjectBuilding = 16;

struct PhysicsBlock {
    float Mass = 0, Drag = 0, FullThrust = 0;
    std::uint32_t Flags = 0;
    float RotDrag = 0, FullRotThrust = 0;
    std::int32_t Bounces = 0;
    float VelocityZ = 0;
    std::array<float, 3> RotVelocity{};
    float WiggleAmplitude = 0, WigglesPerSecond = 0, Restitution = 0, HitDieDot = 0;
    float MaxTurnrollRate = 0, TurnrollRatio = 0;
};

struct LightingBlock {
    float Distance = 0, Red1 = 0, Green1 = 0, Blue1 = 0, TimeInterval = 0, FlickerDistance = 0;
    float DirectionalDot = 0, Red2 = 0, Green2 = 0, Blue2 = 0;
    std::uint32_t Flags = 0, TimeBits = 0;
    std::uint8_t Angle = 0, RenderType = 0;
};

struct FiringMask {
    std::uint8_t Mask = 0;  // bit g: gun point g of the battery fires
    float FireWait = 0, AnimTime = 0, AnimStart = 0, AnimFire = 0, AnimEnd = 0;
};

struct BatteryBlock {
    float EnergyUsage = 0, AmmoUsage = 0;
    std::array<std::int16_t, kBatteryGunPoints> GunWeapon{};
    std::array<FiringMask, kBatteryMasks> Masks{};
    std::uint8_t MaskCount = 0;
    std::int16_t AimingGunPoint = 0;
    std::uint8_t AimingFlags = 0;
    float Aiming3dDot = 0, Aiming3dDistance = 0, AimingXzDot = 0;
    std::uint16_t Flags = 0;
    std::uint8_t QuadFireMask = 0;
};

struct TextureRecord {
    std::int16_t Version = kTexturePageCurrent;
    std::string Name, Bitmap, DestroyBitmap;
    float Red = 0, Green = 0, Blue = 0, Alpha = 1, Speed = 1, SlideU = 0, SlideV = 0;
    float Reflectivity = 0.5f;
    std::uint8_t Corona = 0;
    std::int32_t Damage = 0;
    std::uint32_t Flags = 0;
    // A procedural texture (flag 1 << 24) only.
    std::vector<std::uint16_t> Palette;  // 255 entries
    std::uint8_t Heat = 0, Light = 0, Thickness = 0;
    float EvaluationTime = 0, OscillationTime = 0;
    std::uint8_t OscillationValue = 0;
    std::vector<std::array<std::uint8_t, 8>> Elements;
    std::int32_t OldSound = -1;  // versions 5 and 6 held a sound number the game ignores
    std::string Sound;
    float SoundVolume = 1;
};

struct SoundRecord {
    std::int16_t Version = kSoundPageCurrent;
    std::string Name, File;
    std::uint32_t Flags = 0;
    std::int32_t LoopStart = 0, LoopEnd = 0;
    float OuterConeVolume = 0;
    std::int32_t InnerConeAngle = 0, OuterConeAngle = 0;
    float MaxDistance = 0, MinDistance = 0, ImportVolume = 0;
};

struct DoorRecord {
    std::int16_t Version = kDoorPageCurrent;
    std::string Name, Model;
    float OpenTime = 0, CloseTime = 0, StayOpenTime = 0;
    std::uint8_t Flags = 0;
    std::int16_t HitPoints = 0;
    std::string OpenSound, CloseSound, Module;
};

struct AnimRange {
    std::int16_t From = 0, To = 0;
    float Speed = 0;  // seconds per cycle
};

struct Spew {
    std::uint8_t Flag = 0;
    float Percent = 0;
    std::int16_t Number = 0;
    std::string Name;
};

struct DeathType {
    std::uint32_t Flags = 0;
    float DelayMin = 0, DelayMax = 0;
    std::uint8_t Probability = 0;
};

struct AiBlock {
    std::uint32_t Flags = 0;
    std::uint8_t Class = 0, Type = 0, MovementType = 0, MovementSubtype = 0;
    float Fov = 0, MaxVelocity = 0, MaxDeltaVelocity = 0, MaxTurnRate = 0;
    std::uint32_t NotifyFlags = 0;
    float MaxDeltaTurnRate = 0, CircleDistance = 0, AttackVelPercent = 0, DodgePercent = 0;
    float DodgeVelPercent = 0, FleeVelPercent = 0;
    std::array<float, 2> MeleeDamage{}, MeleeLatency{};
    float Curiosity = 0, NightVision = 0, FogVision = 0, LeadAccuracy = 0, LeadVariance = 0;
    float FireSpread = 0, FightTeam = 0, FightSame = 0, Aggression = 0, Hearing = 0;
    float Frustration = 0, Roaming = 0, LifePreservation = 0;
    float AvoidFriendsDistance = 4, BiasedFlightImportance = 0.5f, BiasedFlightMin = 10;
    float BiasedFlightMax = 50;
};

template <typename T>
using PerBattery = std::array<std::array<T, kBatteryGunPoints>, kPageBatteries>;
template <typename T>
using PerAnimation = std::array<std::array<T, kAnimStates>, kMovementClasses>;

struct GenericRecord {
    std::int16_t Version = kGenericPageCurrent;
    std::uint8_t Type = kObjectRobot;
    std::string Name, Model, MediumModel, LowModel;
    float ImpactSize = 0, ImpactTime = 0, Damage = 0;
    std::int16_t Score = 0;
    std::int16_t Ammo = 0;  // powerups only
    std::string Script, Module, ScriptOverride;
    bool HasDescription = false;
    std::string Description;
    std::string Icon;
    float MediumDistance = 75, LowDistance = 120;
    PhysicsBlock Physics;
    float Size = 0;
    LightingBlock Lighting;
    std::int32_t HitPoints = 0;
    std::uint32_t Flags = 0;
    AiBlock Ai;
    std::array<Spew, 2> Spews;
    PerAnimation<AnimRange> Animation{};
    std::array<BatteryBlock, kPageBatteries> Batteries{};
    PerBattery<std::string> Weapons;
    std::array<std::string, 2> Sounds;
    std::string OldThirdSound;  // before version 26
    std::array<std::string, 5> AiSounds;
    PerBattery<std::string> FireSounds;
    PerAnimation<std::string> AnimSounds;
    float RespawnScalar = 1;
    std::vector<DeathType> Deaths;
};

struct ShipWeapon {
    std::uint8_t FireFlags = 0;
    std::string FiringSound, ReleaseSound, SpewPowerup;
    std::int32_t MaxAmmo = 0;
    BatteryBlock Battery;
    std::array<std::string, kBatteryGunPoints> FireSounds;
    std::array<std::string, kBatteryMasks> Weapons;
};

struct ShipRecord {
    std::int16_t Version = kShipPageCurrent;
    std::string Name, Cockpit, HudConfig, Model, DyingModel, MediumModel, LowModel;
    float MediumDistance = 0, LowDistance = 0;
    PhysicsBlock Physics;
    float Size = 0, ArmorScalar = 0;
    std::uint32_t Flags = 0;
    std::array<ShipWeapon, kPageBatteries> Weapons;
};

struct WeaponRecord {
    std::int16_t Version = kWeaponPageCurrent;
    std::string Name, HudImage, FireImage, Particle;
    std::uint8_t ParticleCount = 0;
    float ParticleLife = 0, ParticleSize = 0;
    std::uint32_t Flags = 0;
    std::string Spawn;
    std::uint8_t SpawnCount = 0;
    std::string RobotSpawn, AlternateSpawn;
    std::uint8_t AlternateChance = 0;
    float GravityTime = 0, GravitySize = 0, HomingFov = 0, CustomSize = 0, Size = 0;
    float ThrustTime = 0;
    PhysicsBlock Physics;
    float TerrainDamageSize = 0;
    std::uint8_t TerrainDamageDepth = 0;
    float Alpha = 0;
    std::string ExplodeImage;
    float ExplodeTime = 0, ExplodeSize = 0, PlayerDamage = 0, GenericDamage = 0;
    float ImpactSize = 0, ImpactTime = 0, ImpactPlayerDamage = 0, ImpactGenericDamage = 0;
    float ImpactForce = 0, LifeTime = 0;
    LightingBlock Lighting;
    float RecoilForce = 0;
    std::array<std::string, 7> Sounds;
    std::string SmokeImage, ScorchImage;
    float ScorchSize = 0;
    std::string Icon;
};

// Weapon flags that make the fire image a bitmap or an animation instead of a model.
inline constexpr std::uint32_t kWeaponImageBitmap = 1u << 1;
inline constexpr std::uint32_t kWeaponImageVclip = 1u << 5;

// A record kept on the heap with the semantics of a value: a generic or ship page holds
// thousands of texts, and a table of thousands of pages would otherwise give every page the
// room of the largest record.
template <typename T>
class Boxed {
  public:
    Boxed() : p_(std::make_unique<T>()) {}
    Boxed(T value) : p_(std::make_unique<T>(std::move(value))) {}  // NOLINT: a value
    Boxed(const Boxed& other) : p_(std::make_unique<T>(*other.p_)) {}
    Boxed(Boxed&&) noexcept = default;
    Boxed& operator=(const Boxed& other) {
        if (this != &other) p_ = std::make_unique<T>(*other.p_);
        return *this;
    }
    Boxed& operator=(Boxed&&) noexcept = default;
    T& operator*() { return *p_; }
    const T& operator*() const { return *p_; }
    T* get() { return p_.get(); }
    const T* get() const { return p_.get(); }

  private:
    std::unique_ptr<T> p_;
};

using PageRecord = std::variant<std::monostate, TextureRecord, SoundRecord, DoorRecord,
                                Boxed<GenericRecord>, Boxed<ShipRecord>, WeaponRecord>;

namespace detail {
template <typename R>
struct Unboxed {
    using type = R;
};
template <typename R>
struct Unboxed<Boxed<R>> {
    using type = R;
};
template <typename R>
constexpr bool kBoxed = std::is_same_v<R, GenericRecord> || std::is_same_v<R, ShipRecord>;
}  // namespace detail

// The record as that kind, or nullptr.
template <typename R>
R* RecordAs(PageRecord& record) {
    if constexpr (detail::kBoxed<R>) {
        auto* boxed = std::get_if<Boxed<R>>(&record);
        return boxed != nullptr ? boxed->get() : nullptr;
    } else {
        return std::get_if<R>(&record);
    }
}
template <typename R>
const R* RecordAs(const PageRecord& record) {
    return RecordAs<R>(const_cast<PageRecord&>(record));
}

// Calls fn with the record itself (or std::monostate).
template <typename Fn>
decltype(auto) VisitRecord(PageRecord& record, Fn&& fn) {
    return std::visit(
        [&](auto& r) -> decltype(auto) {
            using R = std::decay_t<decltype(r)>;
            if constexpr (std::is_same_v<R, typename detail::Unboxed<R>::type>) {
                return fn(r);
            } else {
                return fn(*r);
            }
        },
        record);
}
template <typename Fn>
decltype(auto) VisitRecord(const PageRecord& record, Fn&& fn) {
    return VisitRecord(const_cast<PageRecord&>(record),
                       [&](auto& r) -> decltype(auto) { return fn(std::as_const(r)); });
}

}  // namespace mw
