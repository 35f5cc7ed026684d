// The one open document: the model being edited, the window-wide selection, the animation
// state, the file it came from and the undo stack. Every view takes a Document and listens to
// its signals; every change of the model goes through a command pushed here.
#pragma once

#include <QObject>
#include <QString>
#include <QUndoStack>
#include <memory>
#include <vector>

#include "model/oof.h"
#include "view/view_state.h"

class QUndoCommand;

namespace mw {

// The selection after choosing the root, sub-object s (-1: the root) or point i of a type;
// the drop-target highlight is cleared.
SelectionState RootSelected(SelectionState sel);
SelectionState SubObjectSelected(SelectionState sel, int s);
SelectionState PointSelected(SelectionState sel, PointType type, int i);

// What a command changed; views refresh by these.
enum ModelChange : unsigned {
    kChangeStructure = 0x1,  // hierarchy, save slots, sub-objects removed: tree rebuilt
    kChangeGeometry = 0x2,   // vertices or faces: display lists rebuilt
    kChangeSubObject = 0x4,  // fields of one sub-object
    kChangePoints = 0x8,
    kChangeBatteries = 0x10,
    kChangeKeys = 0x20,
    kChangeModel = 0x40,  // model-wide values (special point, radius)
};

// The last frame a key can sit at.
inline constexpr int kLastFrame = 999;

// The playback and timeline state shared by the animation views.
struct AnimationState {
    float curFrame = 0.0f;
    bool animPlaying = false;
    int startFrame = 0;
    int endFrame = 1;
    float animTime = 2.0f;
    bool animLoop = false;
    int keyFilter = 0;  // 0 all, 1 positional, 2 rotational

    bool operator==(const AnimationState&) const = default;

    // The frame key operations work at: the whole part of the current frame.
    int WholeFrame() const { return static_cast<int>(curFrame); }
};

class Document : public QObject {
    Q_OBJECT
  public:
    explicit Document(clsOOF& oof, QObject* parent = nullptr);
    ~Document() override;

    clsOOF& oof() { return oof_; }
    ModelData& model() { return oof_.data(); }
    const ModelData& model() const { return oof_.data(); }
    bool hasModel() const { return oof_.data().SubObjectCount() > 0; }

    const SelectionState& selection() const { return selection_; }
    bool modelReady() const { return selection_.modelReady; }
    // What the viewport shows besides the model (view type, mode, aids, effects, filtering,
    // the background picture). Menus, tool bar and panels change it only here; every view
    // follows displayChanged.
    const DisplaySettings& display() const { return display_; }
    void SetDisplay(const DisplaySettings& display);
    void SetDisplayFlag(bool DisplaySettings::*flag, bool on);
    void SetViewMode(ViewMode mode);
    void SetViewType(ViewType type);
    // Asks for the background picture to be read (again, when the same file is named).
    void SetBackgroundImage(const std::string& path);
    const AnimationState& animation() const { return animation_; }

    QUndoStack& undoStack() { return undo_; }
    // True while the model has changes that were not saved.
    bool isModified() const { return !undo_.isClean(); }

    const QString& ModelPath() const { return modelPath_; }
    const QString& ModelTitle() const { return modelTitle_; }
    // `needsName`: a model made from another file, whose path only proposes where it would
    // be saved; Save asks for the name first.
    void SetModelFile(const QString& path, const QString& title, bool needsName = false);
    bool NeedsName() const { return needsName_; }
    // After a save: the current state is the saved one.
    void MarkSaved();
    // A model whose state was never saved (a recovered copy): no state is the saved one.
    void MarkUnsaved() { undo_.resetClean(); }

    // After the model was replaced (loaded, or cleared by a failed load): nothing selected,
    // no undo history, ready when a model is there.
    void ResetModel(bool ready);

    // Selection, as the tree and the viewport set it (hover is the two highlights only).
    void SelectRoot();
    void SelectSubObject(int s);
    void SelectPoint(PointType type, int i);
    void SetSelection(const SelectionState& selection);
    void SetHighlights(int hilite, int hilite2);

    // Playback moves the frame with SetCurrentFrame. GoToFrame is every other frame change
    // (typed, picked on the timeline, a key edit): playback stops and the views follow.
    void SetCurrentFrame(float frame);
    void GoToFrame(float frame);
    void SetPlaying(bool playing);
    // The animation settings the strip, the panel and the Animation menu share.
    void SetKeyFilter(int filter);
    void SetAnimLoop(bool loop);
    void SetAnimTime(float seconds);
    void SetFrameRange(int start, int end);

    // Pushes a command; returns true when it changed the model (a command whose operation
    // changed nothing marks itself obsolete and is dropped).
    bool Apply(QUndoCommand* command);

    // Called by commands after they changed the model: brackets the change with
    // modelReady cleared, sets the selection and emits the change signals.
    void BeginChange();
    // `geometry` names the sub-object records whose meshes changed (empty: all of them).
    void EndChange(unsigned changes, int subObject, const SelectionState& selection,
                   const std::vector<int>& geometry = {});
    // Ends a change that was refused: nothing changed.
    void CancelChange() { selection_.modelReady = hasModel(); }

    // Field edits with the same session number merge into one undo step (one spinner drag,
    // one typed entry); a new session starts when an edit is done.
    int editSession() const { return editSession_; }
    void EndEditSession() { ++editSession_; }

  signals:
    void modelReset();
    void structureChanged();
    void geometryChanged(const std::vector<int>& records);  // empty: every record
    void subObjectChanged(int s);
    void pointsChanged();
    void batteriesChanged();
    void keysChanged(int s);
    void modelValuesChanged();
    void selectionChanged();
    void highlightChanged();
    void frameChanged();
    void playingChanged(bool playing);
    void displayChanged();
    void backgroundRequested();       // read the background picture the display names
    void animationSettingsChanged();  // key filter, loop, time or range
    void cleanChanged(bool clean);
    void fileChanged();

  private:
    void SetAnimation(const AnimationState& a);
    // One display or animation value changed; the signal goes out when it differs.
    template <typename T>
    void SetDisplayValue(T DisplaySettings::*member, const T& value) {
        DisplaySettings d = display_;
        d.*member = value;
        SetDisplay(d);
    }
    template <typename T>
    void SetAnimationValue(T AnimationState::*member, const T& value) {
        AnimationState a = animation_;
        a.*member = value;
        SetAnimation(a);
    }

    clsOOF& oof_;
    SelectionState selection_;
    AnimationState animation_;
    DisplaySettings display_;
    QUndoStack undo_;
    QString modelPath_;
    QString modelTitle_;
    bool needsName_ = false;
    int editSession_ = 0;
    bool changed_ = false;
};

}  // namespace mw
