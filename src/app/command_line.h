// The editor's command line: meshwright [MODEL], besides the options Qt itself reads.
#pragma once

#include <string>
#include <vector>

namespace mw {

inline constexpr const char* kEditorUsage =
    "Usage: meshwright [MODEL]\n"
    "Opens the editor, and in it MODEL (an OOF model or an ORF room) when given.\n"
    "Qt's own options (-platform NAME, -style NAME, -display DISPLAY, -geometry WxH+X+Y,\n"
    "-reverse and the like) are passed on.\n";

struct EditorArguments {
    bool help = false;
    std::string error;  // an unknown option or a second model
    std::string model;
};

// Reads the arguments after the program name.
EditorArguments ParseEditorArguments(const std::vector<std::string>& args);

}  // namespace mw
