// The OpenGL 1.1 and GLU headers, in one place.
#pragma once

#include <GL/gl.h>
#include <GL/glu.h>
