#include "convert/game_run.h"

#include <cstdlib>
#include <regex>
#include <system_error>

#include "gamedata/hog_writer.h"
#include "model/file_io.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

std::string Lower(std::string s) {
    for (char& c : s) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return s;
}

// "AssignGenericPage" -> "generic page"; "AssignPowPage" -> "" (it names the page itself).
std::string PageKindOf(const std::string& assign) {
    static const std::regex kind("Assign(Generic|Ship|Door|Sound|Weapon|Texture)Page");
    std::smatch m;
    if (!std::regex_search(assign, m, kind)) return {};
    return Lower(m[1].str()) + " page";
}

struct Pattern {
    std::regex Re;
    const char* Kind;
    int Subject;  // the group holding the file or page (0: none)
};

const std::vector<Pattern>& Patterns() {
    static const std::vector<Pattern> patterns = [] {
        std::vector<Pattern> p;
        const auto add = [&](const char* re, const char* kind, int subject) {
            p.push_back({std::regex(re), kind, subject});
        };
        add(R"(Couldn't load (?:(\w+(?: \w+)?) )?file '([^']*)' in (Assign\w+)(?: ([^.]*))?)",
            "not found", 2);
        add(R"(Redundant addon page '([^']*)')", "redundant page", 1);
        add(R"(Can't read this type of TGA)", "bitmap type refused", 0);
        add(R"(bm_AllocLoadFileBitmap: Can't open file named (.*?)\.?\s*$)", "file not found", 1);
        add(R"(Unable to find bitmap (\S.*?)\s*$)", "file not found", 1);
        add(R"(This bitmaps name is too long)", "bitmap name too long", 0);
        add(R"(Bad ID in model file)", "model refused", 0);
        add(R"(Bad version \((-?\d+)\) in model file)", "model refused", 0);
        add(R"(Model <([^>]*)> specifies \d+ attach points)", "attach normals", 1);
        add(R"(You have a (?:rotator|turret) that has no keyframe on model (.*?)\.?\s*$)",
            "keys missing", 1);
        add(R"(Failed to page in (.*?)\.?\s*$)", "model not loaded", 1);
        add(R"(Couldn't load (\S+\.\w{3})\.\s*$)", "file not loaded", 1);
        return p;
    }();
    return patterns;
}

}  // namespace

fs::path DefaultPlayFolder() {
    if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && *cache != '\0')
        return fs::path(cache) / "meshwright" / "play";
    const char* home = std::getenv("HOME");
    return fs::path(home != nullptr ? home : ".") / ".cache" / "meshwright" / "play";
}

MissionCopy CompareMissionCopy(const fs::path& mission, const fs::path& file) {
    const auto archive = ReadFileBytes(mission);
    const auto data = ReadFileBytes(file);
    const auto name = HogNameFromUtf8(file.filename().string());
    if (!archive || !data || !name) return MissionCopy::Unreadable;
    const auto files = ReadHogFiles(*archive);
    if (!files) return MissionCopy::Unreadable;
    for (const HogFile& f : *files) {
        if (HogNamesEqual(f.Name, *name))
            return f.Data == *data ? MissionCopy::Same : MissionCopy::Differs;
    }
    return MissionCopy::Missing;
}

std::string PutIntoMission(const fs::path& mission, const fs::path& file) {
    const auto archive = ReadFileBytes(mission);
    const auto data = ReadFileBytes(file);
    const auto name = HogNameFromUtf8(file.filename().string());
    if (!archive) return "Cannot open " + mission.string() + ".";
    if (!data) return "Cannot open " + file.string() + ".";
    if (!name) return file.filename().string() + " has no name an archive can hold.";
    const auto changed = ReplaceHogEntry(*archive, *name, *data);
    if (!changed) return mission.string() + " is a damaged archive.";
    return WriteFileReplacing(mission, *changed);
}

std::string NoGameProgramMessage() {
    return "No game program is set. Test in Game starts the open-source Descent 3 engine "
           "(github.com/DescentDevelopers/Descent3): build or install it, then set its program "
           "under File > Preferences > \"Game program:\" (Autofind looks on the PATH and in the "
           "usual install places), or give it with --game.";
}

PreparedPlay PreparePlay(const PlaySetup& setup) {
    PreparedPlay play;
    std::error_code ec;
    if (setup.Program.empty()) {
        play.Error = NoGameProgramMessage();
        return play;
    }
    if (!fs::is_regular_file(setup.Program, ec)) {
        play.Error = "The game program " + setup.Program.string() + " does not exist.";
        return play;
    }
    if (Lower(setup.Mission.extension().string()) != ".mn3" ||
        !fs::is_regular_file(setup.Mission, ec)) {
        play.Error = "The game starts a mission from an .mn3 archive; " + setup.Mission.string() +
                     " is none.";
        return play;
    }
    if (setup.Level < 1) {
        play.Error = "Levels are counted from 1.";
        return play;
    }
    const fs::path missions = setup.Scratch / "missions";
    fs::create_directories(missions, ec);
    // Only the mission under test: a copy left from an earlier run is replaced.
    const std::string name = setup.Mission.filename().string();
    play.MissionCopy = missions / name;
    if (!ec)
        fs::copy_file(setup.Mission, play.MissionCopy, fs::copy_options::overwrite_existing, ec);
    if (ec) {
        play.Error = "The scratch folder " + setup.Scratch.string() +
                     " could not be prepared: " + ec.message() + ".";
        return play;
    }
    play.Program = setup.Program;
    play.WorkingDir = setup.Scratch;
    play.Arguments = {"-setdir", setup.Scratch.string()};
    if (!setup.GameDir.empty()) {
        play.Arguments.insert(play.Arguments.end(), {"-additionaldir", setup.GameDir.string()});
    }
    play.Arguments.insert(play.Arguments.end(),
                          {"-additionaldir", setup.Scratch.string(), "-mission", name, "-loadlevel",
                           std::to_string(setup.Level), "-windowed"});
    return play;
}

void GameLogReader::Add(std::string_view text) {
    partial_.append(text);
    std::size_t start = 0;
    for (std::size_t end; (end = partial_.find('\n', start)) != std::string::npos; start = end + 1)
        ReadLine(std::string_view(partial_).substr(start, end - start));
    partial_.erase(0, start);
}

void GameLogReader::Finish() {
    if (!partial_.empty()) ReadLine(partial_);
    partial_.clear();
}

void GameLogReader::ReadLine(std::string_view raw) {
    if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
    const std::string line(raw);
    for (const Pattern& p : Patterns()) {
        std::smatch m;
        if (!std::regex_search(line, m, p.Re)) continue;
        std::string kind = p.Kind;
        std::string subject = p.Subject > 0 ? m[p.Subject].str() : std::string();
        std::string page;
        if (kind == std::string("not found")) {
            const std::string what = m[1].matched ? m[1].str() : "file";
            kind = (what == "file" ? std::string("file") : what) + " not found";
            page = m[4].matched && !m[4].str().empty() ? "page \"" + m[4].str() + "\""
                                                       : PageKindOf(m[3].str());
        } else if (kind == std::string("file not loaded") && !problems_.empty() &&
                   problems_.back().Kind == "bitmap type refused" &&
                   problems_.back().Subject.empty()) {
            // The loader names the file on the line after the one that refused its type.
            problems_.back().Subject = subject;
            return;
        }
        problems_.push_back({kind, subject, page, line});
        return;
    }
}

std::string DescribeProblem(const GameProblem& p) {
    std::string out = p.Kind;
    if (!p.Subject.empty()) out += ": " + p.Subject;
    if (!p.Page.empty())
        out += " (named by " + (p.Page.rfind("page", 0) == 0 ? p.Page : "a " + p.Page) + ")";
    return out;
}

}  // namespace mw
