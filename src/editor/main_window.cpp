#include "editor/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <random>

#include "convert/orf_reader.h"
#include "editor/viewport.h"
#include "gamedata/file_names.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/structure.h"
#include "model/text_codec.h"
#include "view/background.h"

namespace mw {
namespace {

constexpr const char* kTitle = "Meshwright";

}  // namespace

frmOOF::frmOOF(clsOOF& oof, GameData& game, Settings& settings, QWidget* parent)
    : QMainWindow(parent),
      oof_(oof),
      game_(game),
      settings_(settings),
      display_(DisplaySettings::From(settings)),
      missing_(MakeMissingTexture(std::random_device{}())) {
    setObjectName("frmOOF");
    setWindowTitle(kTitle);
    viewport_ = new Viewport(*this, this);
    setCentralWidget(viewport_);
    connect(viewport_, &Viewport::contextMenuRequested, this, &frmOOF::ShowContextMenu);
    status_ = new QLabel(this);
    statusBar()->addWidget(status_, 1);
    BuildMenus();
    // The animation timer: ticks as often as the system allows; motion follows the clock.
    tmrAnimate_ = new QTimer(this);
    tmrAnimate_->setInterval(1);
    connect(tmrAnimate_, &QTimer::timeout, this, [this] { UpdateView(true); });
    tmrAnimate_->start();
    SetViewMode(display_.Mode);
    SetViewType(display_.Type);
    RefreshStatus();
    resize(1024, 720);
}

QAction* frmOOF::Toggle(QMenu* menu, const QString& text, bool checked,
                        bool DisplaySettings::*flag) {
    QAction* a = menu->addAction(text);
    a->setCheckable(true);
    a->setChecked(checked);
    connect(a, &QAction::toggled, this, [this, flag](bool on) {
        display_.*flag = on;
        viewport_->update();
    });
    return a;
}

void frmOOF::BuildMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    QAction* open = file->addAction("&Open...", this, &frmOOF::OpenFile);
    open->setShortcut(QKeySequence::Open);
    file->addSeparator();
    file->addAction("E&xit", this, &QWidget::close);

    QToolBar* bar = addToolBar("View");
    bar->setObjectName("tbMain");
    bar->setMovable(false);
    bar->addAction(open);
    bar->addSeparator();

    QMenu* mode = menuBar()->addMenu("&Mode");
    auto* modes = new QActionGroup(this);
    const std::pair<ViewMode, const char*> modeItems[] = {{ViewMode::Selection, "Selection"},
                                                          {ViewMode::Zoom, "Zoom"},
                                                          {ViewMode::Rotate, "Rotate"},
                                                          {ViewMode::Pan, "Pan"}};
    for (const auto& [m, text] : modeItems) {
        QAction* a = mode->addAction(text);
        a->setCheckable(true);
        modes->addAction(a);
        bar->addAction(a);
        modeActions_[m] = a;
        connect(a, &QAction::triggered, this, [this, m = m] { SetViewMode(m); });
    }
    bar->addSeparator();

    QMenu* view = menuBar()->addMenu("&View");
    auto* types = new QActionGroup(this);
    const std::pair<ViewType, const char*> typeItems[] = {{ViewType::Wireframe, "Wireframe"},
                                                          {ViewType::FlatSolid, "Flat Colored"},
                                                          {ViewType::SmoothSolid, "Smooth Colored"},
                                                          {ViewType::Textured, "Textured"}};
    for (const auto& [t, text] : typeItems) {
        QAction* a = view->addAction(text);
        a->setCheckable(true);
        types->addAction(a);
        bar->addAction(a);
        typeActions_[t] = a;
        connect(a, &QAction::triggered, this, [this, t = t] { SetViewType(t); });
    }
    view->addSeparator();
    QAction* threeD = Toggle(view, "3-D Mode", display_.ThreeD, &DisplaySettings::ThreeD);
    bar->addAction(threeD);
    bar->addSeparator();

    QMenu* show = menuBar()->addMenu("&Display");
    bar->addAction(
        Toggle(show, "Special Points", display_.ViewPoints, &DisplaySettings::ViewPoints));
    bar->addAction(Toggle(show, "Normals", display_.ViewNormals, &DisplaySettings::ViewNormals));

    // The viewport's pop-up menu: the modes and the view types.
    popup_ = new QMenu(this);
    QMenu* popupMode = popup_->addMenu("Mode");
    for (const auto& [m, text] : modeItems)
        popupMode->addAction(modeActions_[m]);
    QMenu* popupView = popup_->addMenu("View");
    for (const auto& [t, text] : typeItems)
        popupView->addAction(typeActions_[t]);
    popupView->addAction(threeD);
}

void frmOOF::ShowContextMenu(QPoint globalPos) {
    popup_->popup(globalPos);
}

void frmOOF::SetViewMode(ViewMode mode) {
    display_.Mode = mode;
    if (auto it = modeActions_.find(mode); it != modeActions_.end()) it->second->setChecked(true);
    viewport_->SetModeCursor(mode);
    viewport_->update();
}

void frmOOF::SetViewType(ViewType type) {
    display_.Type = type;
    if (auto it = typeActions_.find(type); it != typeActions_.end()) it->second->setChecked(true);
    viewport_->update();
}

void frmOOF::SetTextureAnimation(bool on) {
    settings_.TextureAnimation = on;
    if (on) return;
    // Off: every animated texture back to its first frame, every slide back to the start.
    viewport_->makeCurrent();
    ApplyTextureChanges(viewport_->renderer(), ResetTextures(textures_.Slots), textures_);
    viewport_->doneCurrent();
    clock_.Reset();
    viewport_->update();
}

bool frmOOF::UpdateView(bool fromTimer) {
    const float elapsed = clock_.Tick();
    bool changed = false;
    if (settings_.TextureAnimation && selection_.modelReady && !isMinimized() &&
        display_.Type == ViewType::Textured) {
        const TextureChanges changes = AdvanceTextures(textures_.Slots, elapsed);
        if (changes.any()) {
            viewport_->makeCurrent();
            ApplyTextureChanges(viewport_->renderer(), changes, textures_);
            viewport_->doneCurrent();
            changed = true;
        }
    }
    if (display_.RotatorAnimation && selection_.modelReady) {
        changed = AdvanceRotators(model(), viewAngles_, elapsed) || changed;
    }
    if (isMinimized() || (fromTimer && !changed)) return false;
    viewport_->update();
    return true;
}

void frmOOF::StoreSettings() {
    settings_.Facing = display_.Facing;
    settings_.GlowEffects = display_.Glow;
    settings_.ShowBackground = display_.ShowBackground;
    settings_.RotatorAnimation = display_.RotatorAnimation;
    settings_.ViewTrajectories = display_.ViewTrajectories;
    settings_.ViewMode = static_cast<std::int16_t>(display_.Mode);
    settings_.View = display_.Type;
    settings_.ThreeDMode = display_.ThreeD;
    settings_.ViewPoints = display_.ViewPoints;
    settings_.ViewNormals = display_.ViewNormals;
}

void frmOOF::Notice(const QString& text) {
    QMessageBox::information(this, kTitle, text);
}

void frmOOF::OpenFile() {
    const QString path = QFileDialog::getOpenFileName(
        this, "Open Model", QString(),
        "Outrage Object Files (*.oof);;Outrage Room Files (*.orf);;All Files (*)");
    if (!path.isEmpty()) LoadModel(path);
}

bool frmOOF::LoadModel(const QString& path) {
    const std::string file = path.toStdString();
    const auto bytes = ReadFileBytes(file);
    if (!bytes) {
        QMessageBox::warning(this, kTitle, "Cannot open " + path);
        return false;
    }
    selection_ = SelectionState{};
    ModelData& model = oof_.data();
    const bool room = ContainsIgnoringCase(file, ".orf");
    const ResultCode result =
        room ? importORF(model, *bytes, GameNameTable::WithGam(game_.Gam)) : readOOF(model, *bytes);
    if (result != ResultCode::Success) {
        ClearModel(model);
        QMessageBox::warning(this, kTitle, TranslateError(result));
        RefreshStatus();
        viewport_->update();
        return false;
    }
    CreatePushPop(model);
    modelPath_ = path;
    setWindowTitle(QString(kTitle) + " - " + QString::fromStdString(FileNameOf(file)));
    pendingLoad_ = true;
    if (glReady_) FinishLoad();
    return true;
}

void frmOOF::ViewportReady() {
    glReady_ = true;
    Renderer& renderer = viewport_->renderer();
    renderer.ApplyFiltering(settings_.BilinearFiltering);
    // The glow sprites' texture: the game's, or one made like it.
    std::optional<DecodedImage> glow = DecodeGameTexture("thrustball", game_, settings_);
    if (!glow) {
        Notice("Glow Texture-thrustball.ogf not found. Creating similar texture.");
        glow = GeneratedGlowImage();
    }
    viewport_->makeCurrent();
    renderer.UploadGlowTexture(glow->Width, glow->Height, glow->Pixels.data());
    // The background picture, when one is set and can be read.
    const std::string& picture = settings_.BackgroundImage;
    if (!picture.empty()) {
        std::optional<BackgroundImage> image;
        if (picture.find('.') != std::string::npos && FindFileIgnoringCase(picture)) {
            image = LoadBackgroundPicture(picture);
            if (!image) Notice(QString::fromStdString("Error reading " + FileNameOf(picture)));
        }
        if (image) {
            viewport_->makeCurrent();
            renderer.UploadBackground(&*image);
        } else {
            settings_.BackgroundImage.clear();
        }
    }
    if (pendingLoad_) FinishLoad();
}

// The GL half of a load: textures, display lists, camera.
void frmOOF::FinishLoad() {
    pendingLoad_ = false;
    ModelData& model = oof_.data();
    viewport_->makeCurrent();
    LoadModelTextures(model, modelPath_.toStdString(), game_, settings_, missing_,
                      viewport_->renderer(), textures_);
    viewport_->renderer().BuildSubObjectLists(model, textures_.Slots);
    viewport_->doneCurrent();
    viewAngles_.assign(model.SubObjects.size(), 0.0f);
    selection_.modelReady = true;
    viewport_->FitView();
    RefreshStatus();
}

void frmOOF::StructureChanged() {
    ModelData& model = oof_.data();
    selection_.modelReady = false;
    CreatePushPop(model);
    viewport_->makeCurrent();
    viewport_->renderer().BuildSubObjectLists(model, textures_.Slots);
    viewport_->doneCurrent();
    selection_.modelReady = true;
}

void frmOOF::SelectSubObject(int s) {
    selection_.hiliteSOBJ2 = -1;
    selection_.curSOBJ = s;
    selection_.hiliteSOBJ = s;
    selection_.curPNT = -1;
    selection_.curPNTtype.clear();
    RefreshStatus();
    viewport_->update();
}

void frmOOF::HoverSubObject(int s) {
    selection_.hiliteSOBJ2 = s == selection_.hiliteSOBJ ? -1 : s;
    viewport_->update();
}

void frmOOF::DropSubObject(bool dragging, bool shift) {
    const int source = selection_.hiliteSOBJ;
    const int target = selection_.hiliteSOBJ2;
    if (!selection_.modelReady || source == -1) return;
    ModelData& model = oof_.data();
    if (target == -1) {
        if (!shift && dragging && model.Sub(source).Parent != -1) {
            ChangeSOBJParent(model, source, -1);
            StructureChanged();
        }
        SelectSubObject(source);
        return;
    }
    if (IsInSubtree(model, source, target)) {
        QMessageBox::information(this, kTitle,
                                 shift ? "You can not combine a Parent Sub-Object to it's childen"
                                       : "You can not make a Sub-Object a child of its children");
        SelectSubObject(source);
        return;
    }
    if (shift) {
        CombineAndAdopt(model, source, target);
    } else {
        ChangeSOBJParent(model, source, target);
    }
    StructureChanged();
    SelectSubObject(shift ? target : source);
}

void frmOOF::RefreshStatus() {
    const ModelData& m = model();
    if (!selection_.modelReady) {
        status_->setText("No model");
        return;
    }
    int faces = 0;
    for (int k = 0; k < m.SubObjectCount(); ++k) {
        for (int e : m.MergeTable[static_cast<std::size_t>(k)])
            faces += m.Sub(e).FaceCount();
    }
    QString text = QString("%1 sub-objects, %2 faces, %3 textures, radius %4")
                       .arg(m.SubObjectCount())
                       .arg(faces)
                       .arg(m.Textures.size())
                       .arg(static_cast<double>(m.Header.Radius), 0, 'f', 2);
    if (selection_.curSOBJ >= 0) {
        text +=
            "   Selected: " + QString::fromStdString(Utf8From1252(m.Sub(selection_.curSOBJ).Name));
    }
    status_->setText(text);
}

}  // namespace mw
