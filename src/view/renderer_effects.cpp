// The renderer's moving and special parts: texture frames and slides, filtering, facing
// quads and glow sprites, the background picture and the texture preview.
#include <cmath>

#include "view/gl.h"
#include "view/renderer.h"

namespace mw {
namespace {

constexpr std::uint32_t kGamAdditive = 2097152;
constexpr std::uint32_t kGamBlended = 4194304;
constexpr double kDegrees = 180.0 / 3.14159265358979;

}  // namespace

void Renderer::UploadTextureFrame(int t, const TextureSlot& slot, const FrameStore& frames) {
    if (t < 0 || static_cast<std::size_t>(t) >= textures_.size() || slot.FrameCount <= 0) return;
    const std::size_t start = slot.FrameBase + static_cast<std::size_t>(slot.CurrentFrame) *
                                                   static_cast<std::size_t>(slot.PixelCount);
    if (start + static_cast<std::size_t>(slot.PixelCount) > frames.Pixels.size()) return;
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, textures_[static_cast<std::size_t>(t)]);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, slot.Width, slot.Height, GL_RGBA, GL_UNSIGNED_BYTE,
                    frames.Pixels.data() + start);
    glDisable(GL_TEXTURE_2D);
}

void Renderer::SetTextureOffset(int t, float u, float v) {
    if (t < 0 || t >= texMatrixCount_) return;
    glNewList(texMatrixBase_ + static_cast<unsigned>(t), GL_COMPILE);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glTranslatef(u, v, 0);
    glMatrixMode(GL_MODELVIEW);
    glEndList();
}

void Renderer::ApplyFiltering(bool bilinear) {
    bilinear_ = bilinear;
    if (textures_.empty()) return;
    const GLint filter = bilinear ? GL_LINEAR : GL_NEAREST;
    glEnable(GL_TEXTURE_2D);
    for (unsigned name : textures_) {
        glBindTexture(GL_TEXTURE_2D, name);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    }
    glDisable(GL_TEXTURE_2D);
}

void Renderer::UploadGlowTexture(int width, int height, const std::uint32_t* pixels) {
    if (glowTexture_ == 0) glGenTextures(1, &glowTexture_);
    BindTextureForUpload(glowTexture_, GL_CLAMP, GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    glDisable(GL_TEXTURE_2D);
}

void Renderer::UploadBackground(const BackgroundImage* image) {
    backgroundLoaded_ = false;
    if (image == nullptr || image->Width <= 0 || image->Height <= 0) return;
    if (backgroundTexture_ == 0) glGenTextures(1, &backgroundTexture_);
    BindTextureForUpload(backgroundTexture_, GL_REPEAT, GL_NEAREST);
    gluBuild2DMipmaps(GL_TEXTURE_2D, 3, image->Width, image->Height, GL_RGB, GL_UNSIGNED_BYTE,
                      image->Rgb.data());
    glDisable(GL_TEXTURE_2D);

    // The picture stretched over the whole viewport, behind everything.
    if (backgroundList_ == 0) backgroundList_ = glGenLists(1);
    glNewList(backgroundList_, GL_COMPILE);
    DrawViewportTexture(backgroundTexture_, false);
    glEndList();
    backgroundLoaded_ = true;
}

void Renderer::DrawViewportTexture(unsigned texture, bool firstRowAtTop) {
    glDisable(GL_CULL_FACE);
    glDisable(GL_LIGHTING);
    glDepthMask(GL_FALSE);
    glDisable(GL_DEPTH_TEST);
    glMatrixMode(GL_PROJECTION);
    glPolygonMode(GL_FRONT, GL_FILL);
    glPushMatrix();
    glLoadIdentity();
    // With the first row at the top, y grows downwards.
    glOrtho(0, 1, firstRowAtTop ? 1 : 0, firstRowAtTop ? 0 : 1, -1, 1);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture);
    SetColour(PaletteColour::White);
    glBegin(GL_QUADS);
    const float corners[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (const auto& c : corners) {
        glTexCoord2f(c[0], c[1]);
        glVertex2f(c[0], c[1]);
    }
    glEnd();
    glDisable(GL_TEXTURE_2D);
    SetColour(PaletteColour::Black);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
    glEnable(GL_CULL_FACE);
    glMatrixMode(GL_MODELVIEW);
}

void Renderer::RenderTexturePreview(int t, int width, int height) {
    glViewport(0, 0, width, height);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (t >= 0 && static_cast<std::size_t>(t) < textures_.size()) {
        DrawViewportTexture(textures_[static_cast<std::size_t>(t)], true);
    }
    glViewport(0, 0, width_, height_);
}

bool Renderer::ColourChanged(const FrameInput& in, std::uint32_t& reference) const {
    std::uint32_t colour = 0;
    glReadPixels(in.mouseX, height_ - in.mouseY, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &colour);
    const bool changed = colour != reference;
    reference = colour;
    return changed;
}

void Renderer::SetBlendForTexture(int t) {
    const std::uint32_t flags =
        static_cast<std::size_t>(t) < gamFlags_.size() ? gamFlags_[static_cast<std::size_t>(t)] : 0;
    if (flags & (kGamAdditive | kGamBlended)) {
        glColor4f(1, 1, 1, gamAlpha_[static_cast<std::size_t>(t)]);
        glDisable(GL_ALPHA_TEST);
        glBlendFunc(GL_SRC_ALPHA, (flags & kGamAdditive) ? GL_ONE : GL_ONE_MINUS_SRC_ALPHA);
    } else {
        glEnable(GL_ALPHA_TEST);
        glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        SetColour(PaletteColour::White);
    }
}

void Renderer::DrawFacing(const ModelData& model, const FrameInput& in, bool picking) {
    if (facing_.empty()) return;
    std::uint32_t reference = 0;
    if (picking) ColourChanged(in, reference);
    glDisable(GL_COLOR_MATERIAL);
    glShadeModel(GL_FLAT);
    glDepthMask(GL_FALSE);
    for (const Effect& e : facing_) {
        glLoadMatrixf(TranslationMatrix(e.origin).m.data());
        const SubObject& sub = model.Sub(e.s);
        if (sub.Faces.empty() || sub.Faces[0].VertexCount < 3 || sub.Corners.size() < 3) continue;
        auto corner = [&](int c) {
            return sub
                .Vertices[static_cast<std::size_t>(
                    sub.Corners[static_cast<std::size_t>(c)].VertexIndex)]
                .Position;
        };
        const float h =
            0.5f * Length(Subtract(corner(2), corner(1))) * Length(Subtract(corner(1), corner(0)));
        const Face& face = sub.Faces[0];
        const bool highlighted = e.s == in.selection.hiliteSOBJ || e.s == in.selection.hiliteSOBJ2;
        const int t = face.TextureIndex;
        if (in.display.Type == ViewType::Textured && !highlighted && t >= 0 &&
            static_cast<std::size_t>(t) < textures_.size()) {
            glEnable(GL_TEXTURE_2D);
            glDisable(GL_LIGHTING);
            glEnable(GL_BLEND);
            SetBlendForTexture(t);
            glBindTexture(GL_TEXTURE_2D, textures_[static_cast<std::size_t>(t)]);
            if (t < texMatrixCount_) glCallList(texMatrixBase_ + static_cast<unsigned>(t));
            glBegin(GL_QUADS);
            glTexCoord2f(0, 0);
            glVertex3f(-h, h, 0);
            glTexCoord2f(1, 0);
            glVertex3f(h, h, 0);
            glTexCoord2f(1, 1);
            glVertex3f(h, -h, 0);
            glTexCoord2f(0, 1);
            glVertex3f(-h, -h, 0);
            glEnd();
            glDisable(GL_BLEND);
            glDisable(GL_ALPHA_TEST);
            glDisable(GL_TEXTURE_2D);
            glEnable(GL_LIGHTING);
        } else {
            glEnable(GL_COLOR_MATERIAL);
            if (e.s == in.selection.hiliteSOBJ2) {
                SetColour(PaletteColour::LightGreen);
            } else if (e.s == in.selection.hiliteSOBJ) {
                SetColour(PaletteColour::LightMagenta);
            } else if (in.display.ThreeD) {
                SetColour(PaletteColour::White);
            } else {
                glColor4ubv(face.Color.data());
            }
            glBegin(GL_QUADS);
            glNormal3f(0, 0, 1);
            glVertex3f(-h, h, 0);
            glVertex3f(h, h, 0);
            glVertex3f(h, -h, 0);
            glVertex3f(-h, -h, 0);
            glEnd();
            glDisable(GL_COLOR_MATERIAL);
        }
        if (picking && ColourChanged(in, reference)) picked_ = e.s;
    }
}

void Renderer::DrawGlows(const ModelData& model, const FrameInput& in, bool picking) {
    if (glows_.empty()) return;
    std::uint32_t reference = 0;
    if (picking) ColourChanged(in, reference);
    glDisable(GL_LIGHTING);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glShadeModel(GL_FLAT);
    glDisable(GL_DITHER);
    glDisable(GL_CULL_FACE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, glowTexture_);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    for (const Effect& e : glows_) {
        const SubObject& sub = model.Sub(e.s);
        const float s = sub.GlowSize;
        glLoadMatrixf(TranslationMatrix(e.origin).m.data());
        float x = e.origin.X, y = e.origin.Y, z = e.origin.Z;
        if (z == 0.0f) z = 1.0f;
        const double a = std::atan(x / z) * kDegrees;
        const double b = std::atan(y / z) * kDegrees;
        z = std::fabs(z);
        glRotated(b, -1, 0, 0);
        glRotated(a, 0, 1, 0);
        // In front of its own part, but never across the near plane.
        const double nearPlane = planes_.Near;
        if (z - 1.4 * s > nearPlane + 1.0) {
            glTranslated(0, 0, 1.4 * s);
            const double f = (z - 1.4 * s) / z;
            glScaled(f, f, f);
        } else {
            glTranslated(0, 0, z - nearPlane - 1.0);
            const double f = nearPlane / z;
            glScaled(f, f, f);
        }
        const auto& c = sub.GlowColor;
        if (in.display.ThreeD) {
            const float m = (c[0] + c[1] + c[2]) / 3.0f;
            glColor4f(m, m, m, 0.8f);
        } else {
            glColor4f(c[0], c[1], c[2], 0.8f);
        }
        glBegin(GL_QUADS);
        glTexCoord2f(0, 0);
        glVertex3f(-s, -s, 0);
        glTexCoord2f(1, 0);
        glVertex3f(s, -s, 0);
        glTexCoord2f(1, 1);
        glVertex3f(s, s, 0);
        glTexCoord2f(0, 1);
        glVertex3f(-s, s, 0);
        glEnd();
        const bool target = e.s == in.selection.hiliteSOBJ2;
        if (target || e.s == in.selection.hiliteSOBJ) {
            glDisable(GL_TEXTURE_2D);
            SetColour(target ? PaletteColour::LightGreen : PaletteColour::LightMagenta);
            glBegin(GL_LINE_LOOP);
            glVertex3f(-s, -s, 0);
            glVertex3f(s, -s, 0);
            glVertex3f(s, s, 0);
            glVertex3f(-s, s, 0);
            glEnd();
            glEnable(GL_TEXTURE_2D);
        }
        if (picking && ColourChanged(in, reference)) picked_ = e.s;
    }
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glEnable(GL_LIGHTING);
    glEnable(GL_DITHER);
    if (in.display.Type != ViewType::Wireframe) glEnable(GL_CULL_FACE);
}

}  // namespace mw
