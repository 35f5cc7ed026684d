// An OpenGL context with no window system at all: Mesa's surfaceless EGL platform, a
// compatibility-profile desktop OpenGL context, drawing into a framebuffer object. Used by
// the offscreen view when no display can be opened (build servers, containers,
// thumbnailers).
#pragma once

#include <memory>
#include <string>

namespace mw {

class SurfacelessContext {
  public:
    SurfacelessContext();
    ~SurfacelessContext();
    SurfacelessContext(const SurfacelessContext&) = delete;
    SurfacelessContext& operator=(const SurfacelessContext&) = delete;

    // The context and a width x height framebuffer (colour and depth), made current. False
    // with a message when a step fails.
    bool Create(int width, int height, std::string& error);
    void MakeCurrent();
    void DoneCurrent();
    int width() const { return width_; }
    int height() const { return height_; }

  private:
    struct Functions;
    void* display_ = nullptr;
    void* context_ = nullptr;
    unsigned fbo_ = 0, color_ = 0, depth_ = 0;
    int width_ = 0, height_ = 0;
    std::unique_ptr<Functions> gl_;
};

}  // namespace mw
