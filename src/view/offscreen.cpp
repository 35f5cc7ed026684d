#include "view/offscreen.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QSurfaceFormat>
#include <algorithm>
#include <cstdlib>

#include "view/gl.h"
#include "view/surfaceless_context.h"

namespace mw {

void ApplyViewFormat() {
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    QSurfaceFormat::setDefaultFormat(format);
}

OffscreenView::OffscreenView() = default;

OffscreenView::~OffscreenView() {
    if (glReady_) {
        MakeCurrent();
        renderer_.ReleaseGL();
        fbo_.reset();
        if (context_) context_->doneCurrent();
    }
}

bool OffscreenView::Create(int width, int height, std::string& error, OffscreenContext kind) {
    width_ = width;
    height_ = height;
    if (kind == OffscreenContext::Automatic) {
        // Without a display Qt's offscreen platform has no OpenGL; go straight to EGL.
        const bool display =
            std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
        if (display && CreateQt(width, height, error)) {
            kind_ = OffscreenContext::Qt;
        } else {
            fbo_.reset();
            context_.reset();
            surface_.reset();
            kind = OffscreenContext::Surfaceless;
        }
    } else if (kind == OffscreenContext::Qt) {
        if (!CreateQt(width, height, error)) return false;
        kind_ = kind;
    }
    if (kind == OffscreenContext::Surfaceless) {
        surfaceless_ = std::make_unique<SurfacelessContext>();
        if (!surfaceless_->Create(width, height, error)) return false;
        kind_ = kind;
    }
    renderer_.InitGLState();
    renderer_.ResizeViewport(width, height, {});
    glReady_ = true;
    return true;
}

bool OffscreenView::CreateQt(int width, int height, std::string& error) {
    ApplyViewFormat();
    context_ = std::make_unique<QOpenGLContext>();
    context_->setFormat(QSurfaceFormat::defaultFormat());
    if (!context_->create()) {
        error = "Failure creating rendering context!";
        return false;
    }
    surface_ = std::make_unique<QOffscreenSurface>();
    surface_->setFormat(context_->format());
    surface_->create();
    if (!context_->makeCurrent(surface_.get())) {
        error = "Failure activating rendering context!";
        return false;
    }
    QOpenGLFramebufferObjectFormat fboFormat;
    fboFormat.setAttachment(QOpenGLFramebufferObject::Depth);
    fbo_ = std::make_unique<QOpenGLFramebufferObject>(width, height, fboFormat);
    if (!fbo_->isValid() || !fbo_->bind()) {
        error = "Failure setting pixel format!";
        return false;
    }
    return true;
}

void OffscreenView::MakeCurrent() {
    if (surfaceless_) {
        surfaceless_->MakeCurrent();
        return;
    }
    context_->makeCurrent(surface_.get());
    fbo_->bind();
}

// The framebuffer's colours as the screen would show them: alpha is ignored (reading
// through QOpenGLFramebufferObject would treat them as premultiplied and brighten every
// pixel a blended glow left with alpha below 1).
QImage OffscreenView::Read() {
    MakeCurrent();
    glFinish();
    QImage image(width_, height_, QImage::Format_RGBX8888);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, width_, height_, GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    return image.mirrored(false, true);
}

void OffscreenView::Load(const ModelData& model, const LoadedTextures* loaded,
                         const std::vector<std::uint32_t>& missing) {
    MakeCurrent();
    if (loaded == nullptr || loaded->Slots.size() != model.Textures.size()) {
        renderer_.UploadPlaceholders(static_cast<int>(model.Textures.size()), missing);
        renderer_.BuildSubObjectLists(model, {});
    } else {
        renderer_.BuildSubObjectLists(model, loaded->Slots);
    }
}

QImage OffscreenView::Render(const ModelData& model, const FrameInput& in) {
    MakeCurrent();
    renderer_.ResizeViewport(width_, height_,
                             ProjectionPlanes(in.camera.Zoom, model.Header.Radius));
    renderer_.RenderFrame(model, in);
    return Read().convertToFormat(QImage::Format_RGB32);
}

QImage OffscreenView::RenderTransparent(const ModelData& model, const FrameInput& in) {
    MakeCurrent();
    glClearColor(1, 1, 1, 1);
    const QImage white = Render(model, in);
    glClearColor(0, 0, 0, 0);
    const QImage black = Render(model, in);
    QImage out(width_, height_, QImage::Format_ARGB32);
    for (int y = 0; y < height_; ++y) {
        const auto* w = reinterpret_cast<const QRgb*>(white.constScanLine(y));
        const auto* b = reinterpret_cast<const QRgb*>(black.constScanLine(y));
        auto* o = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < width_; ++x) {
            // Over black a pixel is its colour times alpha; over white that plus 1 - alpha.
            const int shown = std::max({qRed(w[x]) - qRed(b[x]), qGreen(w[x]) - qGreen(b[x]),
                                        qBlue(w[x]) - qBlue(b[x]), 0});
            const int alpha = 255 - std::min(shown, 255);
            if (alpha == 0) {
                o[x] = qRgba(0, 0, 0, 0);
                continue;
            }
            auto unmix = [alpha](int c) { return std::min(255, (c * 255 + alpha / 2) / alpha); };
            o[x] = qRgba(unmix(qRed(b[x])), unmix(qGreen(b[x])), unmix(qBlue(b[x])), alpha);
        }
    }
    return out;
}

QImage OffscreenView::RenderPreview(int t) {
    MakeCurrent();
    renderer_.RenderTexturePreview(t, width_, height_);
    return Read().convertToFormat(QImage::Format_RGB32);
}

bool OffscreenView::LoadGlow(GameData* data, const Settings& settings) {
    std::optional<DecodedImage> image;
    if (data != nullptr) image = DecodeGameTexture("thrustball", *data, settings);
    const bool found = image.has_value();

    if (!image) image = GeneratedGlowImage();
    MakeCurrent();
    renderer_.UploadGlowTexture(image->Width, image->Height, image->Pixels.data());
    return found;
}

FrameInput FittedFrame(const ModelData& model) {
    FrameInput in;
    in.camera.FitView(model.Header.Radius);
    in.selection.modelReady = true;
    in.viewAngles.assign(model.SubObjects.size(), 0.0f);
    return in;
}

}  // namespace mw
