// The main window: hosts the viewport, loads models, keeps the selection state that the
// renderer reads, and carries the menus and tool bar of the view.
#pragma once

#include <QMainWindow>
#include <map>
#include <string>

#include "gamedata/texture_loader.h"
#include "model/oof.h"
#include "view/animation.h"
#include "view/view_state.h"

class QAction;
class QActionGroup;
class QLabel;
class QMenu;
class QTimer;

namespace mw {

class Viewport;

class frmOOF : public QMainWindow {
    Q_OBJECT
  public:
    frmOOF(clsOOF& oof, GameData& game, Settings& settings, QWidget* parent = nullptr);

    // Reads a model (OOF, or ORF by its ending) and shows it; a failure shows the reader's
    // message. Returns true when the model was loaded.
    bool LoadModel(const QString& path);

    const ModelData& model() const { return oof_.data(); }
    const DisplaySettings& display() const { return display_; }
    const SelectionState& selection() const { return selection_; }
    float curFrame() const { return curFrame_; }
    Viewport& viewport() { return *viewport_; }
    const LoadedTextures& textures() const { return textures_; }

    // The selection handlers the viewport calls.
    void SelectSubObject(int s);
    void HoverSubObject(int s);
    void DropSubObject(bool dragging, bool shift);

    void SetViewMode(ViewMode mode);
    void SetViewType(ViewType type);

    // Writes the view options back into the settings.
    void StoreSettings();

    void Notice(const QString& text);
    void ViewportReady();

    // The update routine: advances the clock, the texture animation and the rotators, and
    // redraws when something changed (always when not called from the timer). Returns true
    // when a frame was drawn.
    bool UpdateView(bool fromTimer);
    const std::vector<float>& viewAngles() const { return viewAngles_; }
    void SetTextureAnimation(bool on);

  private:
    void BuildMenus();
    QAction* Toggle(QMenu* menu, const QString& text, bool checked, bool DisplaySettings::*flag);
    void OpenFile();
    void FinishLoad();
    void RefreshStatus();
    void ShowContextMenu(QPoint globalPos);
    void StructureChanged();

    clsOOF& oof_;
    GameData& game_;
    Settings& settings_;
    DisplaySettings display_;
    SelectionState selection_;
    float curFrame_ = 0.0f;
    Viewport* viewport_ = nullptr;
    LoadedTextures textures_;
    std::vector<std::uint32_t> missing_;
    QString modelPath_;
    bool pendingLoad_ = false;
    bool glReady_ = false;

    std::map<ViewMode, QAction*> modeActions_;
    std::map<ViewType, QAction*> typeActions_;
    QMenu* popup_ = nullptr;
    QTimer* tmrAnimate_ = nullptr;
    FrameClock clock_;
    std::vector<float> viewAngles_;
    QLabel* status_ = nullptr;
};

}  // namespace mw
