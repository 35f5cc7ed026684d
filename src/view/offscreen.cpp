#include "view/offscreen.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QSurfaceFormat>

#include "view/gl.h"

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
        context_->doneCurrent();
    }
}

bool OffscreenView::Create(int width, int height, std::string& error) {
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
    renderer_.InitGLState();
    renderer_.ResizeViewport(width, height, {});
    glReady_ = true;
    return true;
}

void OffscreenView::MakeCurrent() {
    context_->makeCurrent(surface_.get());
    fbo_->bind();
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
    renderer_.ResizeViewport(fbo_->width(), fbo_->height(),
                             ProjectionPlanes(in.camera.Zoom, model.Header.Radius));
    renderer_.RenderFrame(model, in);
    glFinish();
    return fbo_->toImage(true).convertToFormat(QImage::Format_RGB32);
}

QImage OffscreenView::RenderPreview(int t) {
    MakeCurrent();
    renderer_.RenderTexturePreview(t, fbo_->width(), fbo_->height());
    glFinish();
    return fbo_->toImage(true).convertToFormat(QImage::Format_RGB32);
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
