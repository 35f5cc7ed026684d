#include "editor/panels/texture_preview.h"

#include "editor/model_textures.h"
#include "view/gl.h"

namespace mw {

TexturePreview::TexturePreview(const ModelTextures& textures, QWidget* parent)
    : QOpenGLWidget(parent), textures_(textures) {
    setObjectName("picTexture");
    setAccessibleName("Texture Preview");
    // New pictures for the same index: upload again.
    connect(&textures_, &ModelTextures::texturesChanged, this, [this] {
        uploaded_ = -1;
        update();
    });
}

TexturePreview::~TexturePreview() {
    if (glReady_) {
        makeCurrent();
        renderer_.ReleaseGL();
        doneCurrent();
    }
}

void TexturePreview::SetTexture(int t) {
    texture_ = t;
    update();
}

void TexturePreview::initializeGL() {
    glClearColor(0, 0, 0, 1);
    glReady_ = true;
}

void TexturePreview::paintGL() {
    const qreal ratio = devicePixelRatioF();
    const int w = static_cast<int>(width() * ratio), h = static_cast<int>(height() * ratio);
    const RgbaImage* picture = textures_.picture(texture_);
    if (picture == nullptr) {
        glViewport(0, 0, w, h);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        return;
    }
    if (uploaded_ != texture_) {
        renderer_.AllocModelTextures(1);
        renderer_.UploadModelTexture(0, picture->Width, picture->Height, picture->Pixels.data());
        uploaded_ = texture_;
    }
    renderer_.RenderTexturePreview(0, w, h);
}

}  // namespace mw
