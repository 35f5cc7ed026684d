#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace mw {
namespace {

// Qt's options that take a value, and those that do not (QGuiApplication and QApplication).
constexpr std::array<std::string_view, 12> kQtWithValue{
    "-platform",        "-platformpluginpath", "-platformtheme", "-plugin",
    "-style",           "-stylesheet",         "-display",       "-geometry",
    "-qwindowgeometry", "-qwindowtitle",       "-qwindowicon",   "-session"};
constexpr std::array<std::string_view, 5> kQtFlags{"-reverse", "-nograb", "-dograb", "-sync",
                                                   "-widgetcount"};

bool Contains(const auto& list, std::string_view option) {
    return std::find(list.begin(), list.end(), option) != list.end();
}

}  // namespace

EditorArguments ParseEditorArguments(const std::vector<std::string>& args) {
    EditorArguments parsed;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        // Qt reads its options with one dash or two.
        const std::string qt = a.starts_with("--") ? a.substr(1) : a;
        if (a == "--help" || a == "-h") {
            parsed.help = true;
        } else if (Contains(kQtWithValue, qt)) {
            ++i;  // Qt takes the option and its value
        } else if (Contains(kQtFlags, qt) || qt.starts_with("-style=") ||
                   qt.starts_with("-stylesheet=")) {
        } else if (a.starts_with("-") && a.size() > 1) {
            parsed.error = "Unknown option '" + a + "'";
        } else if (parsed.model.empty()) {
            parsed.model = a;
        } else {
            parsed.error = "More than one model given ('" + a + "')";
        }
    }
    return parsed;
}

}  // namespace mw
