#include "model/batteries.h"

#include <algorithm>

#include "model/properties.h"
#include "model/structure.h"

namespace mw {
namespace {

const WeaponBattery* FindBattery(const ModelData& model, int b) {
    if (b < 0 || b >= static_cast<int>(model.Batteries.size())) return nullptr;
    return &model.Batteries[static_cast<std::size_t>(b)];
}

bool Contains(const std::vector<std::int32_t>& list, int value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

}  // namespace

std::string GunPointEntryText(int g) {
    return "GPNT" + std::to_string(g);
}

std::vector<std::string> AssignedBatteryEntries(const ModelData& model, int b) {
    std::vector<std::string> entries;
    const WeaponBattery* battery = FindBattery(model, b);
    if (battery == nullptr) return entries;
    for (int s : battery->Turrets)
        entries.push_back(model.IsRecord(s) ? model.Sub(s).Name : std::string());
    for (int g : battery->GunPoints)
        entries.push_back(GunPointEntryText(g));
    return entries;
}

std::vector<std::string> AvailableBatteryEntries(const ModelData& model, int b) {
    std::vector<std::string> entries;
    const WeaponBattery* battery = FindBattery(model, b);
    if (battery == nullptr) return entries;
    for (int k = 0; k < model.SubObjectCount(); ++k) {
        const int s = model.Head(k);
        if ((model.Sub(s).PropertyFlags & kPropFov) != 0 && !Contains(battery->Turrets, s))
            entries.push_back(model.Sub(s).Name);
    }
    for (int g = 0; g < static_cast<int>(model.GunPoints.size()); ++g) {
        if (!Contains(battery->GunPoints, g)) entries.push_back(GunPointEntryText(g));
    }
    return entries;
}

std::optional<BatteryEntry> ParseBatteryEntry(const ModelData& model, std::string_view text,
                                              bool assignedList) {
    const bool gunPoint =
        assignedList ? text.find("GPNT") != std::string_view::npos : text.starts_with("GPNT");
    if (gunPoint) {
        // The number after "GPNT", kept within the int range.
        const double index = LeadingNumber(text.substr(std::min<std::size_t>(4, text.size())));
        return BatteryEntry{true, static_cast<int>(std::clamp(index, -1.0, 1e6))};
    }
    for (int k = 0; k < model.SubObjectCount(); ++k) {
        if (model.Sub(model.Head(k)).Name == text) return BatteryEntry{false, model.Head(k)};
    }
    return std::nullopt;
}

bool AddWBAT(ModelData& model) {
    if (static_cast<int>(model.Batteries.size()) >= kMaxBatteries) return false;
    model.Batteries.emplace_back();
    return true;
}

bool AddToWBAT(ModelData& model, int b, const BatteryEntry& entry) {
    if (FindBattery(model, b) == nullptr) return false;
    WeaponBattery& battery = model.Batteries[static_cast<std::size_t>(b)];
    auto& list = entry.GunPoint ? battery.GunPoints : battery.Turrets;
    const bool exists =
        entry.GunPoint ? entry.Index >= 0 && entry.Index < static_cast<int>(model.GunPoints.size())
                       : model.IsRecord(entry.Index);
    if (!exists || Contains(list, entry.Index) ||
        static_cast<int>(list.size()) >= kMaxBatteryEntries) {
        return false;
    }
    list.push_back(entry.Index);
    return true;
}

bool RemoveFromWBAT(ModelData& model, int b, const BatteryEntry& entry) {
    const WeaponBattery* battery = FindBattery(model, b);
    if (battery == nullptr ||
        !Contains(entry.GunPoint ? battery->GunPoints : battery->Turrets, entry.Index)) {
        return false;
    }
    if (entry.GunPoint) {
        RemoveSingleWBATGPNT(model, b, entry.Index);
    } else {
        RemoveSingleWBATturret(model, b, entry.Index);
    }
    return true;
}

}  // namespace mw
