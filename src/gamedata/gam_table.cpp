#include "gamedata/gam_table.h"

#include <algorithm>
#include <array>
#include <bit>

#include "gamedata/file_names.h"
#include "gamedata/gam_object_field_lists.h"
#include "model/byte_cursor.h"

namespace mw {
namespace {

// Fills a record from a page body, field by field as the game reads it.
class BytesIn final : public FieldVisitor {
  public:
    explicit BytesIn(std::span<const std::uint8_t> body) : r_(body) {}

    void BeginGroup(std::string_view) override {}
    void EndGroup() override {}
    void BeginList(std::string_view) override {}
    void EndList() override {}
    void BeginItem(int) override {}
    void EndItem() override {}
    void Byte(std::string_view, std::uint8_t& v) override { v = r_.u8(); }
    void Short(std::string_view, std::int16_t& v, bool wide = true) override {
        v = wide ? static_cast<std::int16_t>(r_.u16()) : r_.u8();
    }
    void UShort(std::string_view, std::uint16_t& v, bool wide = true) override {
        v = wide ? r_.u16() : r_.u8();
    }
    void Int(std::string_view, std::int32_t& v) override { v = r_.i32(); }
    void UInt(std::string_view, std::uint32_t& v) override { v = r_.u32(); }
    void Float(std::string_view, float& v) override { v = r_.f32(); }
    void Flag(std::string_view, bool& v) override { v = r_.u8() != 0; }
    void Text(std::string_view key, std::string& v) override {
        if (r_.ok() && !r_.nulText(v))
            Refuse("the text \"" + std::string(key) + "\" has no end within its page");
    }
    bool Count(std::string_view key, std::size_t& count, std::size_t most,
               std::size_t itemBytes) override {
        const auto n = static_cast<std::int16_t>(r_.u16());
        count = n < 0 ? 0 : static_cast<std::size_t>(n);
        if (count > most) {
            Refuse("its " + std::string(key) + " " + std::to_string(n) +
                   " is more than the game holds (" + std::to_string(most) + ")");
            return false;
        }
        if (!r_.canHold(static_cast<std::int64_t>(count), itemBytes)) {
            Refuse("its " + std::string(key) + " " + std::to_string(n) + " runs past its page");
            return false;
        }
        return r_.ok();
    }
    bool Reading() const override { return true; }
    void Refuse(std::string message) override {
        if (error_.empty()) error_ = std::move(message);
        r_.fail();
    }
    bool Failed() const override { return !r_.ok(); }

    ByteReader& reader() { return r_; }
    const std::string& error() const { return error_; }

  private:
    ByteReader r_;
    std::string error_;
};

// Writes a record's fields in the game's order.
class BytesOut final : public FieldVisitor {
  public:
    explicit BytesOut(ByteWriter& w) : w_(w) {}
    void BeginGroup(std::string_view) override {}
    void EndGroup() override {}
    void BeginList(std::string_view) override {}
    void EndList() override {}
    void BeginItem(int) override {}
    void EndItem() override {}
    void Byte(std::string_view, std::uint8_t& v) override { w_.u8(v); }
    void Short(std::string_view, std::int16_t& v, bool wide = true) override {
        if (wide) {
            w_.u16(static_cast<std::uint16_t>(v));
        } else {
            w_.u8(static_cast<std::uint8_t>(v));
        }
    }
    void UShort(std::string_view, std::uint16_t& v, bool wide = true) override {
        if (wide) {
            w_.u16(v);
        } else {
            w_.u8(static_cast<std::uint8_t>(v));
        }
    }
    void Int(std::string_view, std::int32_t& v) override { Four(static_cast<std::uint32_t>(v)); }
    void UInt(std::string_view, std::uint32_t& v) override { Four(v); }
    void Float(std::string_view, float& v) override { Four(std::bit_cast<std::uint32_t>(v)); }
    void Flag(std::string_view, bool& v) override { w_.u8(v ? 1 : 0); }
    void Text(std::string_view, std::string& v) override {
        // A text stops at its first NUL, as the game reads it.
        w_.raw(std::string_view(v).substr(0, v.find('\0')));
        w_.u8(0);
    }
    bool Count(std::string_view, std::size_t& count, std::size_t, std::size_t) override {
        w_.u16(static_cast<std::uint16_t>(count));
        return true;
    }

  private:
    // Four bytes, least significant first, in one append (a page holds thousands of numbers).
    void Four(std::uint32_t v) {
        const char bytes[4] = {static_cast<char>(v), static_cast<char>(v >> 8),
                               static_cast<char>(v >> 16), static_cast<char>(v >> 24)};
        w_.raw(std::string_view(bytes, 4));
    }

    ByteWriter& w_;
};

struct KindInfo {
    std::uint8_t Type;
    const char* Name;
    std::int16_t Current;
};
constexpr KindInfo kKinds[] = {{1, "texture", kTexturePageCurrent},
                               {2, "weapon", kWeaponPageCurrent},
                               {3, "robot", 0},
                               {4, "powerup", 0},
                               {5, "door", kDoorPageCurrent},
                               {6, "ship", kShipPageCurrent},
                               {7, "sound", kSoundPageCurrent},
                               {8, "megacell", 0},
                               {9, "gamefile", 0},
                               {10, "generic", kGenericPageCurrent}};

const KindInfo* Kind(std::uint8_t type) {
    for (const KindInfo& k : kKinds) {
        if (k.Type == type) return &k;
    }
    return nullptr;
}

// The empty record of a page type, made where it stays.
void SetEmptyRecord(std::uint8_t type, PageRecord& record) {
    switch (type) {
        case 1:
            record.emplace<TextureRecord>();
            break;
        case 2:
            record.emplace<WeaponRecord>();
            break;
        case 5:
            record.emplace<DoorRecord>();
            break;
        case 6:
            record.emplace<Boxed<ShipRecord>>();
            break;
        case 7:
            record.emplace<SoundRecord>();
            break;
        case 10:
            record.emplace<Boxed<GenericRecord>>();
            break;
        default:
            record.emplace<std::monostate>();
    }
}

template <typename R>
std::int16_t& VersionOf(R& r) {
    return r.Version;
}

std::string Where(std::size_t index, std::uint8_t type, std::size_t at) {
    return "Page " + std::to_string(index + 1) + " (" + PageKindName(type) + ", at byte " +
           std::to_string(at) + ")";
}

// Decodes a page body into `record`; an empty string when it read.
// Reads a page's fields into `record`. `fresh`: into a new record of the page's kind;
// otherwise into the one given when it is of that kind (a scratch record reused to check pages
// keeps the room of its texts; fields are read in order, so what a field depends on is read
// before it).
std::string DecodeBody(std::span<const std::uint8_t> body, std::uint8_t type, PageRecord& record,
                       std::size_t& used, bool fresh = true) {
    if (fresh || PageTypeOf(record) != type) SetEmptyRecord(type, record);
    if (std::holds_alternative<std::monostate>(record)) {
        used = body.size();
        return {};
    }
    BytesIn in(body);
    const auto version = static_cast<std::int16_t>(in.reader().u16());
    const std::int16_t current = Kind(type)->Current;
    if (!in.reader().ok()) return "it ends before its version";
    if (version < 1 || version > current) {
        return "its version " + std::to_string(version) + " is not one the game reads (1 to " +
               std::to_string(current) + ")";
    }
    VisitRecord(record, [&](auto& r) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
            VersionOf(r) = version;
            VisitFieldsOf(r, in);
        }
    });
    if (!in.error().empty()) return in.error();
    if (!in.reader().ok()) return "its fields run past its length";
    used = in.reader().pos();
    return {};
}

}  // namespace

const PageRecord& TablePage::Record() const {
    if (!decoded_) {
        // The page was checked when it was read: its fields decode.
        std::size_t used = 0;
        DecodeBody(std::span(Bytes).subspan(5), Type, record_, used);
        decoded_ = true;
    }
    return record_;
}

void TablePage::SetRecord(PageRecord record) {
    record_ = std::move(record);
    decoded_ = true;
}

const std::string& TablePage::Name() const {
    static const std::string kNone;
    return VisitRecord(Record(), [](const auto& r) -> const std::string& {
        if constexpr (std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
            return kNone;
        } else {
            return r.Name;
        }
    });
}

std::size_t TablePage::ExtraBytes() const {
    if (Edited || Bytes.size() < 5) return 0;
    return Bytes.size() - 5 - std::min(FieldBytes, Bytes.size() - 5);
}

std::optional<GamTable> ReadGamPages(std::span<const std::uint8_t> bytes, std::string& error) {
    GamTable table;
    // The pages are counted first, so that no page record (a generic page holds thousands of
    // texts) moves while the list grows.
    std::size_t count = 0;
    for (std::size_t at = 0; at + 5 <= bytes.size(); ++count) {
        const std::int32_t length =
            static_cast<std::int32_t>(bytes[at + 1] | bytes[at + 2] << 8 | bytes[at + 3] << 16 |
                                      static_cast<std::uint32_t>(bytes[at + 4]) << 24);
        if (length < 4) break;
        at += 1 + static_cast<std::size_t>(length);
    }
    table.Pages.reserve(count + 1);
    // Each page's fields are checked by reading them into a scratch record of its kind; its
    // own record is read when first asked for.
    std::array<PageRecord, 11> scratch;
    std::size_t at = 0;
    while (at < bytes.size()) {
        ByteReader r(bytes);
        r.seek(at);
        const std::uint8_t type = r.u8();
        const std::int32_t length = r.i32();
        if (!r.ok() || length < 4 || static_cast<std::size_t>(length) > bytes.size() - at - 1) {
            error = Where(table.Pages.size(), type, at) +
                    ": its length runs past the end of the table.";
            return std::nullopt;
        }
        const auto page = bytes.subspan(at, 1 + static_cast<std::size_t>(length));
        TablePage& p = table.Pages.emplace_back();
        p.Type = type;
        PageRecord& checked = type < scratch.size() ? scratch[type] : p.record_;
        if (std::string problem = DecodeBody(page.subspan(5), type, checked, p.FieldBytes, false);
            !problem.empty()) {
            error = Where(table.Pages.size() - 1, type, at) + ": " + problem + ".";
            return std::nullopt;
        }
        p.Bytes.assign(page.begin(), page.end());
        p.decoded_ = std::holds_alternative<std::monostate>(checked);
        at += page.size();
    }
    return table;
}

std::vector<std::uint8_t> EncodePage(const PageRecord& record) {
    ByteWriter w;
    w.reserve(RecordAs<GenericRecord>(record) || RecordAs<ShipRecord>(record) ? 8192 : 256);
    const std::uint8_t type = PageTypeOf(record);
    w.u8(type);
    w.i32(0);
    BytesOut out(w);
    const auto encode = [&](auto& r) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
            w.u16(static_cast<std::uint16_t>(r.Version));
            VisitFieldsOf(r, out);
        }
    };
    // The fields a version has depend on it: a record of another version is written as a
    // copy set to the current one. Writing only reads the fields, so a current record is
    // written as it is (a generic page holds thousands of texts: a copy each time costs).
    const std::int16_t current = CurrentPageVersion(type);
    const bool isCurrent = VisitRecord(record, [&](const auto& r) -> bool {
        if constexpr (std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
            return true;
        } else {
            return r.Version == current;
        }
    });
    if (isCurrent) {
        VisitRecord(const_cast<PageRecord&>(record), encode);
    } else {
        PageRecord copy = record;
        VisitRecord(copy, [&](auto& r) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(r)>, std::monostate>)
                r.Version = current;
            encode(r);
        });
    }
    w.patchI32(1, static_cast<std::int32_t>(w.size() - 1));
    return w.release();
}

TablePage MakePage(PageRecord record) {
    UpgradeRecord(record);
    TablePage p;
    p.Type = PageTypeOf(record);
    p.Bytes = EncodePage(record);
    p.FieldBytes = p.Bytes.size() - 5;
    p.SetRecord(std::move(record));
    p.Edited = true;
    return p;
}

std::vector<std::uint8_t> WriteGamPages(const GamTable& table) {
    std::size_t total = 0;
    for (const TablePage& p : table.Pages)
        total += p.Bytes.size();
    std::vector<std::uint8_t> bytes;
    bytes.reserve(total);
    for (const TablePage& p : table.Pages)
        bytes.insert(bytes.end(), p.Bytes.begin(), p.Bytes.end());
    return bytes;
}

std::uint8_t PageTypeOf(const PageRecord& record) {
    static constexpr std::uint8_t kTypes[] = {0, 1, 7, 5, 10, 6, 2};
    return kTypes[record.index()];
}

std::int16_t CurrentPageVersion(std::uint8_t type) {
    const KindInfo* k = Kind(type);
    return k != nullptr ? k->Current : 0;
}

const char* PageKindName(std::uint8_t type) {
    const KindInfo* k = Kind(type);
    return k != nullptr ? k->Name : "unknown";
}

int FindPage(const GamTable& table, std::string_view name) {
    for (std::size_t i = 0; i < table.Pages.size(); ++i) {
        const std::string& n = table.Pages[i].Name();
        if (!n.empty() && EqualsIgnoringCase(n, name)) return static_cast<int>(i);
    }
    return -1;
}

}  // namespace mw
