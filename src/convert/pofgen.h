// The model compilers' command line: the switches built from the compiler options (stored
// ones at start-up, the preferences dialog's fields when it is confirmed), and the rules for
// reading what a compiler run left behind.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "gamedata/settings.h"

namespace mw {

// The seven on/off options in switch order, with their switches.
struct PofgenFlag {
    bool Settings::*field;
    const char* text;  // "-p " ...
};
inline constexpr std::array<PofgenFlag, 7> kPofgenFlags{{
    {&Settings::PofSubObjectPlanes, "-p "},
    {&Settings::PofFirstPlane, "-f "},
    {&Settings::PofConflictRatio, "-m "},
    {&Settings::PofLocalPlanes, "-g "},
    {&Settings::PofCombineObjects, "-1 "},
    {&Settings::PofAnimationOutput, "-a "},
    {&Settings::PofCapitalShips, "-b "},
}};

// Whether a path names one of the compilers ("pofgen.exe" or "bspgen.exe", any case).
bool NamesCompiler(std::string_view path);

// Rebuilds s.PofgenSwitches from the stored options, bringing them into range first (and
// emptying POFGENPath when it names no compiler).
void BuildPofgenSwitches(Settings& s);

// The preferences dialog's fields as they stand.
struct PofgenFields {
    std::string scale;  // "0.02540000"
    std::string error;  // "0.00000000"
    int shading = 0;
    std::array<std::string, 3> chunks{"0", "0", "0"};
    std::array<bool, 7> flags{};
};

// The same switches from the dialog's texts, written as typed.
std::string PofgenSwitchesFromFields(const PofgenFields& f);

// A run failed when its output says "error processing" (any capitals).
bool CompilerReportedErrors(std::string_view output);

// The model a compiler writes for a P3D file: its last three characters become "OOF".
std::string CompiledModelPath(const std::string& p3dPath);

}  // namespace mw
