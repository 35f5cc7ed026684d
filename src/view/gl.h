// The OpenGL 1.1 and GLU headers, in one place, and the texture set-up every upload shares.
#pragma once

#include <GL/gl.h>
#include <GL/glu.h>

namespace mw {

// Enables texturing and binds `name` with the given wrap and filter, the colour modulated
// by the vertex colour. The caller uploads the image and disables texturing again.
inline void BindTextureForUpload(GLuint name, GLint wrap, GLint filter) {
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
}

}  // namespace mw
