#include "view/view_state.h"

namespace mw {

std::array<std::uint8_t, 4> ViewPalette(PaletteColour colour) {
    static constexpr std::array<std::array<std::uint8_t, 4>, 18> kColours{{
        {255, 255, 255, 255},
        {0, 0, 0, 255},
        {255, 0, 0, 255},
        {0, 255, 0, 255},
        {0, 0, 255, 255},
        {0, 255, 255, 255},
        {255, 0, 255, 255},
        {255, 255, 0, 255},
        {255, 128, 0, 255},
        {128, 128, 128, 255},
        {255, 164, 164, 255},
        {164, 255, 164, 255},
        {164, 164, 255, 255},
        {255, 164, 255, 255},
        {255, 255, 164, 255},
        {164, 255, 255, 255},
        {255, 216, 196, 255},
        {164, 164, 164, 255},
    }};
    return kColours[static_cast<std::size_t>(colour)];
}

DisplaySettings DisplaySettings::From(const Settings& s) {
    DisplaySettings d;
    d.Type = s.View;
    d.Mode = static_cast<ViewMode>(s.ViewMode);
    d.ThreeD = s.ThreeDMode;
    d.ViewPoints = s.ViewPoints;
    d.ViewNormals = s.ViewNormals;
    d.ViewTrajectories = s.ViewTrajectories;
    d.RotatorAnimation = s.RotatorAnimation;
    d.Facing = s.Facing;
    d.Glow = s.GlowEffects;
    d.ShowBackground = s.ShowBackground;
    d.TextureAnimation = s.TextureAnimation;
    d.BilinearFiltering = s.BilinearFiltering;
    d.BackgroundImage = s.BackgroundImage;
    return d;
}

void DisplaySettings::StoreInto(Settings& s) const {
    s.View = Type;
    s.ViewMode = static_cast<std::int16_t>(Mode);
    s.ThreeDMode = ThreeD;
    s.ViewPoints = ViewPoints;
    s.ViewNormals = ViewNormals;
    s.ViewTrajectories = ViewTrajectories;
    s.RotatorAnimation = RotatorAnimation;
    s.Facing = Facing;
    s.GlowEffects = Glow;
    s.ShowBackground = ShowBackground;
    s.TextureAnimation = TextureAnimation;
    s.BilinearFiltering = BilinearFiltering;
    s.BackgroundImage = BackgroundImage;
}

}  // namespace mw
