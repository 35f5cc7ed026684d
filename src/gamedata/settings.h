// The program's options, read from the settings file at start-up and written back at
// shut-down, and the archive paths derived from them.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "gamedata/ini_file.h"

namespace mw {

enum class ViewType { Wireframe = 0, FlatSolid = 1, SmoothSolid = 2, Textured = 3 };

// The longest autosave interval the settings file keeps (an hour).
inline constexpr int kMaxAutosaveSeconds = 3600;

struct Settings {
    // Path Settings
    std::string D3HogPath;
    std::string MN3GAMPath;
    std::string OGFPath;
    std::string POFGENPath;
    std::string BackgroundImage;
    // The game's program (the open-source engine) that Test in Game starts.
    std::string GameProgram;
    // View Settings
    std::int16_t ViewMode = 0;
    ViewType View = ViewType::Textured;
    bool ThreeDMode = false;
    bool ViewNormals = false;
    bool ViewPoints = true;
    // Effects
    bool GlowEffects = true;
    bool Facing = true;
    // Seconds between recovery copies of a model with unsaved changes; 0 turns them off.
    int AutosaveSeconds = 60;
    // Steps the undo stack keeps (0: no limit).
    int UndoLimit = 1000;
    bool TextureAnimation = true;
    bool BilinearFiltering = false;
    bool ShowBackground = true;
    // Animation
    bool RotatorAnimation = true;
    bool ViewTrajectories = true;
    // MRU, most recent first, at most nine
    std::vector<std::string> RecentFiles;
    // POFGEN Options
    float PofScale = 0.0254f;
    float PofErrorFactor = 0.0f;
    std::uint8_t PofShadingMode = 0;
    std::array<std::uint8_t, 3> PofChunkSplits{0, 0, 0};
    bool PofSubObjectPlanes = false;
    bool PofFirstPlane = false;
    bool PofConflictRatio = false;
    bool PofLocalPlanes = false;
    bool PofCombineObjects = false;
    bool PofAnimationOutput = false;
    bool PofCapitalShips = false;
    bool PofDisplayOutput = true;
    // ORF Conversion Options
    bool CombineRooms = true;
    bool SpecialPointsAsFaces = true;
    float SpecialFaceSize = 1.0f;

    // Derived at start-up, not stored: the Extra13 archive beside d3.hog.
    std::string Extra13Path;
    // Built at start-up and when the preferences are confirmed: the compilers' switches.
    std::string PofgenSwitches;

    friend bool operator==(const Settings&, const Settings&) = default;
};

inline constexpr int kMaxRecentFiles = 9;

const char* ViewTypeText(ViewType type);
ViewType ParseViewType(std::string_view text);

void LoadSettings(const clsIniFile& ini, Settings& s);

// `fileExists` decides which recent paths are kept (a path whose file has gone is written
// as an empty value).
void SaveSettings(clsIniFile& ini, const Settings& s,
                  const std::function<bool(const std::string&)>& fileExists);

// Derives the Extra13 path from D3HogPath (both become empty when D3HogPath has no
// "d3.hog" file name) and ends OGFPath with the folder separator.
void DeriveArchivePaths(Settings& s);

// Whether the settings name any game data: an archive, a mission or a loose-image folder.
inline bool NamesGameData(const Settings& s) {
    return !s.D3HogPath.empty() || !s.Extra13Path.empty() || !s.MN3GAMPath.empty() ||
           !s.OGFPath.empty();
}

// Where the settings file lives: beside the program when such a file exists there and can
// be written, otherwise under $XDG_CONFIG_HOME (or ~/.config)/Meshwright/.
std::filesystem::path SettingsFilePath(const std::filesystem::path& programDir);

}  // namespace mw
