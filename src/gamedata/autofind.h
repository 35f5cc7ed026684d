// Finding the game's folder, its d3.hog and a model compiler on a Linux machine: Steam
// libraries, Wine prefixes, the usual game folders, then a folder "Descent3" in or one level
// below the home folder. Names are matched ignoring case.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace mw {

struct AutofindPlaces {
    std::filesystem::path home;
    std::filesystem::path winePrefix;                  // $WINEPREFIX; empty when not set
    std::vector<std::filesystem::path> systemFolders;  // /opt, /usr/local/games, ...
    // Where an installed program is looked for: the folders of $PATH, then /usr/games ...
    std::vector<std::filesystem::path> programFolders;

    // The places of this machine, from $HOME and $WINEPREFIX.
    static AutofindPlaces FromEnvironment();
};

struct AutofindResult {
    std::string gameDir;      // ends in the separator; empty when no game folder was found
    std::string d3Hog;        // the d3.hog found there, or empty
    std::string compiler;     // pofgen.exe or bspgen.exe, there or in a subfolder, or empty
    std::string gameProgram;  // the open-source engine's program, or empty
};

// The open-source engine's program ("Descent3", an executable file): in the game folder
// (or its build folder), in the program folders, then under the home folder. Empty when
// there is none.
std::string FindGameProgram(const AutofindPlaces& places, const std::filesystem::path& gameDir);

// The game folders the places hold, in the order they are searched.
std::vector<std::filesystem::path> GameFolderCandidates(const AutofindPlaces& places);

// The first candidate that holds d3.hog (or the first candidate), with its files.
AutofindResult Autofind(const AutofindPlaces& places);

// The library folders a Steam installation lists in its libraryfolders.vdf, the installation
// itself first.
std::vector<std::filesystem::path> SteamLibraries(const std::filesystem::path& steamRoot);

}  // namespace mw
