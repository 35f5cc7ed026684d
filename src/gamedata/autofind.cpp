#include "gamedata/autofind.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>

#include "gamedata/file_names.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaxSubfolders = 1000;

bool IsDir(const fs::path& p) {
    std::error_code ec;
    return fs::is_directory(p, ec);
}

// The subfolders of `dir` in name order, at most kMaxSubfolders.
std::vector<fs::path> Subfolders(const fs::path& dir) {
    std::vector<fs::path> out;
    std::error_code ec;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
        if (IsDir(it->path())) out.push_back(it->path());
    }
    std::sort(out.begin(), out.end());
    if (out.size() > kMaxSubfolders) out.resize(kMaxSubfolders);
    return out;
}

// The entry of `dir` whose name is one of `names`, ignoring case (an exact match first).
std::optional<fs::path> ChildIgnoringCase(const fs::path& dir,
                                          std::initializer_list<std::string_view> names,
                                          bool wantDir) {
    std::error_code ec;
    for (std::string_view name : names) {
        const fs::path exact = dir / fs::path(std::string(name));
        if (wantDir ? IsDir(exact) : fs::is_regular_file(exact, ec)) return exact;
    }
    std::vector<fs::path> matches;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string entry = it->path().filename().string();
        const bool kind = wantDir ? IsDir(it->path()) : fs::is_regular_file(it->path(), ec);
        if (!kind) continue;
        for (std::string_view name : names) {
            if (EqualsIgnoringCase(entry, name)) matches.push_back(it->path());
        }
    }
    if (matches.empty()) return std::nullopt;
    return *std::min_element(matches.begin(), matches.end());
}

std::optional<fs::path> GameFolderIn(const fs::path& dir) {
    return ChildIgnoringCase(dir, {"Descent3", "Descent 3"}, true);
}

std::optional<fs::path> FileIn(const fs::path& dir, std::string_view name) {
    return ChildIgnoringCase(dir, {name}, false);
}

// A compiler in the folder itself: pofgen.exe before bspgen.exe.
std::optional<fs::path> CompilerIn(const fs::path& dir) {
    if (auto p = FileIn(dir, "pofgen.exe")) return p;
    return FileIn(dir, "bspgen.exe");
}

// Steam's text format: quoted keys and values. Library paths are the values of "path" keys
// (and, in the old format, of numbered keys).
std::vector<fs::path> ParseLibraryFolders(const std::string& text) {
    std::vector<std::string> tokens;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '"') continue;
        std::string token;
        for (++i; i < text.size() && text[i] != '"'; ++i) {
            if (text[i] == '\\' && i + 1 < text.size()) ++i;
            token += text[i];
        }
        tokens.push_back(token);
    }
    std::vector<fs::path> out;
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        const std::string& key = tokens[i];
        const std::string& value = tokens[i + 1];
        const bool numbered = !key.empty() && std::all_of(key.begin(), key.end(), [](char c) {
            return c >= '0' && c <= '9';
        });
        if ((EqualsIgnoringCase(key, "path") || numbered) && !value.empty() && value[0] == '/') {
            out.emplace_back(value);
            ++i;
        }
    }
    return out;
}

std::string WithSeparator(const fs::path& dir) {
    std::string s = dir.string();
    if (s.empty() || s.back() != kSeparator) s += kSeparator;
    return s;
}

void AddUnique(std::vector<fs::path>& list, const fs::path& p) {
    std::error_code ec;
    const fs::path key = fs::weakly_canonical(p, ec);
    for (const fs::path& q : list) {
        if (fs::weakly_canonical(q, ec) == key) return;
    }
    list.push_back(p);
}

}  // namespace

AutofindPlaces AutofindPlaces::FromEnvironment() {
    AutofindPlaces places;
    if (const char* home = std::getenv("HOME"); home != nullptr) places.home = home;
    if (const char* prefix = std::getenv("WINEPREFIX"); prefix != nullptr && *prefix != '\0') {
        places.winePrefix = prefix;
    }
    places.systemFolders = {"/opt", "/usr/local/games", "/usr/share/games"};
    if (const char* path = std::getenv("PATH"); path != nullptr) {
        std::stringstream folders(path);
        for (std::string folder; std::getline(folders, folder, ':');) {
            if (!folder.empty()) places.programFolders.emplace_back(folder);
        }
    }
    for (const char* system :
         {"/usr/games", "/usr/local/games", "/usr/local/bin", "/opt/Descent3", "/opt/descent3"}) {
        places.programFolders.emplace_back(system);
    }
    return places;
}

std::vector<fs::path> SteamLibraries(const fs::path& steamRoot) {
    std::vector<fs::path> out{steamRoot};
    for (const char* file : {"steamapps/libraryfolders.vdf", "config/libraryfolders.vdf"}) {
        std::ifstream in(steamRoot / file);
        if (!in) continue;
        std::stringstream text;
        text << in.rdbuf();
        for (const fs::path& p : ParseLibraryFolders(text.str()))
            AddUnique(out, p);
    }
    return out;
}

std::vector<fs::path> GameFolderCandidates(const AutofindPlaces& places) {
    std::vector<fs::path> found;
    auto add = [&found](const std::optional<fs::path>& p) {
        if (p) AddUnique(found, *p);
    };
    const fs::path& home = places.home;
    if (!home.empty()) {
        // Steam: the native, the older symlinked and the Flatpak installation.
        std::vector<fs::path> libraries;
        for (const char* root : {".steam/steam", ".steam/root", ".local/share/Steam",
                                 ".var/app/com.valvesoftware.Steam/.local/share/Steam"}) {
            if (!IsDir(home / root)) continue;
            for (const fs::path& lib : SteamLibraries(home / root))
                AddUnique(libraries, lib);
        }
        for (const fs::path& lib : libraries) {
            if (auto common = ChildIgnoringCase(lib / "steamapps", {"common"}, true)) {
                add(ChildIgnoringCase(*common, {"Descent 3", "Descent3"}, true));
            }
        }
    }
    // Wine prefixes: the game one or two levels below drive_c.
    std::vector<fs::path> prefixes;
    if (!home.empty()) prefixes.push_back(home / ".wine");
    if (!places.winePrefix.empty()) prefixes.push_back(places.winePrefix);
    for (const fs::path& prefix : prefixes) {
        const auto drive = ChildIgnoringCase(prefix, {"drive_c"}, true);
        if (!drive) continue;
        add(GameFolderIn(*drive));
        for (const fs::path& sub : Subfolders(*drive))
            add(GameFolderIn(sub));
    }
    std::vector<fs::path> usual;
    if (!home.empty()) usual = {home / "Games", home / ".local/share"};
    usual.insert(usual.end(), places.systemFolders.begin(), places.systemFolders.end());
    for (const fs::path& dir : usual)
        add(GameFolderIn(dir));
    // Last, the home folder standing for a drive's root: a "Descent3" in it or one level down.
    if (!home.empty()) {
        std::optional<fs::path> fallback = ChildIgnoringCase(home, {"Descent3"}, true);
        if (!fallback) {
            for (const fs::path& sub : Subfolders(home)) {
                if ((fallback = ChildIgnoringCase(sub, {"Descent3"}, true))) break;
            }
        }
        add(fallback);
    }
    return found;
}

AutofindResult Autofind(const AutofindPlaces& places) {
    AutofindResult result;
    const std::vector<fs::path> candidates = GameFolderCandidates(places);
    if (candidates.empty()) {
        result.gameProgram = FindGameProgram(places, {});
        return result;
    }
    // A folder left behind by an uninstalled copy holds no d3.hog; one that does wins.
    fs::path dir = candidates.front();
    for (const fs::path& c : candidates) {
        if (FileIn(c, "d3.hog")) {
            dir = c;
            break;
        }
    }
    result.gameDir = WithSeparator(dir);
    if (auto hog = FileIn(dir, "d3.hog")) result.d3Hog = hog->string();
    std::optional<fs::path> compiler = CompilerIn(dir);
    if (!compiler) {
        const std::vector<fs::path> subs = Subfolders(dir);
        for (const char* name : {"pofgen.exe", "bspgen.exe"}) {
            for (const fs::path& sub : subs) {
                if ((compiler = FileIn(sub, name))) break;
            }
            if (compiler) break;
        }
    }
    if (compiler) result.compiler = compiler->string();
    result.gameProgram = FindGameProgram(places, dir);
    return result;
}

std::string FindGameProgram(const AutofindPlaces& places, const fs::path& gameDir) {
    std::vector<fs::path> folders;
    if (!gameDir.empty()) folders = {gameDir, gameDir / "build" / "Descent3", gameDir / "bin"};
    folders.insert(folders.end(), places.programFolders.begin(), places.programFolders.end());
    if (!places.home.empty()) {
        for (const char* mine :
             {".local/bin", "Descent3", "Descent3/build/Descent3", "Games/Descent3"})
            folders.push_back(places.home / mine);
    }
    for (const fs::path& folder : folders) {
        for (const char* name : {"Descent3", "descent3"}) {
            std::error_code ec;
            const fs::path candidate = folder / name;
            const auto status = fs::status(candidate, ec);
            if (!ec && fs::is_regular_file(status) &&
                (status.permissions() & fs::perms::owner_exec) != fs::perms::none) {
                return candidate.string();
            }
        }
    }
    return {};
}

}  // namespace mw
