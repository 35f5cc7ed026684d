#include "view/surfaceless_context.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>

namespace mw {

// The framebuffer-object entry points, which OpenGL 1.1's headers do not export.
struct SurfacelessContext::Functions {
    PFNGLGENFRAMEBUFFERSPROC genFramebuffers = nullptr;
    PFNGLDELETEFRAMEBUFFERSPROC deleteFramebuffers = nullptr;
    PFNGLBINDFRAMEBUFFERPROC bindFramebuffer = nullptr;
    PFNGLGENRENDERBUFFERSPROC genRenderbuffers = nullptr;
    PFNGLDELETERENDERBUFFERSPROC deleteRenderbuffers = nullptr;
    PFNGLBINDRENDERBUFFERPROC bindRenderbuffer = nullptr;
    PFNGLRENDERBUFFERSTORAGEPROC renderbufferStorage = nullptr;
    PFNGLFRAMEBUFFERRENDERBUFFERPROC framebufferRenderbuffer = nullptr;
    PFNGLCHECKFRAMEBUFFERSTATUSPROC checkFramebufferStatus = nullptr;

    bool Load() {
        auto get = [](const char* name) { return eglGetProcAddress(name); };
        genFramebuffers = reinterpret_cast<PFNGLGENFRAMEBUFFERSPROC>(get("glGenFramebuffers"));
        deleteFramebuffers =
            reinterpret_cast<PFNGLDELETEFRAMEBUFFERSPROC>(get("glDeleteFramebuffers"));
        bindFramebuffer = reinterpret_cast<PFNGLBINDFRAMEBUFFERPROC>(get("glBindFramebuffer"));
        genRenderbuffers = reinterpret_cast<PFNGLGENRENDERBUFFERSPROC>(get("glGenRenderbuffers"));
        deleteRenderbuffers =
            reinterpret_cast<PFNGLDELETERENDERBUFFERSPROC>(get("glDeleteRenderbuffers"));
        bindRenderbuffer = reinterpret_cast<PFNGLBINDRENDERBUFFERPROC>(get("glBindRenderbuffer"));
        renderbufferStorage =
            reinterpret_cast<PFNGLRENDERBUFFERSTORAGEPROC>(get("glRenderbufferStorage"));
        framebufferRenderbuffer =
            reinterpret_cast<PFNGLFRAMEBUFFERRENDERBUFFERPROC>(get("glFramebufferRenderbuffer"));
        checkFramebufferStatus =
            reinterpret_cast<PFNGLCHECKFRAMEBUFFERSTATUSPROC>(get("glCheckFramebufferStatus"));
        return genFramebuffers && deleteFramebuffers && bindFramebuffer && genRenderbuffers &&
               deleteRenderbuffers && bindRenderbuffer && renderbufferStorage &&
               framebufferRenderbuffer && checkFramebufferStatus;
    }
};

namespace {

EGLDisplay SurfacelessDisplay() {
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (extensions == nullptr) return EGL_NO_DISPLAY;
    const std::string list(extensions);
    if (list.find("EGL_MESA_platform_surfaceless") == std::string::npos) return EGL_NO_DISPLAY;
    auto getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    if (getPlatformDisplay == nullptr) return EGL_NO_DISPLAY;
    return getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
}

}  // namespace

SurfacelessContext::SurfacelessContext() = default;

SurfacelessContext::~SurfacelessContext() {
    if (context_ != nullptr) {
        MakeCurrent();
        if (fbo_ != 0) gl_->deleteFramebuffers(1, &fbo_);
        const GLuint buffers[2] = {color_, depth_};
        if (color_ != 0) gl_->deleteRenderbuffers(2, buffers);
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display_, context_);
    }
    if (display_ != nullptr) eglTerminate(display_);
}

bool SurfacelessContext::Create(int width, int height, std::string& error) {
    error = "Failure creating rendering context!";
    width_ = width;
    height_ = height;
    EGLDisplay display = SurfacelessDisplay();
    if (display == EGL_NO_DISPLAY) return false;
    EGLint major = 0, minor = 0;
    if (!eglInitialize(display, &major, &minor)) return false;
    display_ = display;
    if (!eglBindAPI(EGL_OPENGL_API)) return false;
    const EGLint configAttributes[] = {EGL_SURFACE_TYPE,
                                       EGL_PBUFFER_BIT,
                                       EGL_RENDERABLE_TYPE,
                                       EGL_OPENGL_BIT,
                                       EGL_RED_SIZE,
                                       8,
                                       EGL_GREEN_SIZE,
                                       8,
                                       EGL_BLUE_SIZE,
                                       8,
                                       EGL_DEPTH_SIZE,
                                       16,
                                       EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, configAttributes, &config, 1, &count) || count < 1) {
        config = nullptr;  // EGL_KHR_no_config_context: the framebuffer object is all we draw to
    }
    // A compatibility profile: the renderer draws with the fixed-function pipeline.
    const EGLint contextAttributes[] = {EGL_CONTEXT_OPENGL_PROFILE_MASK,
                                        EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT, EGL_NONE};
    context_ = eglCreateContext(display, config, EGL_NO_CONTEXT, contextAttributes);
    if (context_ == EGL_NO_CONTEXT) {
        context_ = nullptr;
        return false;
    }
    if (!eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context_)) {
        error = "Failure activating rendering context!";
        return false;
    }
    gl_ = std::make_unique<Functions>();
    error = "Failure setting pixel format!";
    if (!gl_->Load()) return false;
    gl_->genFramebuffers(1, &fbo_);
    gl_->bindFramebuffer(GL_FRAMEBUFFER, fbo_);
    GLuint buffers[2] = {0, 0};
    gl_->genRenderbuffers(2, buffers);
    color_ = buffers[0];
    depth_ = buffers[1];
    gl_->bindRenderbuffer(GL_RENDERBUFFER, color_);
    gl_->renderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    gl_->framebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color_);
    gl_->bindRenderbuffer(GL_RENDERBUFFER, depth_);
    gl_->renderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, width, height);
    gl_->framebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth_);
    if (gl_->checkFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) return false;
    glDrawBuffer(GL_COLOR_ATTACHMENT0);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    error.clear();
    return true;
}

void SurfacelessContext::MakeCurrent() {
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_);
    if (gl_ != nullptr) gl_->bindFramebuffer(GL_FRAMEBUFFER, fbo_);
}

void SurfacelessContext::DoneCurrent() {
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

}  // namespace mw
