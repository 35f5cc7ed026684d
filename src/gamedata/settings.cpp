#include "gamedata/settings.h"

#include <unistd.h>
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "gamedata/file_names.h"
#include "model/version.h"

namespace mw {
namespace {

constexpr const char* kPaths = "Path Settings";
constexpr const char* kView = "View Settings";
constexpr const char* kEffects = "Effects";
constexpr const char* kAnimation = "Animation";
constexpr const char* kMru = "MRU";
constexpr const char* kApplication = "Application";
constexpr const char* kPof = "POFGEN Options";
constexpr const char* kOrf = "ORF Conversion Options";

// The boolean options in the order of the file, with their defaults taken from Settings{}.
struct BoolKey {
    const char* section;
    const char* key;
    bool Settings::*field;
};
constexpr BoolKey kViewBools[] = {
    {kView, "3Dmode", &Settings::ThreeDMode},
    {kView, "ViewNormals", &Settings::ViewNormals},
    {kView, "ViewPoints", &Settings::ViewPoints},
    {kEffects, "GlowEffects", &Settings::GlowEffects},
    {kEffects, "Facing", &Settings::Facing},
    {kEffects, "TextureAnimation", &Settings::TextureAnimation},
    {kEffects, "BilinearFiltering", &Settings::BilinearFiltering},
    {kEffects, "Show Background", &Settings::ShowBackground},
    {kAnimation, "RotatorAnimation", &Settings::RotatorAnimation},
    {kAnimation, "ViewTrajectories", &Settings::ViewTrajectories},
};
constexpr BoolKey kPofBools[] = {
    {kPof, "Sub-Object Seperation Planes", &Settings::PofSubObjectPlanes},
    {kPof, "Use First Seperation Plane", &Settings::PofFirstPlane},
    {kPof, "Conflict/Split Ratio", &Settings::PofConflictRatio},
    {kPof, "Use Local Seperation Planes", &Settings::PofLocalPlanes},
    {kPof, "Combine Objects", &Settings::PofCombineObjects},
    {kPof, "Animation Output", &Settings::PofAnimationOutput},
    {kPof, "Capital Ships", &Settings::PofCapitalShips},
    {kPof, "Display POFGEN Output", &Settings::PofDisplayOutput},
};
constexpr BoolKey kOrfBools[] = {
    {kOrf, "Combine Rooms on Output", &Settings::CombineRooms},
    {kOrf, "Output Special Points as Faces", &Settings::SpecialPointsAsFaces},
};

struct StringKey {
    const char* key;
    std::string Settings::*field;
};
constexpr StringKey kPathKeys[] = {
    {"D3HogPath", &Settings::D3HogPath},
    {"MN3GAMPath", &Settings::MN3GAMPath},
    {"OGFPath", &Settings::OGFPath},
    {"POFGENPath", &Settings::POFGENPath},
    {"Background Image", &Settings::BackgroundImage},
    {"GameProgram", &Settings::GameProgram},
};

template <std::size_t N>
void LoadBools(const clsIniFile& ini, Settings& s, const BoolKey (&keys)[N]) {
    const Settings defaults;
    for (const BoolKey& k : keys)
        s.*k.field = ini.GetBoolean(k.section, k.key, defaults.*k.field);
}

template <std::size_t N>
void SaveBools(clsIniFile& ini, const Settings& s, const BoolKey (&keys)[N]) {
    for (const BoolKey& k : keys)
        ini.WriteBoolean(k.section, k.key, s.*k.field);
}

// Nearest integer, ties to even.
long RoundEven(double v) {
    return std::lrint(v);
}

std::array<std::uint8_t, 3> ParseChunkSplits(const std::string& text) {
    const auto c1 = text.find(',');
    const auto c2 = c1 == std::string::npos ? c1 : text.find(',', c1 + 1);
    if (c2 == std::string::npos) return {0, 0, 0};
    const std::string fields[3] = {text.substr(0, c1), text.substr(c1 + 1, c2 - c1 - 1),
                                   text.substr(c2 + 1)};
    std::array<std::uint8_t, 3> out{};
    int zeros = 0;
    for (int i = 0; i < 3; ++i) {
        const auto v = ParseFloatText(fields[i]);
        if (!v) return {0, 0, 0};
        const long n = RoundEven(*v);
        if (n < 0 || n > 255) return {0, 0, 0};
        out[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(n);
        zeros += n == 0;
    }
    if (zeros != 0 && zeros != 3) return {0, 0, 0};
    return out;
}

}  // namespace

const char* ViewTypeText(ViewType type) {
    switch (type) {
        case ViewType::Wireframe:
            return "Wireframe";
        case ViewType::FlatSolid:
            return "FlatSolid";
        case ViewType::SmoothSolid:
            return "SmoothSolid";
        case ViewType::Textured:
            return "Textured";
    }
    return "Wireframe";
}

ViewType ParseViewType(std::string_view text) {
    for (ViewType t :
         {ViewType::Wireframe, ViewType::FlatSolid, ViewType::SmoothSolid, ViewType::Textured}) {
        if (EqualsIgnoringCase(text, ViewTypeText(t))) return t;
    }
    return ViewType::Wireframe;
}

void LoadSettings(const clsIniFile& ini, Settings& s) {
    for (const StringKey& k : kPathKeys)
        s.*k.field = ini.GetString(kPaths, k.key, "");
    const std::int16_t mode = ini.GetInt(kView, "ViewMode", 0);
    s.ViewMode = mode >= 0 && mode <= 3 ? mode : 0;
    s.View = ParseViewType(ini.GetString(kView, "ViewType", "textured"));
    LoadBools(ini, s, kViewBools);

    s.RecentFiles.clear();
    for (int i = 1; i <= kMaxRecentFiles; ++i) {
        const std::string path = ini.GetString(kMru, "File" + std::to_string(i), "");
        if (ContainsIgnoringCase(path, ".orf") || ContainsIgnoringCase(path, ".oof")) {
            s.RecentFiles.push_back(path);
        }
    }

    s.PofScale = ini.GetSingle(kPof, "Scale", 0.0254f);
    s.PofErrorFactor = ini.GetSingle(kPof, "Error Factor", 0.0f);
    const long shading = RoundEven(ini.GetSingle(kPof, "Shading Mode", 0.0f));
    s.PofShadingMode = shading >= 0 && shading <= 255 ? static_cast<std::uint8_t>(shading) : 0;
    s.PofChunkSplits = ParseChunkSplits(ini.GetString(kPof, "Chunk Splits", "0,0,0"));
    LoadBools(ini, s, kPofBools);

    LoadBools(ini, s, kOrfBools);
    float size = ini.GetSingle(kOrf, "Special Face Size", 1.0f);
    if (size == 0.0f) size = 1.0f;
    if (size < 0.1f) size = 0.1f;
    if (size > 100.0f) size = 100.0f;
    s.SpecialFaceSize = size;

    const int autosave = ini.GetInt(kApplication, "AutosaveSeconds", 60);
    s.AutosaveSeconds = std::clamp(autosave, 0, kMaxAutosaveSeconds);
    const int undo = ini.GetInt(kApplication, "UndoLimit", 1000);
    s.UndoLimit = undo < 0 ? 1000 : undo;
}

void SaveSettings(clsIniFile& ini, const Settings& s,
                  const std::function<bool(const std::string&)>& fileExists) {
    ini.WriteString(kApplication, "Name", "Meshwright");
    ini.WriteString(kApplication, "Version", kVersionText);
    ini.WriteInt(kApplication, "AutosaveSeconds", static_cast<std::int16_t>(s.AutosaveSeconds));
    ini.WriteInt(kApplication, "UndoLimit", static_cast<std::int16_t>(s.UndoLimit));
    for (const StringKey& k : kPathKeys)
        ini.WriteString(kPaths, k.key, s.*k.field);
    ini.WriteInt(kView, "ViewMode", s.ViewMode);
    ini.WriteString(kView, "ViewType", ViewTypeText(s.View));
    SaveBools(ini, s, kViewBools);
    for (int i = 1; i <= kMaxRecentFiles; ++i) {
        const auto idx = static_cast<std::size_t>(i - 1);
        const bool keep = idx < s.RecentFiles.size() && !s.RecentFiles[idx].empty() &&
                          fileExists(s.RecentFiles[idx]);
        ini.WriteString(kMru, "File" + std::to_string(i), keep ? s.RecentFiles[idx] : "");
    }
    ini.WriteString(kPof, "Scale", FloatText(s.PofScale));
    ini.WriteString(kPof, "Error Factor", FloatText(s.PofErrorFactor));
    ini.WriteInt(kPof, "Shading Mode", s.PofShadingMode);
    ini.WriteString(kPof, "Chunk Splits",
                    std::to_string(s.PofChunkSplits[0]) + "," +
                        std::to_string(s.PofChunkSplits[1]) + "," +
                        std::to_string(s.PofChunkSplits[2]));
    SaveBools(ini, s, kPofBools);
    SaveBools(ini, s, kOrfBools);
    ini.WriteString(kOrf, "Special Face Size", FloatText(s.SpecialFaceSize));
}

void DeriveArchivePaths(Settings& s) {
    const std::string path = NormalizeSeparators(s.D3HogPath);
    const auto p = FindIgnoringCase(path, std::string(1, kSeparator) + "d3.hog");
    if (p == std::string::npos) {
        s.D3HogPath.clear();
        s.Extra13Path.clear();
    } else {
        s.Extra13Path = path.substr(0, p + 1) + "Extra13.hog";
    }
    if (!s.OGFPath.empty()) {
        s.OGFPath = NormalizeSeparators(s.OGFPath);
        if (s.OGFPath.back() != kSeparator) s.OGFPath += kSeparator;
    }
}

std::filesystem::path SettingsFilePath(const std::filesystem::path& programDir) {
    namespace fs = std::filesystem;
    const fs::path portable = programDir / "MWUIData.ini";
    std::error_code ec;
    if (fs::exists(portable, ec) && ::access(portable.c_str(), W_OK) == 0) return portable;
    fs::path config;
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg != nullptr && *xdg != '\0') {
        config = xdg;
    } else if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        config = fs::path(home) / ".config";
    } else {
        config = fs::temp_directory_path();
    }
    return config / "Meshwright" / "MWUIData.ini";
}

}  // namespace mw
