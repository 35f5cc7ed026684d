#include "editor/document.h"

#include <QUndoCommand>
#include <algorithm>

namespace mw {

SelectionState RootSelected(SelectionState sel) {
    sel.curSOBJ = sel.hiliteSOBJ = sel.hiliteSOBJ2 = -1;
    sel.curPNT = -1;
    sel.curPNTtype.clear();
    return sel;
}

SelectionState SubObjectSelected(SelectionState sel, int s) {
    if (s == -1) return RootSelected(sel);
    sel.hiliteSOBJ2 = -1;
    sel.curSOBJ = sel.hiliteSOBJ = s;
    sel.curPNT = -1;
    sel.curPNTtype.clear();
    return sel;
}

SelectionState PointSelected(SelectionState sel, PointType type, int i) {
    sel.hiliteSOBJ2 = -1;
    sel.curSOBJ = sel.hiliteSOBJ = -1;
    sel.curPNT = i;
    sel.curPNTtype = PointTag(type);
    return sel;
}

Document::Document(clsOOF& oof, QObject* parent) : QObject(parent), oof_(oof) {
    connect(&undo_, &QUndoStack::cleanChanged, this, &Document::cleanChanged);
}

Document::~Document() {
    // The stack says it is clean as it goes; nobody is to hear that from a dying document.
    undo_.disconnect(this);
}

void Document::SetModelFile(const QString& path, const QString& title, bool needsName) {
    modelPath_ = path;
    modelTitle_ = title;
    needsName_ = needsName;
    emit fileChanged();
}

void Document::MarkSaved() {
    undo_.setClean();
}

void Document::ResetModel(bool ready) {
    undo_.clear();
    ++editSession_;
    const bool wasReady = selection_.modelReady;
    selection_ = SelectionState{};
    selection_.modelReady = ready && hasModel();
    animation_.curFrame = 0.0f;
    // The played range is the model's key range.
    const auto clampFrame = [](int f) { return std::clamp(f, 0, kLastFrame); };
    animation_.startFrame = hasModel() ? clampFrame(model().FrameMin) : 0;
    animation_.endFrame = hasModel() ? clampFrame(model().FrameMax) : 1;
    const bool wasPlaying = animation_.animPlaying;
    animation_.animPlaying = false;
    if (wasPlaying) emit playingChanged(false);
    emit modelReset();
    if (wasReady != selection_.modelReady) emit selectionChanged();
}

void Document::SelectRoot() {
    SetSelection(RootSelected(selection_));
}

void Document::SelectSubObject(int s) {
    SetSelection(SubObjectSelected(selection_, s));
}

void Document::SelectPoint(PointType type, int i) {
    SetSelection(PointSelected(selection_, type, i));
}

void Document::SetSelection(const SelectionState& selection) {
    SelectionState next = selection;
    next.modelReady = selection_.modelReady;
    const bool same = next.curSOBJ == selection_.curSOBJ && next.curPNT == selection_.curPNT &&
                      next.curPNTtype == selection_.curPNTtype;
    const bool sameHighlight =
        next.hiliteSOBJ == selection_.hiliteSOBJ && next.hiliteSOBJ2 == selection_.hiliteSOBJ2;
    selection_ = next;
    if (!same) emit selectionChanged();
    if (!same || !sameHighlight) emit highlightChanged();
}

void Document::SetHighlights(int hilite, int hilite2) {
    if (hilite == selection_.hiliteSOBJ && hilite2 == selection_.hiliteSOBJ2) return;
    selection_.hiliteSOBJ = hilite;
    selection_.hiliteSOBJ2 = hilite2;
    emit highlightChanged();
}

void Document::SetCurrentFrame(float frame) {
    if (frame == animation_.curFrame) return;
    animation_.curFrame = frame;
    emit frameChanged();
}

void Document::GoToFrame(float frame) {
    SetPlaying(false);
    animation_.curFrame = frame;
    emit frameChanged();
}

void Document::SetPlaying(bool playing) {
    if (animation_.animPlaying == playing) return;
    animation_.animPlaying = playing;
    emit playingChanged(playing);
}

void Document::SetDisplay(const DisplaySettings& display) {
    if (display == display_) return;
    display_ = display;
    emit displayChanged();
}

void Document::SetDisplayFlag(bool DisplaySettings::*flag, bool on) {
    SetDisplayValue(flag, on);
}

void Document::SetViewMode(ViewMode mode) {
    SetDisplayValue(&DisplaySettings::Mode, mode);
}

void Document::SetViewType(ViewType type) {
    SetDisplayValue(&DisplaySettings::Type, type);
}

void Document::SetBackgroundImage(const std::string& path) {
    SetDisplayValue(&DisplaySettings::BackgroundImage, path);
    emit backgroundRequested();
}

void Document::SetKeyFilter(int filter) {
    SetAnimationValue(&AnimationState::keyFilter, filter);
}

void Document::SetAnimLoop(bool loop) {
    SetAnimationValue(&AnimationState::animLoop, loop);
}

void Document::SetAnimTime(float seconds) {
    SetAnimationValue(&AnimationState::animTime, seconds);
}

void Document::SetFrameRange(int start, int end) {
    AnimationState a = animation_;
    a.startFrame = start;
    a.endFrame = end;
    SetAnimation(a);
}

void Document::SetAnimation(const AnimationState& a) {
    if (a == animation_) return;
    animation_ = a;
    emit animationSettingsChanged();
}

bool Document::Apply(QUndoCommand* command) {
    changed_ = false;
    undo_.push(command);
    return changed_;
}

void Document::BeginChange() {
    selection_.modelReady = false;
}

void Document::EndChange(unsigned changes, int subObject, const SelectionState& selection,
                         const std::vector<int>& geometry) {
    selection_.modelReady = hasModel();
    changed_ = true;
    if (changes & kChangeStructure) emit structureChanged();
    if (changes & kChangeGeometry) emit geometryChanged(geometry);
    if (changes & kChangeSubObject) emit subObjectChanged(subObject);
    if (changes & kChangePoints) emit pointsChanged();
    if (changes & kChangeBatteries) emit batteriesChanged();
    if (changes & kChangeKeys) emit keysChanged(subObject);
    if (changes & kChangeModel) emit modelValuesChanged();
    SetSelection(selection);
}

}  // namespace mw
