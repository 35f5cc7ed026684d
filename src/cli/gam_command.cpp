#include <ostream>

#include "cli/cli.h"
#include "cli/json_writer.h"
#include "gamedata/gam.h"
#include "gamedata/hog.h"
#include "model/file_io.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr const char* kGamUsage =
    "Usage: meshwright-cli gam dump SOURCE [--json]\n"
    "Prints the texture and object entries of a GAM table: a .gam file, or an archive that\n"
    "holds one (the last one of its directory, as the game-data index takes it).\n";

void Print(const clsGAM& gam, bool json, std::ostream& out) {
    if (!json) {
        out << "Textures: " << gam.Textures.size() << "\n";
        for (const auto& t : gam.Textures) {
            out << "  " << Utf8From1252(t.TexName) << "  ->  " << Utf8From1252(t.FileName)
                << "  flags 0x" << std::hex << t.Properties.GamFlags << std::dec << "\n";
        }
        out << "Objects: " << gam.Objects.size() << "\n";
        for (const auto& o : gam.Objects) {
            out << "  " << Utf8From1252(o.ObjName) << "  kind " << static_cast<int>(o.Kind) << "  "
                << Utf8From1252(o.Model1) << "\n";
        }
        return;
    }
    JsonWriter j;
    j.beginObject().key("textures").beginArray();
    for (const auto& t : gam.Textures) {
        const GamTextureProperties& p = t.Properties;
        j.beginObject().field("name", Utf8From1252(t.TexName));
        j.field("file", Utf8From1252(t.FileName)).field("alpha", p.Alpha());
        j.field("anim_time", p.AnimationTime()).field("slide_u", p.SlideTimeU());
        j.field("slide_v", p.SlideTimeV()).field("flags", static_cast<std::int64_t>(p.GamFlags));
        j.endObject();
    }
    j.endArray().key("objects").beginArray();
    for (const auto& o : gam.Objects) {
        j.beginObject().field("name", Utf8From1252(o.ObjName)).key("models").beginArray();
        j.value(Utf8From1252(o.Model1)).value(Utf8From1252(o.Model2));
        j.value(Utf8From1252(o.Model3)).endArray();
        j.field("kind", static_cast<int>(o.Kind)).endObject();
    }
    j.endArray().endObject();
    out << j.str() << "\n";
}

}  // namespace

int GamCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kGamUsage;
        return 0;
    }
    const bool json = args.size() == 3 && args[2] == "--json";
    if (args.size() < 2 || args[0] != "dump" || (args.size() == 3 && !json) || args.size() > 3) {
        err << kGamUsage;
        return kExitUsage;
    }
    const std::string& source = args[1];
    auto bytes = ReadFileBytes(source);
    if (!bytes) {
        err << "Cannot open " << source << "\n";
        return kExitNoInput;
    }
    clsGAM gam;
    std::vector<HogDirectoryEntry> entries;
    const HogStatus hog = ReadHogEntries(*bytes, entries);
    if (bytes->size() >= 4 && std::equal(bytes->begin(), bytes->begin() + 4, "HOG2")) {
        if (hog != HogStatus::Ok) {
            err << source << " is a damaged archive\n";
            return static_cast<int>(hog);
        }
        const HogDirectoryEntry* table = nullptr;
        for (const auto& e : entries) {
            if (std::string_view(HogEntryKind(e.Name)) == "table") table = &e;
        }
        if (table == nullptr) {
            err << "No GAM table in " << source << "\n";
            return kExitNoInput;
        }
        const std::size_t start = std::min<std::uint64_t>(table->Offset, bytes->size());
        const std::size_t length = std::min<std::uint64_t>(table->Length, bytes->size() - start);
        gam.ReadGamTable(std::span(*bytes).subspan(start, length), table->Offset, 1, nullptr);
    } else {
        gam.ReadGamTable(*bytes, 0, kGamSourceLoose, nullptr);
    }
    Print(gam, json, out);
    return 0;
}

}  // namespace mw
