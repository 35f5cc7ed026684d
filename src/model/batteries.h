// Weapon batteries as the batteries panel lists them. An entry is a text: a turret by its
// sub-object's name, a gun point as "GPNT" and its index. A turret entry is found again by
// name, as the first sub-object in save-slot order with that name, so two turrets of the
// same name both stand for the first of them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/model_data.h"

namespace mw {

struct BatteryEntry {
    bool GunPoint = false;
    int Index = -1;  // the gun point, or the turret's sub-object
};

std::string GunPointEntryText(int g);

// Battery b's turrets, then its gun points, in list order.
std::vector<std::string> AssignedBatteryEntries(const ModelData& model, int b);
// The turrets (sub-objects with the turret property bit, in save-slot order) and gun points
// not in battery b; what belongs to another battery is still available.
std::vector<std::string> AvailableBatteryEntries(const ModelData& model, int b);

// Reads an entry of a list. The available list knows a gun point by its "GPNT" prefix, the
// assigned list by "GPNT" anywhere in the text; the index is the number after the fourth
// character. nullopt when no turret has the name.
std::optional<BatteryEntry> ParseBatteryEntry(const ModelData& model, std::string_view text,
                                              bool assignedList);

// Appends an empty battery; false at the limit.
bool AddWBAT(ModelData& model);
// Appends the entry to battery b; false when b does not exist, the entry is already in it,
// or its list is full.
bool AddToWBAT(ModelData& model, int b, const BatteryEntry& entry);
// Takes the entry out of battery b; false when it was not in it.
bool RemoveFromWBAT(ModelData& model, int b, const BatteryEntry& entry);

}  // namespace mw
