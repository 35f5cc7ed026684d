#include "editor/panels/texture_preview.h"

#include <QOpenGLContext>

#include "editor/prompts.h"
#include "editor/viewport.h"
#include "view/gl.h"

namespace mw {

QString RestoreFailureMessage() {
    return "Failure restoring Main Viewport!\n"
           "You should save your model and exit the program. If you\n"
           "continue to experience this problem, you should update\n"
           "your video drivers.\n"
           "See the Help System/Requirements for details.";
}

TexturePreview::TexturePreview(Viewport& viewport, Prompts& prompts, QWidget* parent)
    : QOpenGLWidget(parent), viewport_(viewport), prompts_(prompts) {
    setObjectName("picTexture");
    setAccessibleName("Texture Preview");
    restoreViewport = [this] {
        viewport_.makeCurrent();
        QOpenGLContext* context = viewport_.context();
        const bool ok =
            context != nullptr && context->isValid() && QOpenGLContext::currentContext() == context;
        viewport_.doneCurrent();
        return ok;
    };
    // The check runs once the picture is on screen, outside the preview's own painting.
    connect(this, &QOpenGLWidget::frameSwapped, this, &TexturePreview::RestoreViewport);
}

void TexturePreview::SetTexture(int t) {
    texture_ = t;
    update();
}

void TexturePreview::initializeGL() {
    glClearColor(0, 0, 0, 1);
}

void TexturePreview::paintGL() {
    const qreal ratio = devicePixelRatioF();
    const int w = static_cast<int>(width() * ratio), h = static_cast<int>(height() * ratio);
    drawn_ = texture_ >= 0 && viewport_.glReady();
    if (drawn_) {
        viewport_.renderer().RenderTexturePreview(texture_, w, h);
    } else {
        glViewport(0, 0, w, h);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }
}

void TexturePreview::RestoreViewport() {
    if (!drawn_) return;
    drawn_ = false;
    if (!restoreViewport()) prompts_.Message(this, RestoreFailureMessage(), PromptIcon::Critical);
}

}  // namespace mw
