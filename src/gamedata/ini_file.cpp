#include "gamedata/ini_file.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <sstream>

#include "gamedata/file_names.h"
#include "model/file_io.h"
#include "model/text_codec.h"

namespace mw {
namespace {

bool SameIgnoringCase(std::string_view a, std::string_view b) {
    return EqualsIgnoringCase(a, b);
}

std::string_view Trim(std::string_view s) {
    return TrimSpaces(s, " \t\r");
}

// The section name of a "[name]" line.
std::optional<std::string_view> SectionOf(std::string_view line) {
    const std::string_view t = Trim(line);
    if (t.size() < 2 || t.front() != '[') return std::nullopt;
    const auto close = t.find(']');
    if (close == std::string_view::npos) return std::nullopt;
    return Trim(t.substr(1, close - 1));
}

// Key and value of a "key=value" line.
std::optional<std::pair<std::string_view, std::string_view>> KeyOf(std::string_view line) {
    const std::string_view t = Trim(line);
    if (t.empty() || t.front() == ';' || t.front() == '[') return std::nullopt;
    const auto eq = t.find('=');
    if (eq == std::string_view::npos) return std::nullopt;
    return std::make_pair(Trim(t.substr(0, eq)), Trim(t.substr(eq + 1)));
}

}  // namespace

std::int32_t ProfileInt(std::string_view text) {
    text = Trim(text);
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    std::int64_t v = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        v = v * 10 + (text[i] - '0');
        if (v > 0xFFFFFFFFll) v = 0xFFFFFFFFll;
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(negative ? -v : v));
}

std::optional<float> ParseFloatText(std::string_view text) {
    std::string t(Trim(text));
    for (char& c : t) {
        if (c == ',') c = '.';
    }
    float v = 0;
    const auto r = std::from_chars(t.data(), t.data() + t.size(), v);
    if (t.empty() || r.ec != std::errc() || r.ptr != t.data() + t.size() || std::isnan(v)) {
        return std::nullopt;
    }
    return v;
}

std::string FloatText(float v) {
    char buf[48];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, r.ptr);
}

bool clsIniFile::Load() {
    lines_.clear();
    std::error_code ec;
    if (!std::filesystem::exists(path_, ec)) return true;
    std::ifstream in(path_, std::ios::binary);
    if (!in) return false;
    std::ostringstream text;
    text << in.rdbuf();
    SetText(text.str());
    return true;
}

bool clsIniFile::Save() const {
    const std::string text = Text();
    return WriteFileReplacing(
               path_, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()))
        .empty();
}

void clsIniFile::SetText(std::string_view text) {
    lines_.clear();
    std::size_t start = 0;
    while (start < text.size()) {
        auto end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string line(text.substr(start, end - start));
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines_.push_back(std::move(line));
        start = end + 1;
    }
}

std::string clsIniFile::Text() const {
    std::string out;
    for (const auto& line : lines_)
        out += line + "\n";
    return out;
}

std::optional<std::string> clsIniFile::Find(std::string_view section, std::string_view key) const {
    bool inSection = false;
    for (const auto& line : lines_) {
        if (auto s = SectionOf(line)) {
            inSection = SameIgnoringCase(*s, section);
        } else if (inSection) {
            if (auto kv = KeyOf(line); kv && SameIgnoringCase(kv->first, key)) {
                return std::string(kv->second);
            }
        }
    }
    return std::nullopt;
}

bool clsIniFile::WriteString(std::string_view section, std::string_view key,
                             std::string_view value) {
    const std::string newLine = std::string(key) + "=" + std::string(Trim(value));
    bool inSection = false;
    std::optional<std::size_t> sectionEnd;  // line after the last key line of the section
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (auto s = SectionOf(lines_[i])) {
            if (inSection) break;
            inSection = SameIgnoringCase(*s, section);
            if (inSection) sectionEnd = i + 1;
        } else if (inSection) {
            if (auto kv = KeyOf(lines_[i])) {
                if (SameIgnoringCase(kv->first, key)) {
                    lines_[i] = newLine;
                    return true;
                }
                sectionEnd = i + 1;
            } else if (!Trim(lines_[i]).empty()) {
                sectionEnd = i + 1;  // a comment belongs to the section too
            }
        }
    }
    if (sectionEnd) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(*sectionEnd), newLine);
        return true;
    }
    lines_.push_back("[" + std::string(section) + "]");
    lines_.push_back(newLine);
    return true;
}

std::string clsIniFile::GetString(std::string_view section, std::string_view key,
                                  std::string_view def) const {
    auto v = Find(section, key);
    if (!v || v->empty()) return std::string(def);
    if (v->size() > 254) {
        std::size_t cut = 254;  // not inside a UTF-8 sequence
        while (cut > 0 && (static_cast<unsigned char>((*v)[cut]) & 0xC0) == 0x80)
            --cut;
        // Trimmed again, so that what is written back reads back the same.
        *v = std::string(Trim(std::string_view(*v).substr(0, cut)));
        if (v->empty()) return std::string(def);
    }
    return *v;
}

bool clsIniFile::WriteInt(std::string_view section, std::string_view key, std::int16_t value) {
    return WriteString(section, key, std::to_string(value));
}

std::int16_t clsIniFile::GetInt(std::string_view section, std::string_view key,
                                std::int16_t def) const {
    const auto v = Find(section, key);
    if (!v) return def;
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(ProfileInt(*v)));
}

bool clsIniFile::WriteBoolean(std::string_view section, std::string_view key, bool value) {
    return WriteString(section, key, value ? "1" : "0");
}

bool clsIniFile::GetBoolean(std::string_view section, std::string_view key, bool def) const {
    const auto v = Find(section, key);
    const std::int32_t n = v ? ProfileInt(*v) : (def ? -1 : 0);
    return (n & 0xFFFF) != 0;
}

float clsIniFile::GetSingle(std::string_view section, std::string_view key, float def) const {
    const auto v = Find(section, key);
    if (!v) return def;
    return ParseFloatText(*v).value_or(def);
}

}  // namespace mw
