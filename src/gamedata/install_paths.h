// Where the program's own files are: beside the program in a build tree, or under
// ../share/meshwright/ when installed (bin/ beside share/).
#pragma once

#include <filesystem>
#include <string>

namespace mw {

inline constexpr const char* kManualIndex = "help/index.html";
inline constexpr const char* kSampleModel = "samples/ship.oof";

// The folder of the running program.
std::filesystem::path ProgramDir();

// `relative` beside the program, else in the installed data folder; empty when neither
// holds it.
std::filesystem::path FindProgramFile(const std::filesystem::path& programDir,
                                      const std::string& relative);

}  // namespace mw
