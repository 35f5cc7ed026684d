#include "model/game_check.h"

#include <algorithm>
#include <string_view>

#include "model/properties.h"
#include "model/text_codec.h"

namespace mw {
namespace {

// The numbers after the "=" of a property string, comma separated; a field without digits
// is no number.
std::vector<double> PropertyNumbers(std::string_view properties) {
    std::vector<double> numbers;
    const auto equals = properties.find('=');
    if (equals == std::string_view::npos) return numbers;
    std::string_view rest = properties.substr(equals + 1);
    while (true) {
        const auto comma = rest.find(',');
        const std::string_view field = rest.substr(0, comma);
        if (std::any_of(field.begin(), field.end(), [](char c) { return c >= '0' && c <= '9'; }))
            numbers.push_back(LeadingNumber(field.substr(field.find_first_not_of(' '))));
        if (comma == std::string_view::npos) break;
        rest = rest.substr(comma + 1);
    }
    return numbers;
}

class Checker {
  public:
    Checker(const ModelData& model, std::vector<Finding>& out) : m_(model), out_(out) {}

    void Run(const std::vector<bool>* textureResolved) {
        ModelWide();
        for (int k = 0; k < m_.SubObjectCount(); ++k)
            SubObjectRules(m_.Head(k));
        Points();
        Batteries();
        if (textureResolved != nullptr) Textures(*textureResolved);
    }

  private:
    Finding& Add(Severity level, const char* code, std::string message) {
        Finding& f = out_.emplace_back();
        f.Level = level;
        f.Code = code;
        f.Message = std::move(message);
        return f;
    }
    Finding& AddFor(int s, Severity level, const char* code, const std::string& message) {
        Finding& f =
            Add(level, code, "Sub-object '" + Utf8From1252(m_.Sub(s).Name) + "': " + message);
        f.SubObject = s;
        return f;
    }

    void ModelWide() {
        if (m_.SubObjectCount() > kGameMaxSubObjects) {
            Add(Severity::Error, "too-many-subobjects",
                "The model has " + std::to_string(m_.SubObjectCount()) +
                    " sub-objects; the game loads at most " + std::to_string(kGameMaxSubObjects) +
                    ".");
        }
        if (m_.Textures.size() > static_cast<std::size_t>(kGameMaxTextures)) {
            Add(Severity::Error, "too-many-textures",
                "The model uses " + std::to_string(m_.Textures.size()) +
                    " textures; the game loads at most " + std::to_string(kGameMaxTextures) + ".");
        }
        if (m_.Special) {
            NameAndProperty(-1, m_.Special->Name, m_.Special->Properties, "The special point");
        }
    }

    void NameAndProperty(int s, const std::string& name, const std::string& properties,
                         const std::string& what) {
        if (name.size() > static_cast<std::size_t>(kGameMaxNameLength)) {
            Finding& f = Add(Severity::Error, "name-too-long",
                             what + " has a name of " + std::to_string(name.size()) +
                                 " characters; the game takes at most " +
                                 std::to_string(kGameMaxNameLength) + ".");
            f.SubObject = s;
        }
        if (properties.size() > static_cast<std::size_t>(kGameMaxPropertyLength)) {
            Finding& f =
                Add(Severity::Error, "property-too-long",
                    what + " has a property string of " + std::to_string(properties.size()) +
                        " characters; the game takes at most " +
                        std::to_string(kGameMaxPropertyLength) + ".");
            f.SubObject = s;
        }
    }

    void SubObjectRules(int s) {
        const SubObject& sub = m_.Sub(s);
        NameAndProperty(s, sub.Name, sub.Properties,
                        "Sub-object '" + Utf8From1252(sub.Name.substr(0, 40)) + "'");
        if (sub.Vertices.size() > static_cast<std::size_t>(kGameMaxVertices)) {
            AddFor(s, Severity::Error, "too-many-vertices",
                   std::to_string(sub.Vertices.size()) + " vertices; the game takes at most " +
                       std::to_string(kGameMaxVertices) + " in one sub-object.");
        }
        for (std::size_t i = 0; i < sub.Faces.size(); ++i) {
            const int corners = sub.Faces[i].VertexCount;
            if (corners < 1 || corners > kGameMaxFaceCorners) {
                AddFor(s, Severity::Error, "face-corners",
                       "face " + std::to_string(i) + " has " + std::to_string(corners) +
                           " corners; the game takes 1 to " + std::to_string(kGameMaxFaceCorners) +
                           ".");
                break;
            }
        }
        const std::uint32_t flags = sub.PropertyFlags;
        if ((flags & (kPropFacing | kPropGlow)) != 0) {
            const bool single =
                sub.Faces.size() == 1 && sub.Faces[0].VertexCount <= kGameMaxSingleFaceCorners;
            if (!single) {
                AddFor(s, Severity::Error, "single-face-required",
                       std::string((flags & kPropFacing) != 0 ? "a facing" : "a glow or thruster") +
                           " sub-object must hold exactly one face of at most " +
                           std::to_string(kGameMaxSingleFaceCorners) + " corners; it has " +
                           std::to_string(sub.Faces.size()) + " faces.");
            }
        }
        const std::vector<double> numbers = PropertyNumbers(sub.Properties);
        if ((flags & kPropGlow) != 0 && numbers.size() < 4) {
            AddFor(s, Severity::Error, "glow-values",
                   "the glow or thruster property needs red, green, blue and size (4 numbers); "
                   "it has " +
                       std::to_string(numbers.size()) + ".");
        }
        if ((flags & kPropFov) != 0) TurretValues(s, numbers);
        if ((flags & (kPropRotate | kPropFov)) != 0 && sub.Rot.Keys.empty()) {
            AddFor(s, Severity::Warning, "no-rotation-keys",
                   std::string((flags & kPropFov) != 0 ? "a turret" : "a rotator") +
                       " without rotation keys loses its property in the game.");
        }
    }

    void TurretValues(int s, const std::vector<double>& numbers) {
        if (numbers.size() < 3) {
            AddFor(s, Severity::Error, "turret-values",
                   "the turret property needs FOV, seconds per rotation and reaction time "
                   "(3 numbers); it has " +
                       std::to_string(numbers.size()) + ".");
            return;
        }
        struct Range {
            const char* what;
            double lo, hi;
        };
        const Range ranges[3] = {
            {"FOV", 0, 360}, {"seconds per rotation", 0, 60}, {"reaction time", 0, 10}};
        for (int i = 0; i < 3; ++i) {
            const double v = numbers[static_cast<std::size_t>(i)];
            if (v < ranges[i].lo || v > ranges[i].hi) {
                AddFor(s, Severity::Error, "turret-values",
                       std::string("the turret's ") + ranges[i].what + " " + PlainNumber(float(v)) +
                           " is outside " + PlainNumber(float(ranges[i].lo)) + " to " +
                           PlainNumber(float(ranges[i].hi)) + ".");
            }
        }
    }

    void Points() {
        const std::size_t atch = m_.AttachPoints.size(), nath = m_.AttachNormals.size();
        if (nath > atch) {
            // The loader writes every normal into the attach-point array.
            Finding& f = Add(Severity::Error, "attach-normals-overflow",
                             "The model has " + std::to_string(nath) + " attach normals but " +
                                 std::to_string(atch) +
                                 " attach points; the game writes the extra normals past its "
                                 "attach points and crashes.");
            f.Point = CheckPoint{PointType::NATH, static_cast<int>(atch)};
        } else if (nath > 0 && nath != atch) {
            Finding& f = Add(Severity::Warning, "attach-normals-unmatched",
                             "The model has " + std::to_string(nath) + " attach normals and " +
                                 std::to_string(atch) +
                                 " attach points; the game ignores the normals unless the "
                                 "counts are equal.");
            f.Point = CheckPoint{PointType::NATH, 0};
        }
    }

    void Batteries() {
        const int count = static_cast<int>(m_.Batteries.size());
        if (count > kGameMaxBatteries) {
            Add(Severity::Error, "too-many-batteries",
                "The model has " + std::to_string(count) +
                    " weapon batteries; the game takes at "
                    "most " +
                    std::to_string(kGameMaxBatteries) + ".");
        }
        for (int b = 0; b < count; ++b) {
            const WeaponBattery& battery = m_.Batteries[static_cast<std::size_t>(b)];
            const std::string name = "Battery " + std::to_string(b + 1) + ": ";
            auto add = [&](const char* code, const std::string& message) -> Finding& {
                Finding& f = Add(Severity::Error, code, name + message);
                f.Battery = b;
                return f;
            };
            if (battery.Turrets.size() > static_cast<std::size_t>(kMaxBatteryEntries))
                add("battery-too-many-turrets",
                    std::to_string(battery.Turrets.size()) + " turrets; the game takes at most 8.");
            if (battery.GunPoints.size() > static_cast<std::size_t>(kMaxBatteryEntries))
                add("battery-too-many-gunpoints", std::to_string(battery.GunPoints.size()) +
                                                      " gun points; the game takes at most 8.");
            for (int s : battery.Turrets) {
                if (!m_.IsRecord(s)) {
                    add("battery-not-a-turret",
                        "sub-object " + std::to_string(s) + " does not exist.");
                } else if ((m_.Sub(s).PropertyFlags & kPropFov) == 0) {
                    add("battery-not-a-turret", "sub-object '" + Utf8From1252(m_.Sub(s).Name) +
                                                    "' is not a turret ($fov=).")
                        .SubObject = s;
                }
            }
            for (int g : battery.GunPoints) {
                if (g < 0 || g >= static_cast<int>(m_.GunPoints.size())) {
                    add("battery-missing-gunpoint",
                        "gun point " + std::to_string(g) + " does not exist.");
                }
            }
        }
    }

    void Textures(const std::vector<bool>& resolved) {
        for (std::size_t t = 0; t < m_.Textures.size() && t < resolved.size(); ++t) {
            if (resolved[t]) continue;
            const Texture& tex = m_.Textures[t];
            const std::string& name = tex.Name.empty() ? tex.GameName : tex.Name;
            Finding& f = Add(Severity::Warning, "texture-unresolved",
                             "Texture '" + Utf8From1252(name) +
                                 "' is in none of the game data named; the game shows it "
                                 "as missing.");
            f.Texture = static_cast<int>(t);
            // A texture the game data lacks must come with a package: its image file name
            // (NAME.ogf) must be one the game loads, and distinct in what the game keeps.
            if (name.size() > kGameMaxTextureNameLength) {
                Finding& n = Add(Severity::Error, "texture-name-too-long",
                                 "Texture '" + Utf8From1252(name) + "' is longer than the " +
                                     std::to_string(kGameMaxTextureNameLength) +
                                     " characters the game loads a texture's image by.");
                n.Texture = static_cast<int>(t);
            }
            for (std::size_t u = 0; u < t; ++u) {
                if (resolved[u]) continue;
                const Texture& other = m_.Textures[u];
                const std::string& earlier = other.Name.empty() ? other.GameName : other.Name;
                if (earlier != name && earlier.size() >= kGameBitmapStemLength &&
                    name.size() >= kGameBitmapStemLength &&
                    LowerCase1252(earlier.substr(0, kGameBitmapStemLength)) ==
                        LowerCase1252(name.substr(0, kGameBitmapStemLength))) {
                    Finding& c =
                        Add(Severity::Error, "texture-names-collide",
                            "Textures '" + Utf8From1252(earlier) + "' and '" + Utf8From1252(name) +
                                "' agree in the first " + std::to_string(kGameBitmapStemLength) +
                                " characters, all the game keeps of an image's name.");
                    c.Texture = static_cast<int>(t);
                }
            }
        }
    }

    const ModelData& m_;
    std::vector<Finding>& out_;
};

}  // namespace

const char* SeverityName(Severity severity) {
    return severity == Severity::Error ? "error" : "warning";
}

std::vector<Finding> CheckModel(const ModelData& model, const std::vector<bool>* textureResolved) {
    std::vector<Finding> findings;
    Checker(model, findings).Run(textureResolved);
    return findings;
}

bool HasErrors(const std::vector<Finding>& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& f) { return f.Level == Severity::Error; });
}

}  // namespace mw
