// The field lists for any FieldVisitor, and the names of the animation states.
#include "gamedata/gam_object_field_lists.h"

namespace mw {

const char* const kMovementClassKeys[kMovementClasses] = {"standing", "flying", "rolling",
                                                          "walking", "jumping"};
const char* const kAnimStateKeys[kAnimStates] = {"alert",
                                                 "death",
                                                 "missile1",
                                                 "missile1_recoil",
                                                 "missile2",
                                                 "missile2_recoil",
                                                 "melee1",
                                                 "melee1_recoil",
                                                 "melee2",
                                                 "melee2_recoil",
                                                 "idle",
                                                 "quirk",
                                                 "flinch",
                                                 "taunt",
                                                 "to_idle_standing",
                                                 "to_idle_flying",
                                                 "to_idle_rolling",
                                                 "to_idle_walking",
                                                 "to_idle_jumping",
                                                 "to_alert_standing",
                                                 "to_alert_flying",
                                                 "to_alert_rolling",
                                                 "to_alert_walking",
                                                 "to_alert_jumping"};

void VisitFields(TextureRecord& r, FieldVisitor& v) {
    VisitFieldsOf(r, v);
}
void VisitFields(SoundRecord& r, FieldVisitor& v) {
    VisitFieldsOf(r, v);
}
void VisitFields(DoorRecord& r, FieldVisitor& v) {
    VisitFieldsOf(r, v);
}
void VisitFields(GenericRecord& r, FieldVisitor& v) {
    VisitFieldsOf(r, v);
}
void VisitFields(ShipRecord& r, FieldVisitor& v) {
    VisitFieldsOf(r, v);
}
void VisitFields(WeaponRecord& r, FieldVisitor& v) {
    VisitFieldsOf(r, v);
}

}  // namespace mw
