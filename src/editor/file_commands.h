// The File menu's commands: one LoadModel for every way of opening a model (the open dialog,
// the recent paths, the archive model list, the command line), Save, Save As, Export ORF, the
// recent-path list, and the question about unsaved changes.
#pragma once

#include <QObject>
#include <QString>

#include "editor/model_check.h"
#include "gamedata/settings.h"
#include "gamedata/texture_loader.h"
#include "model/result_code.h"

class QWidget;

namespace mw {

class Document;
class ModelTextures;
class Prompts;

inline constexpr const char* kOpenFilter =
    "All Model/Room Files (*.oof *.pof *.orf);;Outrage Object Files (*.oof);;Blender add-on "
    "models (*.pof);;Outrage Room Files (*.orf)";
inline constexpr const char* kOofFilter = "Outrage Object Files (*.oof)";
inline constexpr const char* kOrfFilter = "Outrage Room Files (*.orf)";
inline constexpr const char* kGltfFilter = "glTF Binary (*.glb);;glTF (*.gltf)";
inline constexpr const char* kImportFilter =
    "3-D Models (*.gltf *.glb *.obj *.fbx *.dae *.3ds *.ply *.stl *.lwo *.blend);;All Files (*)";
inline constexpr const char* kPackageFilter = "Mission Archives (*.mn3);;HOG Archives (*.hog)";

class FileCommands : public QObject {
    Q_OBJECT
  public:
    FileCommands(Document& doc, GameData& game, Settings& settings, Prompts& prompts,
                 QWidget* window);

    // Reads a model file (or a room, or archive entry `archiveIndex` when not -1) into the
    // document. Returns the reader's status; 1 when the file is missing.
    int LoadModel(const QString& path, int archiveIndex, bool room);

    // The commands. Each returns true when it did what it was asked.
    bool Open();
    bool OpenPath(const QString& path);  // as Open with this file chosen
    bool OpenRecent(int item);           // menu item 0..8
    bool OpenArchiveModel(int index);
    // A model a compiler has just written, opened as Open does but without asking about
    // unsaved changes (the import has asked before compiling).
    bool OpenCompiled(const QString& path);
    // A recovery copy opened as an unsaved model titled as the model it came from, so that
    // Save writes to `original`. False when it could not be read (nothing is changed then;
    // `error` says why).
    bool OpenRecovered(const QString& copy, const QString& original, const QString& title,
                       QString& error);
    bool Save();
    bool SaveAs();
    bool ExportORF();
    // File > Package for Game...: the saved model, its new textures and their table in one
    // archive, then the list of what went in.
    bool PackageForGame();
    // File > Export glTF...: the model as it is now, with the textures the game data has.
    bool ExportGltf();
    // File > Import Model...: a model from glTF, OBJ, FBX ..., opened as a new, unsaved
    // model named after the file.
    bool ImportModelFile();
    bool ImportModelFrom(const QString& path);

    // Asks "Save changes to TITLE?" when the document has unsaved changes. False when the
    // user cancelled (or the save failed): whatever was about to happen must not.
    bool MaybeSave();

    // The game-limits check Save and Save As run first (by default without textures).
    void SetModelCheck(ModelCheck check) { check_ = std::move(check); }
    // The resolved textures: a room names its textures by their game names.
    void SetTextures(const ModelTextures* textures) { textures_ = textures; }

  signals:
    void recentChanged();

  private:
    // A chosen file opened as a model or room by its name; `addRecent` for dialog and recent
    // routes. Returns true on success.
    bool OpenChosen(const QString& path, bool addRecent, bool askToSave = true);
    void LoadFailed(int status);
    // The save dialog asked until the user agrees to a name; empty when cancelled.
    QString AskSaveName(const QString& title, const QString& filter, const QString& initial);
    // Runs the check; with errors, asks whether to save anyway. True to go on saving.
    bool ConfirmGameLimits();

    Document& doc_;
    GameData& game_;
    Settings& settings_;
    Prompts& prompts_;
    QWidget* window_;
    ModelCheck check_;
    const ModelTextures* textures_ = nullptr;
};

// `path` with a room's ".orf" (and anything after it) turned into ".oof".
QString RoomPathAsModel(const QString& path);
// The path a model opened from `path` is saved to: a .pof's .oof beside it, else the path.
QString ModelPathToSave(const QString& path);

}  // namespace mw
