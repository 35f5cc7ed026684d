#include "model/point_direction.h"

#include <algorithm>
#include <cmath>

namespace mw {
DirectionAngles AnglesFromDirection(Vector3 direction) {
    const double x = direction.X, y = direction.Y, z = direction.Z;
    // Adding +0 turns a negative zero into a positive one, so (0, 0, -1) reads 180, not -180.
    const double left = -x + 0.0;
    const double r = std::sqrt(x * x + z * z);
    return {std::atan2(left, z) * kDegreesPerRadian, std::atan2(y + 0.0, r) * kDegreesPerRadian};
}

Vector3 DirectionFromAngles(double leftRight, double upDown) {
    const double a = leftRight / kDegreesPerRadian;
    const double y = std::sin(upDown / kDegreesPerRadian);
    const double r = std::sqrt(std::max(0.0, 1.0 - y * y));
    return {static_cast<float>(std::sin(-a) * r), static_cast<float>(y),
            static_cast<float>(std::cos(a) * r)};
}

}  // namespace mw
