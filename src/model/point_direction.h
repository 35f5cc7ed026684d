// A point's direction as the two angles the point panel shows: L/R, measured about the Y
// axis from +Z towards -X (-180 to 180), and U/D, the elevation above the XZ plane (-90 to
// 90). Both in degrees.
#pragma once

#include "math/vector.h"

namespace mw {

struct DirectionAngles {
    double LeftRight = 0.0;
    double UpDown = 0.0;
};

// The angles of a direction of any length (a stored normal need not be unit length).
DirectionAngles AnglesFromDirection(Vector3 direction);

// The unit direction the two angles describe.
Vector3 DirectionFromAngles(double leftRight, double upDown);

}  // namespace mw
