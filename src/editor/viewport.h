// The main viewport: the renderer in a QOpenGLWidget, steered with the mouse in the four
// modes (Selection, Zoom, Rotate, Pan), with picking and dragging of sub-objects. It owns the
// view state (camera, display settings, the model's textures, rotator angles) and follows
// the document: a new model loads its textures and lists, an edit rebuilds what it changed.
#pragma once

#include <QOpenGLWidget>
#include <vector>

#include "gamedata/texture_loader.h"
#include "view/animation.h"
#include "view/renderer.h"

class QTimer;

namespace mw {

class Document;
class Prompts;

class Viewport : public QOpenGLWidget {
    Q_OBJECT
  public:
    Viewport(Document& doc, GameData& game, Settings& settings, Prompts& prompts,
             QWidget* parent = nullptr);
    ~Viewport() override;

    Renderer& renderer() { return renderer_; }
    Camera& camera() { return camera_; }
    DisplaySettings& display();
    const LoadedTextures& textures() const { return textures_; }
    const std::vector<float>& viewAngles() const { return viewAngles_; }
    bool glReady() const { return glReady_; }

    // Fits the camera to the model and redraws.
    void FitView();
    // Draws one frame with picking at a pixel and returns the sub-object there, or -1.
    int PickAt(int x, int y);
    void SetViewMode(ViewMode mode);
    void SetViewType(ViewType type);
    void SetTextureAnimation(bool on);
    // Loads the glow sprites' texture and the background picture (once the game data has
    // been read); waits for the OpenGL context when it is not there yet.
    void LoadEffects();
    // The glow sprites' texture from the game data (or a made one).
    void LoadGlowTexture();
    // The background picture the settings name, or none.
    void ReloadBackground();
    // The model's textures resolved again (after the game data changed), and the glow.
    void ReloadModelTextures();

    // The update routine: advances the clock, the texture animation and the rotators, and
    // redraws when something changed (always when not called from the timer). Returns true
    // when a frame was drawn.
    bool UpdateView(bool fromTimer);
    // One tick of the animation timer: the timer is off while the tick runs, so a slow step
    // or redraw never starts a second one.
    void TimerTick();

    // Selection-mode mouse handling, as the mouse events drive it.
    void HoverSubObject(int s);
    void DropSubObject(bool dragging, bool shift);

    // Writes the view options back into the settings.
    void StoreSettings();

  signals:
    void contextMenuRequested(QPoint globalPos);
    void viewChanged();  // mode or view type
    // A model's textures were resolved and uploaded (game names are known now).
    void texturesLoaded();
    // A timer tick, `elapsed` seconds after the previous one, before the view is updated
    // (playback advances the frame here).
    void ticked(float elapsed);

  protected:
    void initializeGL() override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

  private:
    void connectSignals();
    void LoadModelGL();
    // Resolves and uploads the model's textures and compiles its lists.
    void UploadModelTextures();
    void RebuildLists(const std::vector<int>& records);
    void FollowRadius();
    FrameInput Input() const;
    void WrapCursor(bool horizontal, bool vertical);

    Document& doc_;
    GameData& game_;
    Settings& settings_;
    Prompts& prompts_;
    Renderer renderer_;
    Camera camera_;
    LoadedTextures textures_;
    std::vector<std::uint32_t> missing_;
    std::vector<float> viewAngles_;
    FrameClock clock_;
    QTimer* tmrAnimate_ = nullptr;
    float fittedRadius_ = 0.0f;
    Qt::MouseButton button_ = Qt::NoButton;
    bool dragging_ = false;
    bool reanchorX_ = false, reanchorY_ = false;
    bool glReady_ = false;
    bool pendingLoad_ = false;
    bool effectsWanted_ = false;
    bool ticking_ = false;
};

}  // namespace mw
