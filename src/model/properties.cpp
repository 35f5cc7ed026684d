#include "model/properties.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "model/text_codec.h"

namespace mw {
namespace {

struct Keyword {
    std::string_view prefix;
    std::uint32_t flag;
};

// Compared in this order; the first keyword the key starts with decides.
constexpr std::array<Keyword, 19> kKeywords{{
    {"$rotate=", kPropRotate},
    {"$jitter", kPropJitter},
    {"$shell", kPropShell},
    {"$facing", kPropFacing},
    {"$frontface", kPropFrontFace},
    {"$thruster=", kPropGlow},
    {"$glow=", kPropGlow},
    {"$fov=", kPropFov},
    {"$monitor01", kPropMonitor01},
    {"$monitor02", kPropMonitor01 << 1},
    {"$monitor03", kPropMonitor01 << 2},
    {"$monitor04", kPropMonitor01 << 3},
    {"$monitor05", kPropMonitor01 << 4},
    {"$monitor06", kPropMonitor01 << 5},
    {"$monitor07", kPropMonitor01 << 6},
    {"$monitor08", kPropMonitor01 << 7},
    {"$viewer", kPropViewer},
    {"$layer", kPropLayer},
    {"$custom", kPropCustom},
}};

bool KeepInFilter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || c == '=' || c == ',' || c == '.' ||
           c == '$';
}

float Number(std::string_view text) {
    return static_cast<float>(LeadingNumber(text));
}

float Clamp(float v, float lo, float hi) {
    return v < lo ? lo : (v > hi ? hi : v);
}

void ParseGlow(SubObject& sub, std::string_view value) {
    sub.GlowColor = {0.0f, 0.0f, 0.0f};
    sub.GlowSize = 0.0f;
    const auto c1 = value.find(',');
    if (c1 == std::string_view::npos) return;
    sub.GlowColor[0] = Number(value.substr(0, c1));
    const auto c2 = value.find(',', c1 + 1);
    if (c2 == std::string_view::npos) return;
    sub.GlowColor[1] = Number(value.substr(c1 + 1, c2 - c1 - 1));
    const auto c3 = value.find(',', c2 + 1);
    if (c3 == std::string_view::npos) return;
    sub.GlowColor[2] = Number(value.substr(c2 + 1, c3 - c2 - 1));
    sub.GlowSize = Number(value.substr(c3 + 1));
}

void ParseFov(SubObject& sub, std::string_view value) {
    sub.FovValues = {1.0f, 1.0f, 10.0f};
    const auto c1 = value.find(',');
    if (c1 == std::string_view::npos) return;
    sub.FovValues[0] = Clamp(Number(value.substr(0, c1)), 0.0f, 360.0f);
    const auto c2 = value.find(',', c1 + 1);
    if (c2 == std::string_view::npos) return;
    sub.FovValues[1] = Clamp(Number(value.substr(c1 + 1, c2 - c1 - 1)), 0.1f, 60.0f);
    sub.FovValues[2] = Clamp(Number(value.substr(c2 + 1)), 0.0f, 10.0f);
}

}  // namespace

double LeadingNumber(std::string_view text) {
    std::size_t i = 0;
    auto digits = [&] {
        const std::size_t start = i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9')
            ++i;
        return i > start;
    };
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    bool any = digits();
    if (i < text.size() && text[i] == '.') {
        ++i;
        any = digits() || any;
    }
    if (!any) return 0.0;
    std::size_t end = i;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
        if (digits()) end = i;
    }
    const std::string number(text.substr(0, end));
    const double v = std::strtod(number.c_str(), nullptr);
    return std::isfinite(v) ? v : 0.0;
}

std::string PlainNumber(float v) {
    char buf[64];
    const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed);
    return std::string(buf, r.ptr);
}

bool ComposeProperties(SubObject& sub, std::uint32_t flag) {
    const Keyword* match = nullptr;
    for (const Keyword& k : kKeywords) {
        // "$thruster=" shares the glow bit; the panel always writes "$glow=".
        if (k.flag == flag && k.prefix != "$thruster=") {
            match = &k;
            break;
        }
    }
    if (match == nullptr) return false;
    sub.PropertyFlags = flag;
    sub.Properties = std::string(match->prefix);
    auto join = [](std::initializer_list<float> values) {
        std::string text;
        for (float v : values)
            text += (text.empty() ? "" : ",") + PlainNumber(v);
        return text;
    };
    if (flag == kPropRotate) {
        sub.Properties += PlainNumber(sub.RotateSpeed);
    } else if (flag == kPropGlow) {
        sub.Properties +=
            join({sub.GlowColor[0], sub.GlowColor[1], sub.GlowColor[2], sub.GlowSize});
    } else if (flag == kPropFov) {
        sub.Properties += join({sub.FovValues[0], sub.FovValues[1], sub.FovValues[2]});
    }
    return true;
}

void ParseProperties(SubObject& sub) {
    sub.Properties = LowerCase1252(TrimSpaces(sub.Properties));

    std::string filtered;
    for (char c : sub.Properties) {
        if (KeepInFilter(c)) filtered.push_back(c);
    }
    if (filtered.size() < 3) return;

    const auto eq = filtered.find('=');
    const std::string_view whole(filtered);
    const std::string_view key = eq == std::string_view::npos ? whole : whole.substr(0, eq + 1);
    const std::string_view value =
        eq == std::string_view::npos ? std::string_view{} : whole.substr(eq + 1);

    const Keyword* match = nullptr;
    for (const Keyword& k : kKeywords) {
        if (key.starts_with(k.prefix)) {
            match = &k;
            break;
        }
    }
    if (match == nullptr) {
        sub.PropertyFlags = 0;
        return;
    }
    sub.PropertyFlags |= match->flag;

    if (match->flag == kPropRotate) {
        float speed = Number(value);
        if (speed <= 0.0f) speed = 0.01f;
        if (speed > 20.0f) speed = 20.0f;
        sub.RotateSpeed = speed;
    } else if (match->flag == kPropGlow) {
        ParseGlow(sub, value);
    } else if (match->flag == kPropFov) {
        ParseFov(sub, value);
    }
}

}  // namespace mw
