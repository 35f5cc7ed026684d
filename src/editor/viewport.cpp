#include "editor/viewport.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <cmath>

#include "editor/document.h"
#include "editor/edit_commands.h"
#include "editor/model_textures.h"
#include "editor/playback.h"
#include "editor/prompts.h"
#include "gamedata/file_names.h"
#include "model/structure.h"
#include "view/background.h"
#include "view/gl.h"

namespace mw {
namespace {

// A cursor coordinate at or past one edge of the screen jumps to just inside the other.
bool WrapToOtherEdge(int& coord, int low, int high) {
    if (coord >= high) {
        coord = low + 1;
    } else if (coord <= low) {
        coord = high - 1;
    } else {
        return false;
    }
    return true;
}

}  // namespace

Viewport::Viewport(Document& doc, const ModelTextures& textures, Playback& playback,
                   Prompts& prompts, QWidget* parent)
    : QOpenGLWidget(parent),
      doc_(doc),
      textures_(textures),
      prompts_(prompts),
      applied_(doc.display()) {
    setObjectName("picMain");
    setAccessibleName("Viewport");
    setMouseTracking(true);
    setMinimumSize(200, 150);
    connect(&playback, &Playback::ticked, this, &Viewport::Advance);
    connectSignals();
    ShowModeCursor();
}

Viewport::~Viewport() {
    if (glReady_) {
        makeCurrent();
        renderer_.ReleaseGL();
        doneCurrent();
    }
}

void Viewport::connectSignals() {
    auto redraw = [this] { update(); };
    connect(&doc_, &Document::modelReset, this, [this] {
        viewAngles_.assign(doc_.model().SubObjects.size(), 0.0f);
        FitView();
    });
    connect(&textures_, &ModelTextures::texturesChanged, this, &Viewport::UploadTextures);
    connect(&textures_, &ModelTextures::glowChanged, this, &Viewport::UploadGlow);
    // Lists hold each record's mesh in its own frame: only meshes that changed are compiled.
    connect(&doc_, &Document::structureChanged, this, [this] { FollowRadius(); });
    connect(&doc_, &Document::geometryChanged, this, [this](const std::vector<int>& records) {
        RebuildLists(records);
        FollowRadius();
    });
    connect(&doc_, &Document::modelValuesChanged, this, [this] { FollowRadius(); });
    for (auto signal :
         {&Document::pointsChanged, &Document::batteriesChanged, &Document::highlightChanged,
          &Document::selectionChanged, &Document::frameChanged}) {
        connect(&doc_, signal, this, redraw);
    }
    connect(&doc_, &Document::subObjectChanged, this, redraw);
    connect(&doc_, &Document::keysChanged, this, redraw);
    connect(&doc_, &Document::displayChanged, this, &Viewport::FollowDisplay);
    connect(&doc_, &Document::backgroundRequested, this, &Viewport::LoadBackground);
}

void Viewport::initializeGL() {
    if (!renderer_.InitGLState())
        prompts_.Message(this, "Failure creating Fonts", PromptIcon::None);
    glReady_ = true;
    applied_ = doc_.display();
    renderer_.ApplyFiltering(applied_.BilinearFiltering);
    UploadGlow();
    LoadBackground();
    UploadTextures();
}

void Viewport::UploadGlow() {
    if (!glReady_) return;
    const RgbaImage& glow = textures_.glow();
    makeCurrent();
    renderer_.UploadGlowTexture(glow.Width, glow.Height, glow.Pixels.data());
    doneCurrent();
    update();
}

void Viewport::LoadBackground() {
    if (!glReady_) return;
    const std::string& picture = doc_.display().BackgroundImage;
    std::optional<BackgroundImage> image;
    if (!picture.empty() && picture.find('.') != std::string::npos &&
        FindFileIgnoringCase(picture)) {
        image = LoadBackgroundPicture(picture);
        if (!image) {
            prompts_.Message(this, QString::fromStdString("Error reading " + FileNameOf(picture)),
                             PromptIcon::None);
        }
    }
    makeCurrent();
    renderer_.UploadBackground(image ? &*image : nullptr);
    doneCurrent();
    update();
    // A picture that cannot be shown is no longer named.
    if (!image && !picture.empty()) {
        DisplaySettings d = doc_.display();
        d.BackgroundImage.clear();
        doc_.SetDisplay(d);
    }
}

// The textures as resolved for the model, uploaded, and the lists compiled with them.
void Viewport::UploadTextures() {
    if (!glReady_) return;
    shown_ = textures_.loaded();
    makeCurrent();
    textures_.UploadTo(renderer_);
    renderer_.BuildSubObjectLists(doc_.model(), shown_.Slots);
    doneCurrent();
    viewAngles_.resize(doc_.model().SubObjects.size(), 0.0f);
    update();
}

void Viewport::FollowDisplay() {
    const DisplaySettings& d = doc_.display();
    if (d.Mode != applied_.Mode) ShowModeCursor();
    if (glReady_) {
        makeCurrent();
        if (d.BilinearFiltering != applied_.BilinearFiltering)
            renderer_.ApplyFiltering(d.BilinearFiltering);
        // Off: every animated texture back to its first frame, every slide back to the start.
        if (!d.TextureAnimation && applied_.TextureAnimation)
            ApplyTextureChanges(renderer_, ResetTextures(shown_.Slots), shown_);
        doneCurrent();
    }
    applied_ = d;
    update();
}

void Viewport::RebuildLists(const std::vector<int>& records) {
    if (glReady_) {
        makeCurrent();
        if (records.empty()) {
            renderer_.BuildSubObjectLists(doc_.model(), shown_.Slots);
        } else {
            for (int r : records)
                renderer_.CompileSubObject(doc_.model(), r);
        }
        doneCurrent();
    }
    viewAngles_.resize(doc_.model().SubObjects.size(), 0.0f);
    update();
}

// A change of the model's radius refits the camera and the clip planes.
void Viewport::FollowRadius() {
    if (doc_.model().Header.Radius != fittedRadius_) FitView();
    update();
}

FrameInput Viewport::Input() const {
    FrameInput in;
    in.camera = camera_;
    in.display = doc_.display();
    in.selection = doc_.selection();
    in.curFrame = doc_.animation().curFrame;
    in.viewAngles = viewAngles_;
    return in;
}

void Viewport::paintGL() {
    const qreal ratio = devicePixelRatioF();
    const ModelData& model = doc_.model();
    renderer_.ResizeViewport(static_cast<int>(std::lround(width() * ratio)),
                             static_cast<int>(std::lround(height() * ratio)),
                             ProjectionPlanes(camera_.Zoom, model.Header.Radius));
    renderer_.RenderFrame(model, Input());
}

int Viewport::PickAt(int x, int y) {
    if (!glReady_) return -1;
    makeCurrent();
    FrameInput in = Input();
    const qreal ratio = devicePixelRatioF();
    in.pick = true;
    in.mouseX = static_cast<int>(std::lround(x * ratio));
    in.mouseY = static_cast<int>(std::lround(y * ratio));
    renderer_.ResizeViewport(static_cast<int>(std::lround(width() * ratio)),
                             static_cast<int>(std::lround(height() * ratio)),
                             ProjectionPlanes(camera_.Zoom, doc_.model().Header.Radius));
    renderer_.RenderFrame(doc_.model(), in);
    doneCurrent();
    update();
    return renderer_.PickedSubObject();
}

void Viewport::FitView() {
    fittedRadius_ = doc_.model().Header.Radius;
    camera_.FitView(fittedRadius_);
    update();
}

void Viewport::ShowModeCursor() {
    switch (doc_.display().Mode) {
        case ViewMode::Selection:
            setCursor(Qt::ArrowCursor);
            break;
        case ViewMode::Zoom:
            setCursor(Qt::SizeVerCursor);
            break;
        case ViewMode::Rotate:
            setCursor(Qt::ClosedHandCursor);
            break;
        case ViewMode::Pan:
            setCursor(Qt::SizeAllCursor);
            break;
    }
}

void Viewport::Advance(float elapsed) {
    const bool ready = doc_.modelReady() && glReady_;
    const bool minimized = window() != nullptr && window()->isMinimized();
    if (!ready || minimized) return;
    const DisplaySettings& d = doc_.display();
    bool changed = false;
    if (d.TextureAnimation && d.Type == ViewType::Textured) {
        const TextureChanges changes = AdvanceTextures(shown_.Slots, elapsed);
        if (changes.any()) {
            makeCurrent();
            ApplyTextureChanges(renderer_, changes, shown_);
            doneCurrent();
            changed = true;
        }
    }
    if (d.RotatorAnimation)
        changed = AdvanceRotators(doc_.model(), viewAngles_, elapsed) || changed;
    if (changed) update();
}

void Viewport::HoverSubObject(int s) {
    const SelectionState& sel = doc_.selection();
    doc_.SetHighlights(sel.hiliteSOBJ, s == sel.hiliteSOBJ ? -1 : s);
}

void Viewport::DropSubObject(bool dragging, bool shift) {
    const int source = doc_.selection().hiliteSOBJ;
    const int target = doc_.selection().hiliteSOBJ2;
    if (!doc_.modelReady() || source == -1) return;
    const ModelData& model = doc_.model();
    if (target == -1) {
        if (!shift && dragging && model.Sub(source).Parent != -1) {
            doc_.Apply(MakeReparentCommand(doc_, source, -1));
        }
        doc_.SelectSubObject(source);
        return;
    }
    if (IsInSubtree(model, source, target)) {
        prompts_.Message(this,
                         shift ? "You can not combine a Parent Sub-Object to it's childen"
                               : "You can not make a Sub-Object a child of its children",
                         PromptIcon::Information);
        doc_.SelectSubObject(source);
        return;
    }
    if (shift) {
        doc_.Apply(MakeCombineCommand(doc_, source, target));
    } else {
        doc_.Apply(MakeReparentCommand(doc_, source, target));
    }
    doc_.SelectSubObject(shift ? target : source);
}

void Viewport::mousePressEvent(QMouseEvent* e) {
    const float x = static_cast<float>(std::lround(e->position().x()));
    const float y = static_cast<float>(std::lround(e->position().y()));
    button_ = e->button();
    dragging_ = false;
    camera_.Anchor(x, y);
    if (e->button() == Qt::RightButton) {
        emit contextMenuRequested(e->globalPosition().toPoint());
        return;
    }
    if (e->button() == Qt::LeftButton && doc_.display().Mode == ViewMode::Selection &&
        doc_.modelReady()) {
        doc_.SelectSubObject(PickAt(static_cast<int>(x), static_cast<int>(y)));
    }
}

void Viewport::WrapCursor(bool horizontal, bool vertical) {
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) return;
    const QRect area = screen->geometry();
    int x = QCursor::pos().x(), y = QCursor::pos().y();
    const bool movedX = horizontal && WrapToOtherEdge(x, area.left(), area.right());
    const bool movedY = vertical && WrapToOtherEdge(y, area.top(), area.bottom());
    reanchorX_ = reanchorX_ || movedX;
    reanchorY_ = reanchorY_ || movedY;
    if (movedX || movedY) QCursor::setPos(x, y);
}

void Viewport::mouseMoveEvent(QMouseEvent* e) {
    const float x = static_cast<float>(std::lround(e->position().x()));
    const float y = static_cast<float>(std::lround(e->position().y()));
    if (e->buttons() == Qt::NoButton) button_ = Qt::NoButton;
    if (button_ != Qt::LeftButton) return;
    const ViewMode mode = doc_.display().Mode;
    if (mode == ViewMode::Selection) {
        if (!doc_.modelReady() || doc_.selection().curSOBJ == -1) return;
        dragging_ = true;
        HoverSubObject(PickAt(static_cast<int>(x), static_cast<int>(y)));
        return;
    }
    // The first move after a wrap continues from where the cursor came back in.
    if (reanchorX_) {
        camera_.ReanchorX(x);
        reanchorX_ = false;
    }
    if (reanchorY_) {
        camera_.ReanchorY(y);
        reanchorY_ = false;
    }
    camera_.Drag(mode, x, y, doc_.model().Header.Radius);
    WrapCursor(mode != ViewMode::Zoom, true);
    update();
}

void Viewport::mouseReleaseEvent(QMouseEvent* e) {
    if (button_ == Qt::LeftButton) {
        DropSubObject(dragging_, (e->modifiers() & Qt::ShiftModifier) != 0);
    }
    button_ = Qt::NoButton;
    dragging_ = false;
}

}  // namespace mw
