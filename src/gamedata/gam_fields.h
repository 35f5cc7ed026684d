// One description of each page's fields, in the order the game's loader reads them, that
// serves reading and writing the page's bytes, listing its fields and changing one by name.
// A visitor is handed every field with its name; groups and lists nest them. Fields that a
// version lacks are not visited when reading that version.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "gamedata/gam_records.h"

namespace mw {

class FieldVisitor {
  public:
    virtual ~FieldVisitor() = default;

    virtual void BeginGroup(std::string_view key) = 0;
    virtual void EndGroup() = 0;
    virtual void BeginList(std::string_view key) = 0;
    virtual void EndList() = 0;
    virtual void BeginItem(int index) = 0;
    virtual void EndItem() = 0;

    virtual void Byte(std::string_view key, std::uint8_t& v) = 0;
    // A 16-bit number that older versions stored in one byte (`wide` false).
    virtual void Short(std::string_view key, std::int16_t& v, bool wide = true) = 0;
    virtual void UShort(std::string_view key, std::uint16_t& v, bool wide = true) = 0;
    virtual void Int(std::string_view key, std::int32_t& v) = 0;
    virtual void UInt(std::string_view key, std::uint32_t& v) = 0;
    virtual void Float(std::string_view key, float& v) = 0;
    virtual void Text(std::string_view key, std::string& v) = 0;
    virtual void Flag(std::string_view key, bool& v) = 0;  // one byte, 0 or not

    // A 16-bit count of the list that follows, whose items take at least `itemBytes` each;
    // `count` is the list's size when writing and the count read (negative: none) when
    // reading. False refuses a count above `most` or one the bytes left cannot hold.
    virtual bool Count(std::string_view key, std::size_t& count, std::size_t most,
                       std::size_t itemBytes) = 0;

    // True when the visitor fills the record from bytes (fields missing from an older
    // version then keep the game's defaults).
    virtual bool Reading() const { return false; }
    // Stops the visit with a message (a reader refusing what it read).
    virtual void Refuse(std::string message) { (void)message; }
    virtual bool Failed() const { return false; }
};

// Visits every field of the record in the game's order for its version.
void VisitFields(TextureRecord& r, FieldVisitor& v);
void VisitFields(SoundRecord& r, FieldVisitor& v);
void VisitFields(DoorRecord& r, FieldVisitor& v);
void VisitFields(GenericRecord& r, FieldVisitor& v);
void VisitFields(ShipRecord& r, FieldVisitor& v);
void VisitFields(WeaponRecord& r, FieldVisitor& v);

// The names the game's editor gives the movement classes and animation states, as keys.
extern const char* const kMovementClassKeys[kMovementClasses];
extern const char* const kAnimStateKeys[kAnimStates];

}  // namespace mw
