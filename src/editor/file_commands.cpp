#include "editor/file_commands.h"

#include <QDir>
#include <QFileInfo>
#include <cstdlib>

#include "convert/gltf_export.h"
#include "convert/model_import.h"
#include "convert/orf_reader.h"
#include "convert/orf_writer.h"
#include "convert/package.h"
#include "editor/document.h"
#include "editor/model_textures.h"
#include "editor/prompts.h"
#include "editor/recent_files.h"
#include "gamedata/file_names.h"
#include "gamedata/hog_writer.h"
#include "gamedata/install_paths.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/oof_writer.h"

namespace mw {
namespace {

bool HasSeparator(const QString& path) {
    return path.contains('/') || path.contains('\\');
}

QString FileTitle(const QString& path) {
    return QString::fromStdString(FileNameOf(path.toStdString()));
}

}  // namespace

QString RoomPathAsModel(const QString& path) {
    const int at = path.indexOf(".orf", 0, Qt::CaseInsensitive);
    return at < 0 ? path : path.left(at) + ".oof";
}

QString ModelPathToSave(const QString& path) {
    // A .pof (the Blender add-on's models, the same chunks) is saved as the .oof beside it:
    // the game loads a model only by an .oof name.
    if (!path.endsWith(".pof", Qt::CaseInsensitive)) return path;
    return path.left(path.size() - 4) + ".oof";
}

FileCommands::FileCommands(Document& doc, GameData& game, Settings& settings, Prompts& prompts,
                           QWidget* window)
    : QObject(window),
      doc_(doc),
      game_(game),
      settings_(settings),
      prompts_(prompts),
      window_(window) {}

int FileCommands::LoadModel(const QString& path, int archiveIndex, bool room) {
    ModelData& model = doc_.model();
    doc_.BeginChange();
    ResultCode status = ResultCode::NotOOF;
    std::optional<std::vector<std::uint8_t>> bytes;
    if (archiveIndex != -1) {
        if (archiveIndex >= 0 && archiveIndex < static_cast<int>(game_.Hog.Models.size())) {
            const HogModelEntry& e = game_.Hog.Models[static_cast<std::size_t>(archiveIndex)];
            ArchiveReader archives(game_.Hog);
            if (archives.IsOpen(e.Slot)) bytes = archives.Read(e.Slot, e.Offset, e.Length);
        }
    } else if (!path.isEmpty() && QFileInfo(path).isFile()) {
        bytes = ReadFileBytes(path.toStdString());
    }
    if (bytes) {
        status = room ? importORF(model, *bytes, GameNameTable::WithGam(game_.Gam))
                      : doc_.oof().readOOF(*bytes);
    }
    if (status == ResultCode::Success) {
        CreatePushPop(model);
    } else {
        ClearModel(model);
    }
    return static_cast<int>(status);
}

void FileCommands::LoadFailed(int status) {
    prompts_.Message(window_, TranslateError(status), PromptIcon::Exclamation);
    doc_.ResetModel(false);
}

bool FileCommands::OpenChosen(const QString& path, bool addRecent, bool askToSave) {
    const bool oof =
        path.contains(".oof", Qt::CaseInsensitive) || path.endsWith(".pof", Qt::CaseInsensitive);
    const bool room = !oof && path.contains(".orf", Qt::CaseInsensitive);
    if (!oof && !room) return false;
    if (askToSave && !MaybeSave()) return false;
    const int status = LoadModel(path, -1, room);
    if (status != 0) {
        LoadFailed(status);
        return false;
    }
    if (addRecent) {
        AddToRecent(settings_.RecentFiles, path.toStdString());
        emit recentChanged();
    }
    const QString modelPath = room ? RoomPathAsModel(path) : ModelPathToSave(path);
    doc_.SetModelFile(modelPath, FileTitle(modelPath));
    doc_.ResetModel(true);
    return true;
}

bool FileCommands::OpenRecovered(const QString& copy, const QString& original, const QString& title,
                                 QString& error) {
    // Read first into a scratch model, so an unreadable copy leaves the open one alone.
    const auto bytes = ReadFileBytes(copy.toStdString());
    ModelData scratch;
    const ResultCode status = bytes ? readOOF(scratch, *bytes) : ResultCode::NotOOF;
    if (status != ResultCode::Success) {
        error = bytes ? TranslateError(status) : "it cannot be opened";
        return false;
    }
    if (!MaybeSave()) return false;
    if (LoadModel(copy, -1, false) != 0) {
        error = "it cannot be opened";
        doc_.ResetModel(false);
        return false;
    }
    doc_.SetModelFile(original, title);
    doc_.ResetModel(true);
    doc_.MarkUnsaved();
    return true;
}

bool FileCommands::Open() {
    // Before any model is open, the dialog starts at the installed sample.
    QString initial = doc_.ModelPath();
    if (initial.isEmpty()) {
        initial = QString::fromStdString(FindProgramFile(ProgramDir(), kSampleModel).string());
    }
    const QString chosen =
        prompts_.OpenFileName(window_, "Open Model/Room File", kOpenFilter, initial);
    if (chosen.isEmpty()) return false;
    return OpenChosen(chosen, true);
}

bool FileCommands::OpenPath(const QString& path) {
    return OpenChosen(QFileInfo(path).absoluteFilePath(), true);
}

bool FileCommands::OpenCompiled(const QString& path) {
    return OpenChosen(path, true, false);
}

bool FileCommands::OpenRecent(int item) {
    const int n = item + 1;
    if (n < 1 || n > static_cast<int>(settings_.RecentFiles.size())) return false;
    const std::string entry = settings_.RecentFiles[static_cast<std::size_t>(item)];
    if (entry.empty() || !QFileInfo(QString::fromStdString(entry)).isFile()) {
        prompts_.Message(
            window_, QString::fromStdString("File " + FileNameOf(entry) + " is no longer valid!"),
            PromptIcon::Information);
        RemoveRecent(settings_.RecentFiles, n);
        emit recentChanged();
        return false;
    }
    return OpenChosen(QString::fromStdString(entry), true);
}

bool FileCommands::OpenArchiveModel(int index) {
    if (index < 0 || index >= static_cast<int>(game_.Hog.Models.size())) return false;
    if (!MaybeSave()) return false;
    const QString name =
        QString::fromStdString(EntryName(game_.Hog.Models[static_cast<std::size_t>(index)].Name));
    const int status = LoadModel(name, index, false);
    if (status != 0) {
        LoadFailed(status);
        return false;
    }
    doc_.SetModelFile(name, name);
    doc_.ResetModel(true);
    return true;
}

bool FileCommands::ConfirmGameLimits() {
    const std::vector<Finding> findings = check_ ? check_() : CheckModel(doc_.model());
    const QString question = SaveWithErrorsQuestion(findings);
    if (question.isEmpty()) return true;
    return prompts_.Ask(window_, question, QMessageBox::Save | QMessageBox::Cancel,
                        PromptIcon::Exclamation) == QMessageBox::Save;
}

bool FileCommands::Save() {
    if (!doc_.hasModel()) return false;
    if (!HasSeparator(doc_.ModelPath()) || doc_.NeedsName()) return SaveAs();
    if (!ConfirmGameLimits()) return false;
    const std::string failure = SaveOOF(doc_.model(), doc_.ModelPath().toStdString());
    if (!failure.empty()) {
        prompts_.Message(window_, QString::fromStdString(failure), PromptIcon::Exclamation);
        return false;
    }
    doc_.MarkSaved();
    return true;
}

QString FileCommands::AskSaveName(const QString& title, const QString& filter,
                                  const QString& initial) {
    for (;;) {
        const QString chosen = prompts_.SaveFileName(window_, title, filter, initial);
        if (chosen.isEmpty() || !QFileInfo::exists(chosen)) return chosen;
        const auto answer = prompts_.Ask(
            window_, "Do you wish to overwrite " + FileTitle(chosen) + "?",
            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, PromptIcon::None);
        if (answer == QMessageBox::Yes) return chosen;
        if (answer != QMessageBox::No) return {};
    }
}

bool FileCommands::SaveAs() {
    if (!doc_.hasModel()) return false;
    if (!ConfirmGameLimits()) return false;
    const QString chosen = AskSaveName("Save OOF File", kOofFilter, doc_.ModelPath());
    if (chosen.isEmpty()) return false;
    doc_.SetModelFile(chosen, FileTitle(chosen));
    const std::string failure = SaveOOF(doc_.model(), chosen.toStdString());
    if (!failure.empty()) {
        prompts_.Message(window_, QString::fromStdString(failure), PromptIcon::Exclamation);
        return false;
    }
    doc_.MarkSaved();
    return true;
}

bool FileCommands::ExportORF() {
    if (!doc_.hasModel()) return false;
    const QString initial =
        doc_.ModelPath().left(std::max(0, int(doc_.ModelPath().size()) - 3)) + "orf";
    QString chosen = AskSaveName("Save ORF File", kOrfFilter, initial);
    if (chosen.isEmpty()) return false;
    if (!chosen.contains(".orf", Qt::CaseInsensitive)) chosen += ".orf";
    OrfExportOptions options;
    options.CombineRooms = settings_.CombineRooms;
    options.SpecialPointsAsFaces = settings_.SpecialPointsAsFaces;
    options.SpecialFaceSize = settings_.SpecialFaceSize;
    // The room takes the game names the tables resolved; the model keeps its own.
    ModelData room = doc_.model();
    if (textures_ != nullptr) ApplyTextureNames(room, textures_->loaded().Names);
    const OrfExportResult result = SaveORF(room, chosen.toStdString(), options);
    if (!result.Written) {
        prompts_.Message(window_, "There was an error saving " + FileTitle(chosen),
                         PromptIcon::None);
        return false;
    }
    return true;
}

bool FileCommands::PackageForGame() {
    if (!doc_.hasModel()) return false;
    const QString path = doc_.ModelPath();
    const bool savedModel = !doc_.isModified() && HasSeparator(path) && !doc_.NeedsName() &&
                            path.endsWith(".oof", Qt::CaseInsensitive) && QFileInfo::exists(path);
    if (!savedModel) {
        const auto answer =
            prompts_.Ask(window_, "The model is packaged as it is saved. Save it first?",
                         QMessageBox::Save | QMessageBox::Cancel, PromptIcon::Question);
        if (answer != QMessageBox::Save) return false;
        const bool modelFile = HasSeparator(path) && path.endsWith(".oof", Qt::CaseInsensitive);
        if (!(modelFile ? Save() : SaveAs())) return false;
    }
    const QString model = doc_.ModelPath();
    const QString chosen =
        AskSaveName("Package for Game", kPackageFilter, model.left(model.size() - 3) + "mn3");
    if (chosen.isEmpty()) return false;
    const PackageResult result =
        WritePackage(model.toStdString(), chosen.toStdString(), game_, settings_, {},
                     ArchiveTime(std::getenv("SOURCE_DATE_EPOCH")));
    if (!result.Error.empty()) {
        prompts_.Message(window_, QString::fromStdString(result.Error), PromptIcon::Exclamation);
        return false;
    }
    QString report = QString::fromStdString(PackageReport(result, FileTitle(chosen).toStdString()));
    for (const std::string& warning : result.Warnings)
        report += "\nWarning: " + QString::fromStdString(warning);
    prompts_.Message(window_, report.trimmed(),
                     result.Missing > 0 ? PromptIcon::Exclamation : PromptIcon::Information);
    return true;
}

bool FileCommands::ExportGltf() {
    if (!doc_.hasModel()) return false;
    const QString path = doc_.ModelPath();
    const int dot = path.lastIndexOf('.');
    QString chosen =
        AskSaveName("Export glTF", kGltfFilter, (dot > 0 ? path.left(dot) : path) + ".glb");
    if (chosen.isEmpty()) return false;
    if (!chosen.endsWith(".glb", Qt::CaseInsensitive) &&
        !chosen.endsWith(".gltf", Qt::CaseInsensitive))
        chosen += ".glb";
    TexturePictures pictures(doc_.model().Textures.size());
    if (textures_ != nullptr) {
        const auto& resolved = textures_->loaded().Resolved;
        for (std::size_t t = 0; t < pictures.size() && t < textures_->pictures().size(); ++t) {
            if (t >= resolved.size() || !resolved[t].Decoded) continue;
            pictures[t] = textures_->pictures()[t];
        }
    }
    const std::string error = ExportGLTF(doc_.model(), pictures, chosen.toStdString());
    if (!error.empty()) {
        prompts_.Message(window_, QString::fromStdString(error), PromptIcon::Exclamation);
        return false;
    }
    return true;
}

bool FileCommands::ImportModelFile() {
    const QString chosen = prompts_.OpenFileName(window_, "Import Model", kImportFilter,
                                                 QFileInfo(doc_.ModelPath()).path());
    if (chosen.isEmpty()) return false;
    return ImportModelFrom(chosen);
}

bool FileCommands::ImportModelFrom(const QString& path) {
    if (!MaybeSave()) return false;
    ImportResult result = ImportModel(path.toStdString());
    if (result.Status != ImportStatus::Done) {
        prompts_.Message(
            window_,
            "Could not import " + FileTitle(path) + ": " + QString::fromStdString(result.Error),
            PromptIcon::Exclamation);
        return false;
    }
    // What came in, and what the game would say of it, before it opens.
    QStringList report;
    for (const std::string& line : ImportReport(result))
        report << QString::fromStdString(line);
    for (const Finding& f : CheckModel(result.Model))
        report << QString("%1 %2: %3")
                      .arg(SeverityName(f.Level), QString::fromStdString(f.Code),
                           QString::fromStdString(f.Message));
    prompts_.Message(window_, "Imported " + FileTitle(path) + ": " + report.join('\n'),
                     PromptIcon::Information);
    doc_.BeginChange();
    doc_.model() = std::move(result.Model);
    // Named after the file, in its folder (where its pictures are found); Save asks first.
    const QFileInfo source(path);
    const QString title = source.completeBaseName() + ".oof";
    doc_.SetModelFile(source.dir().filePath(title), title, true);
    doc_.ResetModel(true);
    doc_.MarkUnsaved();
    return true;
}

bool FileCommands::MaybeSave() {
    if (!doc_.isModified() || !doc_.hasModel()) return true;
    const auto answer = prompts_.Ask(window_, "Save changes to " + doc_.ModelTitle() + "?",
                                     QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                                     PromptIcon::Question);
    if (answer == QMessageBox::Discard) return true;
    if (answer == QMessageBox::Save) return Save();
    return false;
}

}  // namespace mw
