// The display lists of the renderer: per-sub-object geometry, the axis tripod, the label
// glyphs, and the model textures.
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "model/text_codec.h"
#include "view/gl.h"
#include "view/gl_model.h"
#include "view/renderer.h"

namespace mw {
namespace {

constexpr std::uint32_t kGamAdditive = 2097152;
constexpr std::uint32_t kGamBlended = 4194304;

// A face's corners, given the index of its first corner.
template <typename Fn>
void ForEachFace(const SubObject& sub, Fn&& fn) {
    std::size_t corner = 0;
    for (const Face& face : sub.Faces) {
        fn(face, corner);
        corner += static_cast<std::size_t>(face.VertexCount > 0 ? face.VertexCount : 0);
    }
}

void FaceGeometry(const SubObject& sub, const Face& face, std::size_t first, bool smooth,
                  bool textured) {
    glBegin(static_cast<GLenum>(face.Primitive));
    // Stored normals need not be of unit length; lighting wants unit ones.
    if (!smooth) Normal(Normalize(face.Normal));
    for (int c = 0;
         c < face.VertexCount && first + static_cast<std::size_t>(c) < sub.Corners.size(); ++c) {
        const FaceVertex& fv = sub.Corners[first + static_cast<std::size_t>(c)];
        const mw::Vertex& v = sub.Vertices[static_cast<std::size_t>(fv.VertexIndex)];
        if (textured) glTexCoord2f(fv.U, fv.V);
        if (smooth) Normal(Normalize(v.Normal));
        GlVertex(v.Position);
    }
    glEnd();
}

void Points(const SubObject& sub) {
    glDisable(GL_LIGHTING);
    glBegin(GL_POINTS);
    for (const mw::Vertex& v : sub.Vertices)
        GlVertex(v.Position);
    glEnd();
    glEnable(GL_LIGHTING);
}

}  // namespace

void Renderer::BuildSubObjectLists(const ModelData& model,
                                   const std::vector<TextureSlot>& textures) {
    blended_.assign(model.Textures.size(), false);
    gamFlags_.assign(model.Textures.size(), 0);
    gamAlpha_.assign(model.Textures.size(), 1.0f);
    for (std::size_t t = 0; t < textures.size() && t < model.Textures.size(); ++t) {
        gamFlags_[t] = textures[t].Gam.GamFlags;
        gamAlpha_[t] = textures[t].Gam.Alpha();
        blended_[t] = (gamFlags_[t] & (kGamAdditive | kGamBlended)) != 0 || textures[t].HasAlpha;
    }
    if (listCount_ > 0) {
        glDeleteLists(flatBase_, listCount_);
        glDeleteLists(smoothBase_, listCount_);
        glDeleteLists(texturedBase_, listCount_);
    }
    listCount_ = static_cast<int>(model.SubObjects.size());
    if (listCount_ == 0) return;
    flatBase_ = glGenLists(listCount_);
    smoothBase_ = glGenLists(listCount_);
    texturedBase_ = glGenLists(listCount_);
    for (int s = 0; s < listCount_; ++s)
        CompileSubObject(model, s);
}

void Renderer::CompileSubObject(const ModelData& model, int s) {
    if (s < 0 || s >= listCount_) return;
    ++listBuilds_;
    const SubObject& sub = model.Sub(s);
    const auto index = static_cast<unsigned>(s);
    glNewList(flatBase_ + index, GL_COMPILE);
    CompileFaces(sub, false);
    glEndList();
    glNewList(smoothBase_ + index, GL_COMPILE);
    CompileFaces(sub, true);
    glEndList();
    glNewList(texturedBase_ + index, GL_COMPILE);
    CompileTextured(sub);
    glEndList();
}

void Renderer::CompileFaces(const SubObject& sub, bool smooth) {
    glShadeModel(smooth ? GL_SMOOTH : GL_FLAT);
    glEnable(GL_COLOR_MATERIAL);
    if (sub.Faces.empty()) {
        Points(sub);
    } else {
        ForEachFace(sub, [&](const Face& f, std::size_t first) {
            FaceGeometry(sub, f, first, smooth, false);
        });
    }
    glDisable(GL_COLOR_MATERIAL);
}

void Renderer::CompileTextured(const SubObject& sub) {
    glShadeModel(GL_SMOOTH);
    glEnable(GL_COLOR_MATERIAL);
    if (sub.Faces.empty()) {
        Points(sub);
        glDisable(GL_COLOR_MATERIAL);
        return;
    }
    ForEachFace(sub, [&](const Face& f, std::size_t first) {
        if (f.TextureIndex == -1) FaceGeometry(sub, f, first, true, false);
    });
    const int count = static_cast<int>(blended_.size());
    if (count == 0 || textures_.empty()) {
        glDisable(GL_COLOR_MATERIAL);
        return;
    }
    // Opaque textures first in index order, blended ones after them from the end backwards.
    std::vector<int> order(static_cast<std::size_t>(count));
    int front = 0, back = count - 1;
    for (int t = 0; t < count; ++t) {
        order[static_cast<std::size_t>(blended_[static_cast<std::size_t>(t)] ? back-- : front++)] =
            t;
    }
    auto facesOf = [&](int t) {
        ForEachFace(sub, [&](const Face& f, std::size_t first) {
            if (f.TextureIndex == t) FaceGeometry(sub, f, first, false, true);
        });
    };
    auto uses = [&](int t) {
        for (const Face& f : sub.Faces) {
            if (f.TextureIndex == t) return true;
        }
        return false;
    };
    glDisable(GL_LIGHTING);
    glDisable(GL_COLOR_MATERIAL);
    SetColour(PaletteColour::White);
    glShadeModel(GL_FLAT);
    glEnable(GL_TEXTURE_2D);
    for (int i = 0; i < front; ++i) {
        const int t = order[static_cast<std::size_t>(i)];
        if (!uses(t) || static_cast<std::size_t>(t) >= textures_.size()) continue;
        glBindTexture(GL_TEXTURE_2D, textures_[static_cast<std::size_t>(t)]);
        if (t < texMatrixCount_) glCallList(texMatrixBase_ + static_cast<unsigned>(t));
        facesOf(t);
    }
    if (front < count) {
        glEnable(GL_BLEND);
        for (int i = front; i < count; ++i) {
            const int t = order[static_cast<std::size_t>(i)];
            if (!uses(t) || static_cast<std::size_t>(t) >= textures_.size()) continue;
            SetBlendForTexture(t);
            glBindTexture(GL_TEXTURE_2D, textures_[static_cast<std::size_t>(t)]);
            if (t < texMatrixCount_) glCallList(texMatrixBase_ + static_cast<unsigned>(t));
            facesOf(t);
        }
    }
    glDisable(GL_BLEND);
    glDisable(GL_ALPHA_TEST);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_LIGHTING);
}

void Renderer::AllocModelTextures(int count) {
    if (!textures_.empty())
        glDeleteTextures(static_cast<GLsizei>(textures_.size()), textures_.data());
    textures_.assign(static_cast<std::size_t>(count), 0);
    if (count > 0) glGenTextures(count, textures_.data());
}

void Renderer::UploadModelTexture(int texture, int width, int height, const std::uint32_t* pixels) {
    if (texture < 0 || static_cast<std::size_t>(texture) >= textures_.size()) return;
    BindTextureForUpload(textures_[static_cast<std::size_t>(texture)], GL_REPEAT,
                         bilinear_ ? GL_LINEAR : GL_NEAREST);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    glDisable(GL_TEXTURE_2D);
    SetTextureOffset(texture, 0.0f, 0.0f);
}

void Renderer::UploadPlaceholders(int count, const std::vector<std::uint32_t>& missing) {
    AllocModelTextures(count);
    for (int t = 0; t < count; ++t) {
        UploadModelTexture(t, kMissingTextureSize, kMissingTextureSize, missing.data());
    }
}

bool Renderer::BuildGlyphs() {
    if (QGuiApplication::instance() == nullptr) return false;
    QFont font(QStringLiteral("Arial"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(12);
    font.setBold(true);
    const QFontMetrics metrics(font);
    if (metrics.height() <= 0) return false;
    glyphBase_ = glGenLists(255);
    if (glyphBase_ == 0) return false;
    const int h = metrics.height();
    for (int code = 0; code < 255; ++code) {
        const char byte = static_cast<char>(code);
        const QString text = code < 32 ? QString() : QString::fromUtf8(Utf8From1252({&byte, 1}));
        const int w = std::max(1, metrics.horizontalAdvance(text));
        QImage image(w, h, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            painter.setFont(font);
            painter.setPen(Qt::white);
            painter.drawText(0, metrics.ascent(), text);
        }
        // Rows from the bottom, one bit a pixel, most significant bit first.
        const int stride = (w + 7) / 8;
        std::vector<GLubyte> bits(static_cast<std::size_t>(stride * h), 0);
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w; ++x) {
                if (qAlpha(image.pixel(x, h - 1 - y)) > 96) {
                    bits[static_cast<std::size_t>(y * stride + x / 8)] |=
                        static_cast<GLubyte>(0x80 >> (x % 8));
                }
            }
        }
        glNewList(glyphBase_ + static_cast<unsigned>(code), GL_COMPILE);
        glBitmap(w, h, 0, static_cast<float>(metrics.descent()), static_cast<float>(w), 0,
                 bits.data());
        glEndList();
    }
    return true;
}

void Renderer::DrawLabel(const char* text) {
    if (!haveFont_) return;
    glListBase(glyphBase_);
    glCallLists(static_cast<GLsizei>(std::strlen(text)), GL_UNSIGNED_BYTE, text);
}

void Renderer::BuildAxisLists() {
    axisLists_ = glGenLists(2);
    const PaletteColour colours[2][3] = {
        {PaletteColour::Green, PaletteColour::Red, PaletteColour::Blue},
        {PaletteColour::LightGreen, PaletteColour::LightRed, PaletteColour::LightBlue}};
    for (unsigned list = 0; list < 2; ++list) {
        glNewList(axisLists_ + list, GL_COMPILE);
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_LIGHTING);
        glShadeModel(GL_FLAT);
        const float ends[3][3] = {{0, 0.8f, 0}, {0.8f, 0, 0}, {0, 0, 0.8f}};
        const float labels[3][3] = {{0, 0.8f, 0}, {0.88f, 0, 0}, {0, 0, 0.88f}};
        const char* letters[3] = {"Y", "X", "Z"};
        for (int a = 0; a < 3; ++a) {
            SetColour(colours[list][a]);
            glBegin(GL_LINES);
            glVertex3f(0, 0, 0);
            glVertex3fv(ends[a]);
            glEnd();
            if (haveFont_) {
                glRasterPos3fv(labels[a]);
                DrawLabel(letters[a]);
            }
        }
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_LIGHTING);
        glEndList();
    }
}

}  // namespace mw
