// meshwright-cli hog create / add / remove: writing HOG2 archives.
#include <cstdlib>
#include <ostream>

#include "cli/cli.h"
#include "gamedata/hog_writer.h"

namespace mw {
namespace {

constexpr const char* kHogWriteUsage =
    "Usage: meshwright-cli hog create OUT.hog FILE...\n"
    "       meshwright-cli hog add ARCHIVE FILE...\n"
    "       meshwright-cli hog remove ARCHIVE NAME...\n"
    "Creates a HOG2 archive (.hog, .mn3) of files, adds files to one (a file whose name is\n"
    "there already, ignoring case, replaces that entry) or removes entries by name. The\n"
    "directory is kept sorted by name, as the game's lookup needs. Entries carry the time\n"
    "SOURCE_DATE_EPOCH gives, else 0, so the same files give the same archive. Nothing is\n"
    "written when a name is too long (35 characters), two names differ only in case, or a\n"
    "file cannot be read.\n";

void Report(const char* verb, const std::vector<std::string>& names, std::ostream& out) {
    for (const std::string& name : names)
        out << verb << " " << name << "\n";
}

}  // namespace

int HogWriteCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kHogWriteUsage;
        return 0;
    }
    if (args.size() < 3) {
        err << kHogWriteUsage;
        return kExitUsage;
    }
    const std::string& command = args[0];
    const std::filesystem::path archive = args[1];
    const std::vector<std::string> rest(args.begin() + 2, args.end());
    for (const std::string& a : rest) {
        if (a.starts_with("--")) {
            err << kHogWriteUsage;
            return kExitUsage;
        }
    }
    const std::uint32_t time = ArchiveTime(std::getenv("SOURCE_DATE_EPOCH"));
    const std::vector<std::filesystem::path> files(rest.begin(), rest.end());
    HogEdit edit;
    if (command == "create") {
        edit = CreateHog(archive, files, time);
    } else if (command == "add") {
        edit = AddToHog(archive, files, time);
    } else {
        edit = RemoveFromHog(archive, rest, time);
    }
    if (!edit.Error.empty()) {
        err << edit.Error << "\n";
        return edit.InputUnreadable ? kExitNoInput : kExitRefused;
    }
    Report("added", edit.Added, out);
    Report("replaced", edit.Replaced, out);
    Report("removed", edit.Removed, out);
    return 0;
}

}  // namespace mw
