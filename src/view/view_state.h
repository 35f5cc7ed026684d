// What the renderer draws from besides the model: display settings, the main window's
// selection, the animation frame and the mouse.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "gamedata/settings.h"
#include "view/camera.h"

namespace mw {

// The 18 named colours every drawing step uses.
enum class PaletteColour {
    White,
    Black,
    Red,
    Green,
    Blue,
    Cyan,
    Magenta,
    Yellow,
    Orange,
    Grey,
    LightRed,
    LightGreen,
    LightBlue,
    LightMagenta,
    LightYellow,
    LightCyan,
    Peach,
    LightGrey,
};
std::array<std::uint8_t, 4> ViewPalette(PaletteColour colour);

struct DisplaySettings {
    ViewType Type = ViewType::Textured;
    ViewMode Mode = ViewMode::Selection;
    bool ThreeD = false;
    bool ShowModelRadius = false;
    bool ShowSOBJRadius = false;
    bool ShowSOBJBounding = false;
    bool ShowSPCLRadius = false;
    bool ViewPoints = true;
    bool ViewNormals = false;
    bool ViewTrajectories = true;
    bool RotatorAnimation = true;
    bool Facing = true;
    bool Glow = true;
    bool ShowBackground = true;
    // The small axis tripod in the corner (pictures of a model alone leave it out).
    bool ShowAxisOverlay = true;
    bool TextureAnimation = true;
    bool BilinearFiltering = false;
    std::string BackgroundImage;  // the picture behind the model; empty for none

    bool operator==(const DisplaySettings&) const = default;

    // Taken from the settings file's options.
    static DisplaySettings From(const Settings& s);
    // Written back into the settings file's options.
    void StoreInto(Settings& s) const;
};

// The main window's selection state that the renderer reads.
struct SelectionState {
    int curSOBJ = -1;
    int hiliteSOBJ = -1;   // the selected or dragged sub-object
    int hiliteSOBJ2 = -1;  // the drop target of a drag
    int curPNT = -1;
    std::string curPNTtype;  // "ATCH", "NATH", "GRND", "GPNT" or empty
    bool modelReady = false;
};

struct FrameInput {
    Camera camera;
    DisplaySettings display;
    SelectionState selection;
    float curFrame = 0.0f;
    std::vector<float> viewAngles;  // per sub-object rotator angle, in turns
    int mouseX = -1;                // pixels from the top left; picking in Selection mode
    int mouseY = -1;
    bool pick = false;
};

}  // namespace mw
