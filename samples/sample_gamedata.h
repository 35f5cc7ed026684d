// The sample's game data: an archive named d3.hog with the ship's textures (a still hull,
// a sliding wing stripe, an animated turret light), the glow texture and a GAM table.
#pragma once

#include "gamedata_writers.h"

namespace mw {

Bytes BuildSampleArchive();

}  // namespace mw
