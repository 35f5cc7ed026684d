// Polygons back from triangles: glTF (and other files) keep only triangles, and a glow or
// thruster part must be one face. Adjacent triangles of a sub-object that lie in one plane,
// share a texture and colour, and agree on the corners they share (same vertex, same texture
// place) are joined into convex polygons of at most `maxCorners` corners.
#pragma once

#include "model/model_data.h"

namespace mw {

// Joins the sub-object's triangles as above; faces of more corners are left as they are.
// Returns how many triangles were absorbed into others (the faces there are fewer by that).
int MergeCoplanarTriangles(SubObject& sub, int maxCorners);

}  // namespace mw
