#include "convert/gltf_common.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "model/text_codec.h"

namespace mw::gltf {
namespace {

double Element(const std::array<Vector3, 3>& c, int row, int column) {
    const Vector3& v = c[static_cast<std::size_t>(column)];
    return row == 0 ? v.X : row == 1 ? v.Y : v.Z;
}

struct Vec {
    double x, y, z;
};
Vec Cross(Vec a, Vec b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
double Dot(Vec a, Vec b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
std::optional<Vec> Unit(Vec v) {
    const double length = std::sqrt(Dot(v, v));
    if (!(length > 1e-12) || !std::isfinite(length)) return std::nullopt;
    return Vec{v.x / length, v.y / length, v.z / length};
}
Vector3 ToFloat(Vec v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

}  // namespace

Quaternion QuaternionFromColumns(const std::array<Vector3, 3>& c) {
    const double m00 = Element(c, 0, 0), m11 = Element(c, 1, 1), m22 = Element(c, 2, 2);
    const double trace = m00 + m11 + m22;
    Quaternion q;
    if (trace > 0.0) {
        const double s = 0.5 / std::sqrt(trace + 1.0);
        q = {(Element(c, 2, 1) - Element(c, 1, 2)) * s, (Element(c, 0, 2) - Element(c, 2, 0)) * s,
             (Element(c, 1, 0) - Element(c, 0, 1)) * s, 0.25 / s};
    } else if (m00 > m11 && m00 > m22) {
        const double s = 2.0 * std::sqrt(1.0 + m00 - m11 - m22);
        q = {0.25 * s, (Element(c, 0, 1) + Element(c, 1, 0)) / s,
             (Element(c, 0, 2) + Element(c, 2, 0)) / s, (Element(c, 2, 1) - Element(c, 1, 2)) / s};
    } else if (m11 > m22) {
        const double s = 2.0 * std::sqrt(1.0 + m11 - m00 - m22);
        q = {(Element(c, 0, 1) + Element(c, 1, 0)) / s, 0.25 * s,
             (Element(c, 1, 2) + Element(c, 2, 1)) / s, (Element(c, 0, 2) - Element(c, 2, 0)) / s};
    } else {
        const double s = 2.0 * std::sqrt(1.0 + m22 - m00 - m11);
        q = {(Element(c, 0, 2) + Element(c, 2, 0)) / s, (Element(c, 1, 2) + Element(c, 2, 1)) / s,
             0.25 * s, (Element(c, 1, 0) - Element(c, 0, 1)) / s};
    }
    const double n = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    if (!(n > 0.0) || !std::isfinite(n)) return {0.0, 0.0, 0.0, 1.0};
    for (double& e : q)
        e /= n;
    // One sign for the same rotation, so that equal orientations compare equal.
    if (q[3] < 0.0) {
        for (double& e : q)
            e = -e;
    }
    return q;
}

std::array<Vector3, 3> ColumnsFromQuaternion(const Quaternion& q) {
    const double x = q[0], y = q[1], z = q[2], w = q[3];
    const auto f = [](double d) { return static_cast<float>(d); };
    return {Vector3{f(1 - 2 * (y * y + z * z)), f(2 * (x * y + z * w)), f(2 * (x * z - y * w))},
            Vector3{f(2 * (x * y - z * w)), f(1 - 2 * (x * x + z * z)), f(2 * (y * z + x * w))},
            Vector3{f(2 * (x * z + y * w)), f(2 * (y * z - x * w)), f(1 - 2 * (x * x + y * y))}};
}

Quaternion QuaternionFromKeyMatrix(const Matrix4& m) {
    // The key matrices are made for OpenGL, which works in the mirrored space already:
    // element (row r, column c) of the rotation is at index 4c + r.
    return QuaternionFromColumns(
        {Vector3{m[0], m[1], m[2]}, Vector3{m[4], m[5], m[6]}, Vector3{m[8], m[9], m[10]}});
}

Quaternion PointOrientation(Vector3 direction, std::optional<Vector3> up) {
    const auto y = Unit({direction.X, direction.Y, direction.Z});
    if (!y) return {0.0, 0.0, 0.0, 1.0};
    std::optional<Vec> z;
    if (up) {
        // Local -Z along the up vector, made perpendicular to the direction.
        const Vec u{up->X, up->Y, up->Z};
        const double along = Dot(u, *y);
        z = Unit({-(u.x - along * y->x), -(u.y - along * y->y), -(u.z - along * y->z)});
    }
    if (!z) {
        // Any perpendicular: the world axis least along the direction.
        const Vec helper = std::fabs(y->z) < 0.9 ? Vec{0, 0, 1} : Vec{1, 0, 0};
        const Vec x0 = Cross(*y, helper);
        z = Unit(Cross(*Unit(x0), *y));
    }
    const Vec x = Cross(*y, *z);
    return QuaternionFromColumns({ToFloat(x), ToFloat(*y), ToFloat(*z)});
}

Quaternion PointRotation(const ModelData& model, PointType type, int index) {
    const auto i = static_cast<std::size_t>(index);
    std::optional<Vector3> up;
    if (type == PointType::ATCH && i < model.AttachNormals.size())
        up = Mirror(model.AttachNormals[i].Normal);
    return PointOrientation(Mirror(model.Points(type)[i].Normal), up);
}

std::string PointNodeName(PointType type, int index) {
    switch (type) {
        case PointType::GPNT:
            return "Gun_" + std::to_string(index);
        case PointType::ATCH:
            return "Attach_" + std::to_string(index);
        case PointType::GRND:
            return "Ground_" + std::to_string(index);
        case PointType::NATH:
            break;
    }
    return {};
}

std::optional<PointName> ParsePointNodeName(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, PointType>, 3> kPrefixes{
        {{"gun_", PointType::GPNT}, {"attach_", PointType::ATCH}, {"ground_", PointType::GRND}}};
    for (const auto& [prefix, type] : kPrefixes) {
        if (name.size() <= prefix.size()) continue;
        bool same = true;
        for (std::size_t i = 0; i < prefix.size(); ++i) {
            same = same && std::tolower(static_cast<unsigned char>(name[i])) == prefix[i];
        }
        if (!same) continue;
        std::string_view rest = name.substr(prefix.size());
        // A copy's suffix as 3-D tools add it: "Gun_0.001".
        if (const auto dot = rest.find('.'); dot != std::string_view::npos) {
            const std::string_view suffix = rest.substr(dot + 1);
            if (suffix.empty() ||
                suffix.find_first_not_of("0123456789") != std::string_view::npos) {
                return std::nullopt;
            }
            rest = rest.substr(0, dot);
        }
        int index = 0;
        const auto [end, ec] = std::from_chars(rest.data(), rest.data() + rest.size(), index);
        if (ec != std::errc() || end != rest.data() + rest.size() || index < 0) return std::nullopt;
        return PointName{type, index};
    }
    return std::nullopt;
}

float LinearFromByte(std::uint8_t c) {
    static const std::array<float, 256> table = [] {
        std::array<float, 256> t{};
        for (std::size_t i = 0; i < t.size(); ++i) {
            const double s = static_cast<double>(i) / 255.0;
            t[i] =
                static_cast<float>(s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4));
        }
        return t;
    }();
    return table[c];
}

std::uint8_t ByteFromLinear(float linear) {
    const double l = std::clamp(static_cast<double>(linear), 0.0, 1.0);
    const double s = l <= 0.0031308 ? l * 12.92 : 1.055 * std::pow(l, 1.0 / 2.4) - 0.055;
    return static_cast<std::uint8_t>(std::lround(s * 255.0));
}

const nlohmann::json& Member(const nlohmann::json& object, const char* key) {
    static const nlohmann::json kMissing;
    if (!object.is_object()) return kMissing;
    const auto found = object.find(key);
    return found == object.end() ? kMissing : *found;
}

int IntFrom(const nlohmann::json& j, int fallback) {
    constexpr double kLeast = std::numeric_limits<int>::min(),
                     kMost = std::numeric_limits<int>::max();
    if (j.is_number_unsigned()) {
        const auto v = j.get<std::uint64_t>();
        return v <= static_cast<std::uint64_t>(kMost) ? static_cast<int>(v) : fallback;
    }
    if (j.is_number_integer()) {
        const auto v = j.get<std::int64_t>();
        return v >= kLeast && v <= kMost ? static_cast<int>(v) : fallback;
    }
    if (j.is_number_float()) {
        const double v = j.get<double>();
        return v >= kLeast && v <= kMost && v == std::floor(v) ? static_cast<int>(v) : fallback;
    }
    return fallback;
}

bool BoolFrom(const nlohmann::json& j, bool fallback) {
    if (j.is_boolean()) return j.get<bool>();
    if (j.is_number()) return j.get<double>() != 0.0;
    return fallback;
}

std::string StringFrom(const nlohmann::json& j) {
    return j.is_string() ? j.get<std::string>() : std::string();
}

std::string Text1252(const nlohmann::json& object, const char* key) {
    return Cp1252FromUtf8(StringFrom(Member(object, key)));
}

nlohmann::json FloatJson(float f) {
    if (std::isfinite(f)) return static_cast<double>(f);
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", std::bit_cast<std::uint32_t>(f));
    return text;
}

float FloatFrom(const nlohmann::json& j) {
    if (j.is_number()) {
        // Beyond the range of a float is infinity, as a float would hold it.
        const double d = j.get<double>();
        constexpr double kMost = std::numeric_limits<float>::max();
        if (d > kMost) return std::numeric_limits<float>::infinity();
        if (d < -kMost) return -std::numeric_limits<float>::infinity();
        return static_cast<float>(d);
    }
    if (j.is_string()) {
        const std::string text = j.get<std::string>();
        std::uint32_t bits = 0;
        if (text.size() > 2 &&
            std::from_chars(text.data() + 2, text.data() + text.size(), bits, 16).ec ==
                std::errc()) {
            return std::bit_cast<float>(bits);
        }
    }
    return 0.0f;
}

nlohmann::json VectorJson(Vector3 v) {
    return nlohmann::json::array({FloatJson(v.X), FloatJson(v.Y), FloatJson(v.Z)});
}

Vector3 VectorFrom(const nlohmann::json& j) {
    if (!j.is_array() || j.size() != 3) return {};
    return {FloatFrom(j[0]), FloatFrom(j[1]), FloatFrom(j[2])};
}

void Fingerprint::Add(std::span<const std::uint8_t> bytes) {
    // FNV-1a steps over 64-bit words in four lanes (the tail byte by byte): fast enough for
    // whole meshes.
    constexpr std::uint64_t kPrime = 1099511628211ull;
    std::size_t i = 0;
    for (; i + 32 <= bytes.size(); i += 32) {
        std::uint64_t words[4];
        std::memcpy(words, bytes.data() + i, 32);
        for (std::size_t k = 0; k < 4; ++k) {
            lanes_[k] = (lanes_[k] ^ words[k]) * kPrime;
            lanes_[k] ^= lanes_[k] >> 29;
        }
    }
    for (; i < bytes.size(); ++i)
        lanes_[0] = (lanes_[0] ^ bytes[i]) * kPrime;
    lanes_[1] = (lanes_[1] ^ bytes.size()) * kPrime;
}

std::string BlockCheck(std::span<const std::uint8_t> bytes) {
    Fingerprint print;
    const std::size_t edge = std::min<std::size_t>(bytes.size(), 256);
    print.Add(bytes.first(edge));
    print.Add(bytes.last(edge));
    return print.Text();
}

std::string Fingerprint::Text() const {
    char text[20];
    std::uint64_t hash = 14695981039346656037ull;
    for (const std::uint64_t lane : lanes_)
        hash = ((hash ^ lane) * 1099511628211ull) ^ (lane >> 31);
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
    return text;
}

}  // namespace mw::gltf
