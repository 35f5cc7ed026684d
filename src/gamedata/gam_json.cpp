#include "gamedata/gam_json.h"

#include <charconv>
#include <limits>
#include <vector>

#include "gamedata/gam_fields.h"
#include "model/text_codec.h"

namespace mw {
namespace {

using json = nlohmann::ordered_json;

// Builds the JSON of a record as its fields are visited.
class ToJson final : public FieldVisitor {
  public:
    explicit ToJson(json& root) { stack_.push_back(&root); }

    void BeginGroup(std::string_view key) override { Push(key, json::object()); }
    void EndGroup() override { stack_.pop_back(); }
    void BeginList(std::string_view key) override { Push(key, json::array()); }
    void EndList() override { stack_.pop_back(); }
    // A list item is a value, an object of fields or a list of its own, as its first use says.
    void BeginItem(int) override {
        stack_.back()->push_back(nullptr);
        stack_.push_back(&stack_.back()->back());
    }
    void EndItem() override { stack_.pop_back(); }
    void Byte(std::string_view k, std::uint8_t& v) override { Put(k, v); }
    void Short(std::string_view k, std::int16_t& v, bool) override { Put(k, v); }
    void UShort(std::string_view k, std::uint16_t& v, bool) override { Put(k, v); }
    void Int(std::string_view k, std::int32_t& v) override { Put(k, v); }
    void UInt(std::string_view k, std::uint32_t& v) override { Put(k, v); }
    void Float(std::string_view k, float& v) override { Put(k, static_cast<double>(v)); }
    void Text(std::string_view k, std::string& v) override { Put(k, Utf8From1252(v)); }
    void Flag(std::string_view k, bool& v) override { Put(k, v); }
    bool Count(std::string_view, std::size_t&, std::size_t, std::size_t) override { return true; }

  private:
    json& Slot(std::string_view key) {
        json& top = *stack_.back();
        if (key.empty()) return top;  // the item itself
        if (top.is_null()) top = json::object();
        return top[std::string(key)];
    }
    void Push(std::string_view key, json value) {
        json& slot = Slot(key);
        slot = std::move(value);
        stack_.push_back(&slot);
    }
    template <typename T>
    void Put(std::string_view key, T value) {
        Slot(key) = value;
    }
    std::vector<json*> stack_;
};

// Finds the one field a path names and sets it from text.
class SetField final : public FieldVisitor {
  public:
    SetField(std::string_view path, std::string_view value) : target_(path), value_(value) {}

    void BeginGroup(std::string_view key) override { path_.emplace_back(key); }
    void EndGroup() override { path_.pop_back(); }
    void BeginList(std::string_view key) override { BeginGroup(key); }
    void EndList() override { path_.pop_back(); }
    void BeginItem(int index) override { path_.push_back(std::to_string(index)); }
    void EndItem() override { path_.pop_back(); }
    void Byte(std::string_view k, std::uint8_t& v) override { Number(k, v); }
    void Short(std::string_view k, std::int16_t& v, bool) override { Number(k, v); }
    void UShort(std::string_view k, std::uint16_t& v, bool) override { Number(k, v); }
    void Int(std::string_view k, std::int32_t& v) override { Number(k, v); }
    void UInt(std::string_view k, std::uint32_t& v) override { Number(k, v); }
    void Float(std::string_view k, float& v) override {
        if (!Here(k)) return;
        float f = 0;
        const auto r = std::from_chars(value_.data(), value_.data() + value_.size(), f);
        if (r.ec != std::errc() || r.ptr != value_.data() + value_.size()) {
            error_ = "\"" + value_ + "\" is not a number.";
        } else {
            v = f;
        }
    }
    void Text(std::string_view k, std::string& v) override {
        if (!Here(k)) return;
        if (auto text = Cp1252FromUtf8Exact(value_)) {
            v = *text;
        } else {
            error_ =
                "\"" + value_ + "\" has a character the game's texts (Windows-1252) cannot hold.";
        }
    }
    void Flag(std::string_view k, bool& v) override {
        if (!Here(k)) return;
        if (value_ == "true" || value_ == "1") {
            v = true;
        } else if (value_ == "false" || value_ == "0") {
            v = false;
        } else {
            error_ = "\"" + value_ + "\" is not true or false.";
        }
    }
    bool Count(std::string_view, std::size_t&, std::size_t, std::size_t) override { return true; }

    bool found() const { return found_; }
    const std::string& error() const { return error_; }

  private:
    bool Here(std::string_view key) {
        std::string full;
        auto add = [&full](std::string_view part) {
            if (part.empty()) return;
            if (!full.empty()) full += '.';
            full += part;
        };
        for (const std::string& part : path_)
            add(part);
        add(key);
        if (full != target_) return false;
        found_ = true;
        return true;
    }
    template <typename T>
    void Number(std::string_view key, T& v) {
        if (!Here(key)) return;
        std::int64_t n = 0;
        std::string_view text = value_;
        int base = 10;
        if (text.starts_with("0x") || text.starts_with("0X")) {
            text.remove_prefix(2);
            base = 16;
        }
        const auto r = std::from_chars(text.data(), text.data() + text.size(), n, base);
        if (r.ec != std::errc() || r.ptr != text.data() + text.size() || text.empty()) {
            error_ = "\"" + value_ + "\" is not a whole number.";
        } else if (n < std::numeric_limits<T>::min() || n > std::numeric_limits<T>::max()) {
            error_ = "\"" + value_ + "\" is out of range for " + target_ + " (" +
                     std::to_string(std::numeric_limits<T>::min()) + " to " +
                     std::to_string(std::numeric_limits<T>::max()) + ").";
        } else {
            v = static_cast<T>(n);
        }
    }

    std::string target_;
    std::string value_;
    std::vector<std::string> path_;
    bool found_ = false;
    std::string error_;
};

// The generic page keeps its batteries' weapons and sounds, and its animations' sounds, in
// tables of their own; the JSON shows them where they belong.
void NestGeneric(json& j) {
    for (int b = 0; b < kPageBatteries; ++b) {
        j["batteries"][b]["weapons"] = j["weapons"][b];
        j["batteries"][b]["fire_sounds"] = j["fire_sounds"][b];
    }
    for (int c = 0; c < kMovementClasses; ++c) {
        for (int a = 0; a < kAnimStates; ++a) {
            j["animation"][kMovementClassKeys[c]][kAnimStateKeys[a]]["sound"] =
                j["animation_sounds"][kMovementClassKeys[c]][kAnimStateKeys[a]];
        }
    }
    j.erase("weapons");
    j.erase("fire_sounds");
    j.erase("animation_sounds");
}

// The path the field list uses for a path the JSON shows.
std::string FieldPath(const TablePage& page, std::string_view path) {
    if (!(RecordAs<GenericRecord>(page.Record()) != nullptr)) return std::string(path);
    std::vector<std::string> parts;
    for (std::size_t at = 0;;) {
        const auto dot = path.find('.', at);
        parts.emplace_back(path.substr(at, dot == std::string_view::npos ? dot : dot - at));
        if (dot == std::string_view::npos) break;
        at = dot + 1;
    }
    if (parts.size() == 4 && parts[0] == "batteries" &&
        (parts[2] == "weapons" || parts[2] == "fire_sounds")) {
        return parts[2] + "." + parts[1] + "." + parts[3];
    }
    if (parts.size() == 4 && parts[0] == "animation" && parts[3] == "sound")
        return "animation_sounds." + parts[1] + "." + parts[2];
    return std::string(path);
}

}  // namespace

json PageJson(const TablePage& page) {
    json j = json::object();
    j["kind"] = PageKindName(page.Type);
    if (std::holds_alternative<std::monostate>(page.Record())) {
        j["type"] = page.Type;
        j["length"] = page.Bytes.size() >= 5 ? page.Bytes.size() - 1 : 0;
        return j;
    }
    PageRecord copy = page.Record();
    ToJson out(j);
    VisitRecord(copy, [&](auto& r) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
            j["version"] = r.Version;
            VisitFields(r, out);
        }
    });
    if ((RecordAs<GenericRecord>(page.Record()) != nullptr)) NestGeneric(j);
    return j;
}

std::string SetPageField(TablePage& page, std::string_view path, std::string_view value) {
    if (std::holds_alternative<std::monostate>(page.Record()))
        return std::string("A ") + PageKindName(page.Type) +
               " page is kept as its bytes; its fields cannot be set.";
    if (path == "version" || path == "kind")
        return "The " + std::string(path) +
               " is not a field to set; an edited page is written in the current version.";
    // The page as the current version has it, so that fields an older one lacked can be set.
    PageRecord record = page.Record();
    UpgradeRecord(record);
    SetField setter(FieldPath(page, path), value);
    VisitRecord(record, [&](auto& r) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
            VisitFields(r, setter);
        }
    });
    if (!setter.found()) return "The page has no field \"" + std::string(path) + "\".";
    if (!setter.error().empty()) return setter.error();
    page = MakePage(std::move(record));
    return {};
}

}  // namespace mw
