#include "editor/viewport.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>
#include <cmath>
#include <random>

#include "editor/document.h"
#include "editor/edit_commands.h"
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

Viewport::Viewport(Document& doc, GameData& game, Settings& settings, Prompts& prompts,
                   QWidget* parent)
    : QOpenGLWidget(parent),
      doc_(doc),
      game_(game),
      settings_(settings),
      prompts_(prompts),
      missing_(MakeMissingTexture(std::random_device{}())) {
    doc_.display() = DisplaySettings::From(settings);
    setObjectName("picMain");
    setAccessibleName("Viewport");
    setMouseTracking(true);
    setMinimumSize(200, 150);
    // The animation timer: ticks as often as the system allows; motion follows the clock.
    tmrAnimate_ = new QTimer(this);
    tmrAnimate_->setObjectName("tmrAnimate");
    tmrAnimate_->setInterval(1);
    connect(tmrAnimate_, &QTimer::timeout, this, &Viewport::TimerTick);
    tmrAnimate_->start();
    connectSignals();
    SetViewMode(doc_.display().Mode);
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
        pendingLoad_ = true;
        if (glReady_) LoadModelGL();
        update();
    });
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
    connect(&doc_, &Document::displayChanged, this, redraw);
    connect(&doc_, &Document::keysChanged, this, redraw);
}

DisplaySettings& Viewport::display() {
    return doc_.display();
}

void Viewport::initializeGL() {
    if (!renderer_.InitGLState())
        prompts_.Message(this, "Failure creating Fonts", PromptIcon::None);
    glReady_ = true;
    if (effectsWanted_) LoadEffects();
    if (pendingLoad_) LoadModelGL();
}

void Viewport::LoadEffects() {
    effectsWanted_ = !glReady_;
    if (!glReady_) return;
    renderer_.ApplyFiltering(settings_.BilinearFiltering);
    LoadGlowTexture();
    ReloadBackground();
}

void Viewport::LoadGlowTexture() {
    std::optional<DecodedImage> glow = DecodeGameTexture("thrustball", game_, settings_);
    if (!glow) {
        prompts_.Message(this, "Glow Texture-thrustball.ogf not found. Creating similar texture.",
                         PromptIcon::None);
        glow = GeneratedGlowImage();
    }
    makeCurrent();
    renderer_.UploadGlowTexture(glow->Width, glow->Height, glow->Pixels.data());
    doneCurrent();
}

void Viewport::ReloadBackground() {
    if (!glReady_) return;
    const std::string& picture = settings_.BackgroundImage;
    std::optional<BackgroundImage> image;
    if (!picture.empty() && picture.find('.') != std::string::npos &&
        FindFileIgnoringCase(picture)) {
        image = LoadBackgroundPicture(picture);
        if (!image) {
            prompts_.Message(this, QString::fromStdString("Error reading " + FileNameOf(picture)),
                             PromptIcon::None);
        }
    }
    if (!image) settings_.BackgroundImage.clear();
    makeCurrent();
    renderer_.UploadBackground(image ? &*image : nullptr);
    doneCurrent();
    emit viewChanged();
    update();
}

void Viewport::UploadModelTextures() {
    ModelData& model = doc_.model();
    makeCurrent();
    LoadModelTextures(model, doc_.ModelPath().toStdString(), game_, settings_, missing_, renderer_,
                      textures_);
    renderer_.BuildSubObjectLists(model, textures_.Slots);
    doneCurrent();
}

void Viewport::ReloadModelTextures() {
    if (!glReady_) return;
    UploadModelTextures();
    LoadGlowTexture();
    emit texturesLoaded();
    update();
}

// The GL half of a load: textures, display lists, camera.
void Viewport::LoadModelGL() {
    pendingLoad_ = false;
    UploadModelTextures();
    const ModelData& model = doc_.model();
    viewAngles_.assign(model.SubObjects.size(), 0.0f);
    FitView();
    emit texturesLoaded();
}

void Viewport::RebuildLists(const std::vector<int>& records) {
    if (glReady_) {
        makeCurrent();
        if (records.empty()) {
            renderer_.BuildSubObjectLists(doc_.model(), textures_.Slots);
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

void Viewport::SetViewMode(ViewMode mode) {
    doc_.display().Mode = mode;
    switch (mode) {
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
    emit viewChanged();
    update();
}

void Viewport::SetViewType(ViewType type) {
    doc_.display().Type = type;
    emit viewChanged();
    update();
}

void Viewport::SetTextureAnimation(bool on) {
    settings_.TextureAnimation = on;
    if (on || !glReady_) return;
    // Off: every animated texture back to its first frame, every slide back to the start.
    makeCurrent();
    ApplyTextureChanges(renderer_, ResetTextures(textures_.Slots), textures_);
    doneCurrent();
    clock_.Reset();
    update();
}

void Viewport::TimerTick() {
    if (ticking_) return;
    ticking_ = true;
    tmrAnimate_->stop();
    UpdateView(true);
    tmrAnimate_->start();
    ticking_ = false;
}

bool Viewport::UpdateView(bool fromTimer) {
    const float elapsed = clock_.Tick();
    if (fromTimer) emit ticked(elapsed);
    const bool ready = doc_.modelReady() && glReady_;
    const bool minimized = window() != nullptr && window()->isMinimized();
    bool changed = false;
    if (settings_.TextureAnimation && ready && !minimized &&
        doc_.display().Type == ViewType::Textured) {
        const TextureChanges changes = AdvanceTextures(textures_.Slots, elapsed);
        if (changes.any()) {
            makeCurrent();
            ApplyTextureChanges(renderer_, changes, textures_);
            doneCurrent();
            changed = true;
        }
    }
    if (doc_.display().RotatorAnimation && ready) {
        changed = AdvanceRotators(doc_.model(), viewAngles_, elapsed) || changed;
    }
    if (minimized || (fromTimer && !changed)) return false;
    update();
    return true;
}

void Viewport::StoreSettings() {
    settings_.Facing = doc_.display().Facing;
    settings_.GlowEffects = doc_.display().Glow;
    settings_.ShowBackground = doc_.display().ShowBackground;
    settings_.RotatorAnimation = doc_.display().RotatorAnimation;
    settings_.ViewTrajectories = doc_.display().ViewTrajectories;
    settings_.ViewMode = static_cast<std::int16_t>(doc_.display().Mode);
    settings_.View = doc_.display().Type;
    settings_.ThreeDMode = doc_.display().ThreeD;
    settings_.ViewPoints = doc_.display().ViewPoints;
    settings_.ViewNormals = doc_.display().ViewNormals;
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
