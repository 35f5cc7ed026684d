#include "view/renderer.h"

#include <cmath>

#include "model/geometry.h"
#include "model/keys.h"
#include "view/gl.h"
#include "view/gl_model.h"

namespace mw {
namespace {

constexpr std::uint32_t kPropFacingBit = 4096;
constexpr std::uint32_t kPropFovBit = 2;
constexpr std::uint32_t kPropRotateBit = 1;

void Cross(Vector3 p, float size = 1.0f) {
    glBegin(GL_LINES);
    GlVertex({p.X - size, p.Y, p.Z});
    GlVertex({p.X + size, p.Y, p.Z});
    GlVertex({p.X, p.Y - size, p.Z});
    GlVertex({p.X, p.Y + size, p.Z});
    GlVertex({p.X, p.Y, p.Z - size});
    GlVertex({p.X, p.Y, p.Z + size});
    glEnd();
}

// Fraction of the way from key k to the next key at a frame.
template <typename Key>
float KeyFraction(const std::vector<Key>& keys, int k, float frame) {
    if (k + 1 >= static_cast<int>(keys.size())) return 0.0f;
    const float f0 = static_cast<float>(keys[static_cast<std::size_t>(k)].Frame);
    const float f1 = static_cast<float>(keys[static_cast<std::size_t>(k) + 1].Frame);
    return f1 > f0 ? (frame - f0) / (f1 - f0) : 0.0f;
}

// The first frame of a trajectory: the key before the current one when the frame sits on a
// key, the current key when it lies between keys, 0 without keys.
template <typename Key>
float TrajectoryStart(const std::vector<Key>& keys, int k, float frame) {
    if (k < 0) return 0.0f;
    if (frame == std::floor(frame)) {
        return k > 0 ? static_cast<float>(keys[static_cast<std::size_t>(k) - 1].Frame) : 0.0f;
    }
    return static_cast<float>(keys[static_cast<std::size_t>(k)].Frame);
}

}  // namespace

void Renderer::SetColour(PaletteColour c) const {
    glColor4ubv(ViewPalette(c).data());
}

bool Renderer::InitGLState() {
    glClearColor(0, 0, 0, 0);
    glClearDepth(1.0);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glFrontFace(GL_CW);
    glEnable(GL_DITHER);
    glDisable(GL_LINE_SMOOTH);
    glDisable(GL_POLYGON_SMOOTH);
    glDisable(GL_POINT_SMOOTH);
    glDisable(GL_TEXTURE_GEN_S);
    glDisable(GL_TEXTURE_GEN_T);
    glDisable(GL_POLYGON_OFFSET_FILL);
    glAlphaFunc(GL_GREATER, 0.0f);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);
    glHint(GL_LINE_SMOOTH_HINT, GL_FASTEST);
    glHint(GL_POINT_SMOOTH_HINT, GL_FASTEST);
    glHint(GL_POLYGON_SMOOTH_HINT, GL_FASTEST);

    const GLfloat position[] = {0, 350, 350, 0};
    const GLfloat ambient[] = {0.25f, 0.25f, 0.25f, 1.0f};
    const GLfloat diffuse[] = {0.25f, 0.25f, 0.25f, 1.0f};
    const GLfloat specular[] = {0.33f, 0.33f, 0.33f, 1.0f};
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    glLightfv(GL_LIGHT0, GL_AMBIENT, ambient);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, diffuse);
    glLightfv(GL_LIGHT0, GL_SPECULAR, specular);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_FALSE);
    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, GL_FALSE);
    glEnable(GL_LIGHT0);
    glEnable(GL_LIGHTING);

    const GLfloat white[] = {1, 1, 1, 1};
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, white);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 4.0f);
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, white);

    // A black emission, then colour material for ambient and diffuse, off until used.
    glColorMaterial(GL_FRONT_AND_BACK, GL_EMISSION);
    glEnable(GL_COLOR_MATERIAL);
    SetColour(PaletteColour::Black);
    glDisable(GL_COLOR_MATERIAL);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);

    haveFont_ = BuildGlyphs();
    BuildAxisLists();
    return haveFont_;
}

void Renderer::ReleaseGL() {
    if (!textures_.empty())
        glDeleteTextures(static_cast<GLsizei>(textures_.size()), textures_.data());
    textures_.clear();
    if (listCount_ > 0) {
        glDeleteLists(flatBase_, listCount_);
        glDeleteLists(smoothBase_, listCount_);
        glDeleteLists(texturedBase_, listCount_);
    }
    listCount_ = 0;
    if (glyphBase_ != 0) glDeleteLists(glyphBase_, 255);
    glyphBase_ = 0;
    haveFont_ = false;
    if (axisLists_ != 0) glDeleteLists(axisLists_, 2);
    axisLists_ = 0;
    if (texMatrixCount_ > 0) glDeleteLists(texMatrixBase_, texMatrixCount_);
    texMatrixCount_ = 0;
    if (glowTexture_ != 0) glDeleteTextures(1, &glowTexture_);
    glowTexture_ = 0;
    if (backgroundTexture_ != 0) glDeleteTextures(1, &backgroundTexture_);
    backgroundTexture_ = 0;
    if (backgroundList_ != 0) glDeleteLists(backgroundList_, 1);
    backgroundList_ = 0;
    backgroundLoaded_ = false;
}

void Renderer::ResizeViewport(int width, int height, ClipPlanes planes) {
    width_ = width;
    height_ = height == 0 ? 1 : height;
    planes_ = planes;
    const double aspect = static_cast<double>(width_) / static_cast<double>(height_);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(kFieldOfView, aspect, planes.Near, planes.Far);
    glViewport(0, 0, width_, height_);
}

float Renderer::ReadDepth(const FrameInput& in) const {
    float depth = 1.0f;
    glReadPixels(in.mouseX, height_ - in.mouseY, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    return depth;
}

void Renderer::RenderFrame(const ModelData& model, const FrameInput& in) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (in.display.ShowBackground && backgroundLoaded_) glCallList(backgroundList_);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    picked_ = -1;
    const bool ready = in.selection.modelReady && model.SubObjectCount() > 0;
    if (!in.display.ThreeD) {
        glTranslatef(0, 0, -1.0f);
        if (ready) DrawModel(model, in);
    } else if (ready) {
        // The left eye in red, then the right eye in green and blue.
        glTranslatef(0, 0, -1.0f);
        glRotatef(1.0f, 0, 1, 0);
        glColorMask(GL_TRUE, GL_FALSE, GL_FALSE, GL_TRUE);
        DrawModel(model, in);
        glClear(GL_DEPTH_BUFFER_BIT);
        glColorMask(GL_FALSE, GL_TRUE, GL_TRUE, GL_TRUE);
        glLoadIdentity();
        glTranslatef(0, 0, -1.0f);
        glRotatef(-1.0f, 0, 1, 0);
        DrawModel(model, in);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    }
    if (in.display.ShowAxisOverlay) DrawAxisOverlay(in);
    glFlush();
}

void Renderer::ApplyAnimation(const ModelData& model, const FrameInput& in, int s, float posFrame,
                              float rotFrame, bool rotator) {
    const SubObject& sub = model.Sub(s);
    if (model.HasPANI) {
        const int k = GetPANIindex(model, s, static_cast<int>(std::floor(posFrame)), false);
        if (k >= 0) {
            const float t = KeyFraction(sub.Pos.Keys, k, posFrame);
            Translate(InterpolatedPosition(model, s, k, t));
        }
    }
    if (model.HasRANI && (sub.PropertyFlags & kPropFovBit) == 0) {
        if (rotator && (sub.PropertyFlags & kPropRotateBit) && in.display.RotatorAnimation &&
            sub.Rot.Keys.size() > 1 && sub.RotateSpeed != 0.0f) {
            const Vector3 axis = sub.Rot.Keys[1].Axis;
            const float angle = static_cast<std::size_t>(s) < in.viewAngles.size()
                                    ? in.viewAngles[static_cast<std::size_t>(s)]
                                    : 0.0f;
            if (axis.X != 0 || axis.Y != 0 || axis.Z != 0) {
                glRotatef(360.0f * angle / sub.RotateSpeed, axis.X, -axis.Y, -axis.Z);
            }
        }
        const int k = GetRANIindex(model, s, static_cast<int>(std::floor(rotFrame)), false);
        if (k >= 0) {
            const float t = KeyFraction(sub.Rot.Keys, k, rotFrame);
            glMultMatrixf(InterpolatedRotation(model, s, k, t).m.data());
        }
    }
}

void Renderer::DrawModel(const ModelData& model, const FrameInput& in) {
    const DisplaySettings& d = in.display;
    const SelectionState& sel = in.selection;
    GLUquadric* quadric = gluNewQuadric();
    gluQuadricNormals(quadric, GLU_SMOOTH);

    const Camera& cam = in.camera;
    glTranslatef(cam.PanX, cam.PanY, cam.Zoom);
    glRotatef(cam.AngleX, 1, 0, 0);
    glRotatef(cam.AngleY, 0, 1, 0);

    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glEnable(GL_COLOR_MATERIAL);
    glDisable(GL_CULL_FACE);
    if (d.ShowModelRadius) {
        SetColour(PaletteColour::White);
        gluSphere(quadric, model.Header.Radius, 8, 8);
    }
    if (model.Special) {
        glPushMatrix();
        Translate(model.Special->Position);
        glDisable(GL_LIGHTING);
        SetColour(PaletteColour::Yellow);
        if (d.ViewPoints) Cross({});
        glEnable(GL_LIGHTING);
        if (d.ShowSPCLRadius) gluSphere(quadric, model.Special->Radius, 8, 8);
        glPopMatrix();
    }
    glDisable(GL_COLOR_MATERIAL);
    const bool wire = d.Type == ViewType::Wireframe;
    auto restoreFill = [&] {
        if (!wire) {
            glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
            glEnable(GL_CULL_FACE);
        }
    };
    restoreFill();

    const bool picking = in.pick && d.Mode == ViewMode::Selection;
    facing_.clear();
    glows_.clear();
    float reference = 1.0f;
    bool pointHit = false;
    if (picking) reference = ReadDepth(in);

    for (int i = 0; i < model.SubObjectCount(); ++i) {
        const int s = model.Head(i);
        const SubObject& sub = model.Sub(s);
        const auto si = static_cast<std::size_t>(s);
        if (si < model.PushFlags.size() && model.PushFlags[si]) glPushMatrix();
        Translate(sub.Offset);
        // Facing parts are drawn as screen-aligned quads and glowing parts get a sprite,
        // both after the walk, at the eye-space origin they have here.
        const bool facing = d.Facing && (sub.PropertyFlags & kPropFacingBit);
        if (facing || (d.Glow && (sub.PropertyFlags & kPropGlow))) {
            Matrix4 current;
            glGetFloatv(GL_MODELVIEW_MATRIX, current.m.data());
            (facing ? facing_ : glows_).push_back({s, GetTranslation(current)});
            if (facing && d.Glow && (sub.PropertyFlags & kPropGlow)) {
                glows_.push_back({s, GetTranslation(current)});
            }
        }
        if (s == sel.hiliteSOBJ) glGetFloatv(GL_MODELVIEW_MATRIX, trajectoryMatrix_);
        ApplyAnimation(model, in, s, in.curFrame, in.curFrame, true);
        if (s == sel.hiliteSOBJ) glGetDoublev(GL_MODELVIEW_MATRIX, hiliteMatrix_);
        DrawSubObjectAids(model, in, s);

        PaletteColour colour = PaletteColour::White;
        if (s == sel.hiliteSOBJ2) {
            colour = PaletteColour::LightGreen;
        } else if (s == sel.hiliteSOBJ) {
            colour = PaletteColour::LightMagenta;
        }
        const bool highlighted = s == sel.hiliteSOBJ || s == sel.hiliteSOBJ2;
        if (highlighted || d.ThreeD || sub.Faces.empty()) {
            SetColour(colour);
        } else {
            glColor4ubv(sub.Faces[0].Color.data());
        }
        for (int e : model.MergeTable[static_cast<std::size_t>(i)]) {
            if (facing) break;
            if (d.Type == ViewType::Textured && !highlighted) {
                glCallList(texturedBase_ + static_cast<unsigned>(e));
            } else if (d.Type == ViewType::FlatSolid) {
                glCallList(flatBase_ + static_cast<unsigned>(e));
            } else {
                glCallList(smoothBase_ + static_cast<unsigned>(e));
            }
        }
        if (picking && !facing) {
            const float depth = ReadDepth(in);
            if (depth != reference) picked_ = s;
            reference = depth;
        }
        if (d.ViewNormals && !facing) {
            for (int e : model.MergeTable[static_cast<std::size_t>(i)])
                DrawNormals(model, in, e);
        }
        if (d.ViewPoints) {
            DrawPoints(model, in, s);
            if (picking) {
                const float depth = ReadDepth(in);
                if (depth != reference) pointHit = true;
                reference = depth;
            }
        }
        if (si < model.PopFlags.size() && model.PopFlags[si]) glPopMatrix();
    }
    if (pointHit) picked_ = -1;

    if (d.ViewTrajectories && sel.hiliteSOBJ != -1 && (model.HasPANI || model.HasRANI) &&
        GetArrayIndex(model, sel.hiliteSOBJ) >= 0) {
        DrawTrajectories(model, in);
    }
    DrawFacing(model, in, picking);
    DrawGlows(model, in, picking);
    glDepthMask(GL_TRUE);
    if (sel.hiliteSOBJ != -1 && GetArrayIndex(model, sel.hiliteSOBJ) >= 0) DrawSelectionAxes(in);
    gluDeleteQuadric(quadric);
}

void Renderer::DrawSubObjectAids(const ModelData& model, const FrameInput& in, int s) {
    if (s != in.selection.hiliteSOBJ) return;
    const SubObject& sub = model.Sub(s);
    const bool wire = in.display.Type == ViewType::Wireframe;
    if (in.display.ShowSOBJRadius) {
        GLUquadric* q = gluNewQuadric();
        glEnable(GL_COLOR_MATERIAL);
        SetColour(PaletteColour::LightBlue);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        glDisable(GL_CULL_FACE);
        gluSphere(q, sub.Radius, 8, 8);
        glDisable(GL_COLOR_MATERIAL);
        gluDeleteQuadric(q);
    }
    if (in.display.ShowSOBJBounding) {
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        glDisable(GL_CULL_FACE);
        glDisable(GL_LIGHTING);
        SetColour(PaletteColour::Yellow);
        const Vector3 a = sub.BoxMin, b = sub.BoxMax;
        for (float z : {a.Z, b.Z}) {
            glBegin(GL_QUADS);
            GlVertex({a.X, a.Y, z});
            GlVertex({b.X, a.Y, z});
            GlVertex({b.X, b.Y, z});
            GlVertex({a.X, b.Y, z});
            glEnd();
        }
        glBegin(GL_LINES);
        for (float x : {a.X, b.X}) {
            for (float y : {a.Y, b.Y}) {
                GlVertex({x, y, a.Z});
                GlVertex({x, y, b.Z});
            }
        }
        glEnd();
        Cross(Midpoint(a, b));
        glEnable(GL_LIGHTING);
    }
    if (!wire) {
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        glEnable(GL_CULL_FACE);
    }
}

void Renderer::DrawPoints(const ModelData& model, const FrameInput& in, int s) {
    glDisable(GL_LIGHTING);
    glShadeModel(GL_FLAT);
    const PaletteColour typeColour[] = {PaletteColour::Orange, PaletteColour::Magenta,
                                        PaletteColour::Green, PaletteColour::Red};
    std::size_t most = 0;
    for (PointType t : kPointTypes)
        most = std::max(most, model.Points(t).size());
    for (std::size_t k = 0; k < most; ++k) {
        for (std::size_t type = 0; type < 4; ++type) {
            const auto& list = model.Points(kPointTypes[type]);
            if (k >= list.size() || list[k].Parent != s) continue;
            const bool selected = in.selection.curPNTtype == PointTag(kPointTypes[type]) &&
                                  in.selection.curPNT == static_cast<int>(k);
            SetColour(selected            ? PaletteColour::LightYellow
                      : in.display.ThreeD ? PaletteColour::LightGrey
                                          : typeColour[type]);
            Cross(list[k].Position);
            SetColour(PaletteColour::White);
            glBegin(GL_LINES);
            GlVertex(list[k].Position);
            GlVertex(Add(list[k].Position, Scale(list[k].Normal, 2.0f)));
            glEnd();
        }
    }
    glEnable(GL_LIGHTING);
}

void Renderer::DrawNormals(const ModelData& model, const FrameInput& in, int e) {
    glDisable(GL_LIGHTING);
    glShadeModel(GL_SMOOTH);
    glBegin(GL_LINES);
    for (const mw::Vertex& v : model.Sub(e).Vertices) {
        SetColour(in.display.ThreeD ? PaletteColour::LightMagenta : PaletteColour::Magenta);
        GlVertex(v.Position);
        SetColour(PaletteColour::White);
        GlVertex(Add(v.Position, Normalize(v.Normal)));
    }
    glEnd();
    glEnable(GL_LIGHTING);
    glShadeModel(in.display.Type == ViewType::SmoothSolid ? GL_SMOOTH : GL_FLAT);
}

void Renderer::DrawTrajectories(const ModelData& model, const FrameInput& in) {
    const int s = in.selection.hiliteSOBJ;
    const SubObject& sub = model.Sub(s);
    const int column = GetArrayIndex(model, s);
    const int frame = static_cast<int>(std::floor(in.curFrame));
    const float p0 =
        TrajectoryStart(sub.Pos.Keys, GetPANIindex(model, s, frame, false), in.curFrame);
    const float r0 =
        TrajectoryStart(sub.Rot.Keys, GetRANIindex(model, s, frame, false), in.curFrame);
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(trajectoryMatrix_);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    for (int n = 0; n < 6; ++n) {
        glPushMatrix();
        const float fp = p0 + static_cast<float>(n) * (in.curFrame - p0) / 6.0f;
        const float fr = r0 + static_cast<float>(n) * (in.curFrame - r0) / 6.0f;
        ApplyAnimation(model, in, s, fp, fr, false);
        const auto alpha = static_cast<GLubyte>((31 * n) % 256 + 100);
        if (in.display.ThreeD) {
            glColor4ub(255, 255, 0, alpha);
        } else {
            glColor4ub(0, 255, 0, alpha);
        }
        for (int e : model.MergeTable[static_cast<std::size_t>(column)]) {
            glCallList(flatBase_ + static_cast<unsigned>(e));
        }
        glPopMatrix();
    }
    glDisable(GL_BLEND);
    glEnable(GL_LIGHTING);
    if (in.display.Type != ViewType::Wireframe) glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

void Renderer::DrawTripod(const FrameInput& in, double x, double y) {
    // One unit is 25 pixels; (x, y) in units from the lower left corner.
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, width_ / 25.0, 0, height_ / 25.0, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslated(x, y, 0);
    glRotatef(in.camera.AngleX, 1, 0, 0);
    glRotatef(in.camera.AngleY, 0, 1, 0);
    glCallList(axisLists_ + (in.display.ThreeD ? 1u : 0u));
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
}

void Renderer::DrawAxisOverlay(const FrameInput& in) {
    DrawTripod(in, 1.0, 1.0);
}

void Renderer::DrawSelectionAxes(const FrameInput& in) {
    double projection[16];
    int viewport[4];
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    double wx = 0, wy = 0, wz = 0;
    if (gluProject(0, 0, 0, hiliteMatrix_, projection, viewport, &wx, &wy, &wz) != GL_TRUE) return;
    DrawTripod(in, wx / 25.0, wy / 25.0);
}

}  // namespace mw
