// The renderer drawing into an offscreen framebuffer, for the command-line tool, the
// benchmarks and the tests. Needs a QGuiApplication.
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

class OffscreenView {
  public:
    OffscreenView();
    ~OffscreenView();

    // Makes the context and a framebuffer of the given size; false with a message on failure.
    bool Create(int width, int height, std::string& error);

    // Makes the context current and binds the framebuffer.
    void MakeCurrent();

    // Compiles the model's lists and gives every texture a name: the decoded images when
    // `loaded` holds them, else the placeholder.
    void Load(const ModelData& model, const LoadedTextures* loaded,
              const std::vector<std::uint32_t>& missing);

    // Draws one frame and returns it.
    QImage Render(const ModelData& model, const FrameInput& in);
    // Draws model texture t into the whole framebuffer, as the textures panel previews it.
    QImage RenderPreview(int t);

    // The glow sprites' texture: the game's "thrustball" when `data` finds it, else the
    // generated one. Returns false when the generated one was used.
    bool LoadGlow(GameData* data, const Settings& settings);

    Renderer& renderer() { return renderer_; }

  private:
    std::unique_ptr<QOpenGLContext> context_;
    std::unique_ptr<QOffscreenSurface> surface_;
    std::unique_ptr<QOpenGLFramebufferObject> fbo_;
    Renderer renderer_;
    bool glReady_ = false;
};

// A frame input for a freshly loaded model: the camera fitted to it, the model ready.
FrameInput FittedFrame(const ModelData& model);

}  // namespace mw
