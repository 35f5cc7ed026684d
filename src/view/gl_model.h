// Model coordinates on their way to OpenGL: the model is left-handed, so X is negated.
#pragma once

#include "math/vector.h"
#include "view/gl.h"

namespace mw {

inline void Translate(Vector3 v) {
    glTranslatef(-v.X, v.Y, v.Z);
}
inline void GlVertex(Vector3 v) {
    glVertex3f(-v.X, v.Y, v.Z);
}
inline void Normal(Vector3 n) {
    glNormal3f(-n.X, n.Y, n.Z);
}

}  // namespace mw
