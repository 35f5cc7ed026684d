// The renderer drawing into an offscreen framebuffer, for the command-line tool, the
// benchmarks and the tests. Needs a QGuiApplication (the offscreen platform will do). With a
// display the context is Qt's; without one, Mesa's surfaceless EGL.
#pragma once

#include <QImage>
#include <memory>
#include <string>

#include "view/renderer.h"

class QOffscreenSurface;
class QOpenGLContext;
class QOpenGLFramebufferObject;

namespace mw {

// The OpenGL surface format of every view: a compatibility profile (the fixed-function
// pipeline), double buffer and a depth buffer of at least 16 bits.
void ApplyViewFormat();

class SurfacelessContext;

enum class OffscreenContext {
    Automatic,    // Qt's when a display can be opened, else surfaceless
    Qt,           // Qt's context on the platform's display
    Surfaceless,  // EGL without any display
};

class OffscreenView {
  public:
    OffscreenView();
    ~OffscreenView();

    // Makes the context and a framebuffer of the given size; false with a message on failure.
    bool Create(int width, int height, std::string& error,
                OffscreenContext kind = OffscreenContext::Automatic);
    // Which kind of context Create made.
    OffscreenContext kind() const { return kind_; }

    // Makes the context current and binds the framebuffer.
    void MakeCurrent();

    // Compiles the model's lists and gives every texture a name: the decoded images when
    // `loaded` holds them, else the placeholder.
    void Load(const ModelData& model, const LoadedTextures* loaded,
              const std::vector<std::uint32_t>& missing);

    // Draws one frame and returns it.
    QImage Render(const ModelData& model, const FrameInput& in);
    // Draws the frame over black and over white and returns it with the background
    // transparent: a pixel's alpha is how little the background showed through it.
    QImage RenderTransparent(const ModelData& model, const FrameInput& in);
    // Draws model texture t into the whole framebuffer, as the textures panel previews it.
    QImage RenderPreview(int t);

    // The glow sprites' texture: the game's "thrustball" when `data` finds it, else the
    // generated one. Returns false when the generated one was used.
    bool LoadGlow(GameData* data, const Settings& settings);

    Renderer& renderer() { return renderer_; }

  private:
    bool CreateQt(int width, int height, std::string& error);
    QImage Read();

    OffscreenContext kind_ = OffscreenContext::Automatic;
    int width_ = 0, height_ = 0;
    std::unique_ptr<SurfacelessContext> surfaceless_;
    std::unique_ptr<QOpenGLContext> context_;
    std::unique_ptr<QOffscreenSurface> surface_;
    std::unique_ptr<QOpenGLFramebufferObject> fbo_;
    Renderer renderer_;
    bool glReady_ = false;
};

// A frame input for a freshly loaded model: the camera fitted to it, the model ready.
FrameInput FittedFrame(const ModelData& model);

}  // namespace mw
