// meshwright-cli sheet: a contact sheet of every model in an archive or a folder.
#include <QFont>
#include <QPainter>
#include <algorithm>
#include <filesystem>
#include <functional>
#include <ostream>
#include <sstream>

#include "cli/cli.h"
#include "cli/model_picture.h"
#include "cli/terminal_progress.h"
#include "convert/orf_reader.h"
#include "gamedata/file_names.h"
#include "gamedata/hog.h"
#include "model/file_io.h"
#include "model/geometry.h"
#include "model/oof_reader.h"
#include "model/text_codec.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSheetUsage =
    "Usage: meshwright-cli sheet ARCHIVE|FOLDER --png OUT [--columns N] [--size N]\n"
    "                            [game data]\n"
    "Draws every model of a HOG/MN3 archive, or every .oof and .orf file of a folder,\n"
    "textured in a cell of N x N pixels (160 unless given), COLUMNS to a row (6 unless\n"
    "given), each labelled with its name, and writes the sheet as PNG. A model that cannot\n"
    "be read shows why in its cell. An archive's own textures are used (as the mission, or\n"
    "as d3.hog when it is one) unless the options name that archive's place.\n";

constexpr int kLabelHeight = 18;
constexpr int kGap = 4;

struct SheetItem {
    std::string name;
    // Reads the model; returns the error text, empty on success.
    std::function<std::string(ModelData&)> read;
};

std::string ReadBytes(ModelData& model, const std::vector<std::uint8_t>& bytes, bool room,
                      const GameNameTable& names) {
    const ResultCode result = room ? importORF(model, bytes, names) : readOOF(model, bytes);
    if (result != ResultCode::Success) return TranslateError(result);
    CreatePushPop(model);
    return {};
}

bool IsModelName(const std::string& name) {
    const std::string ext = AsciiLower(fs::path(name).extension().string());
    return ext == ".oof" || ext == ".orf";
}

std::vector<SheetItem> FolderItems(const fs::path& folder, const GameNameTable& names) {
    std::vector<fs::path> files;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        if (it->is_regular_file(ec) && IsModelName(it->path().filename().string()))
            files.push_back(it->path());
    }
    std::sort(files.begin(), files.end(), [](const fs::path& a, const fs::path& b) {
        return AsciiLower(a.filename().string()) < AsciiLower(b.filename().string());
    });
    std::vector<SheetItem> items;
    for (const fs::path& file : files) {
        items.push_back({file.filename().string(), [file, &names](ModelData& model) {
                             const auto bytes = ReadFileBytes(file);
                             if (!bytes) return std::string("Cannot open the file");
                             return ReadBytes(model, *bytes,
                                              AsciiLower(file.extension().string()) == ".orf",
                                              names);
                         }});
    }
    return items;
}

std::vector<SheetItem> ArchiveItems(const std::string& archive, const GameNameTable& names,
                                    std::ostream& err, int& status) {
    std::vector<HogDirectoryEntry> entries;
    if (ReadHogFileEntries(archive, entries) != HogStatus::Ok) {
        err << "Cannot read the archive " << archive << "\n";
        status = kExitNoInput;
        return {};
    }
    std::vector<SheetItem> items;
    for (const HogDirectoryEntry& e : entries) {
        if (std::string_view(HogEntryKind(e.Name)) != "model") continue;
        items.push_back({Utf8From1252(e.Name), [archive, e, &names](ModelData& model) {
                             const auto bytes = ReadArchiveEntry(archive, e);
                             if (!bytes) return std::string("The archive ends inside this model");
                             return ReadBytes(model, *bytes, false, names);
                         }});
    }
    return items;
}

// A cell: the picture (or the error, wrapped) above the name.
void PaintCell(QPainter& p, const QRect& cell, const QImage* picture, const QString& name,
               const QString& error) {
    const QRect art(cell.topLeft(), QSize(cell.width(), cell.height() - kLabelHeight));
    p.fillRect(art, QColor(24, 24, 28));
    if (picture != nullptr) p.drawImage(art.topLeft(), *picture);
    QFont font = p.font();
    font.setPixelSize(11);
    p.setFont(font);
    if (!error.isEmpty()) {
        p.setPen(QColor(255, 120, 100));
        p.drawText(art.adjusted(6, 6, -6, -6), Qt::AlignCenter | Qt::TextWordWrap, error);
    }
    p.setPen(QColor(230, 230, 230));
    const QRect label(cell.left(), art.bottom() + 1, cell.width(), kLabelHeight);
    p.drawText(label, Qt::AlignCenter,
               p.fontMetrics().elidedText(name, Qt::ElideMiddle, cell.width() - 4));
}

}  // namespace

int SheetCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kSheetUsage << kGameDataUsage;
        return 0;
    }
    std::string source, png;
    GameDataOptions options;
    int columns = 6, size = 160;
    bool ok = true;
    for (std::size_t i = 0; i < args.size() && ok; ++i) {
        const bool value = i + 1 < args.size();
        if (args[i] == "--png" && value) {
            png = args[++i];
        } else if (args[i] == "--columns" && value) {
            ok = ParseInt(args[++i], columns) && columns >= 1 && columns <= 64;
        } else if (args[i] == "--size" && value) {
            ok = ParseInt(args[++i], size) && size >= 32 && size <= 1024;
        } else if (TakeGameDataOption(args, i, options)) {
        } else if (!args[i].starts_with("--") && source.empty()) {
            source = args[i];
        } else {
            ok = false;
        }
    }
    if (!ok || source.empty() || png.empty()) {
        err << kSheetUsage << kGameDataUsage;
        return kExitUsage;
    }
    std::error_code ec;
    const bool folder = fs::is_directory(source, ec);
    if (!folder && !fs::is_regular_file(source, ec)) {
        err << "Cannot open " << source << "\n";
        return kExitNoInput;
    }
    Settings settings;
    if (const int status = ResolveGameDataOrEditorSettings(options, settings, err)) return status;
    if (!folder) {
        if (ContainsIgnoringCase(FileNameOf(source), "d3.hog")) {
            if (!options.d3) settings.D3HogPath = source;
        } else if (!options.mission) {
            settings.MN3GAMPath = source;
        }
        DeriveArchivePaths(settings);
    }
    DrawingSession session;
    if (!session.Start(2 * size, 2 * size, settings, err)) return kExitCantCreate;
    const GameNameTable names = GameNameTable::WithGam(session.data.Gam);

    int status = 0;
    const std::vector<SheetItem> items =
        folder ? FolderItems(source, names) : ArchiveItems(source, names, err, status);
    if (status != 0) return status;
    if (items.empty()) {
        err << "No models in " << source << "\n";
        return kExitNoInput;
    }

    const int count = static_cast<int>(items.size());
    const int cols = std::min(columns, count);
    const int rows = (count + cols - 1) / cols;
    const QSize cell(size, size + kLabelHeight);
    QImage sheet(kGap + cols * (cell.width() + kGap), kGap + rows * (cell.height() + kGap),
                 QImage::Format_RGB32);
    sheet.fill(QColor(48, 48, 54));
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::TextAntialiasing);
    TerminalProgress progress(err);
    for (int i = 0; i < count; ++i) {
        const SheetItem& item = items[static_cast<std::size_t>(i)];
        progress.Report(PercentOf(i, count), "Drawing " + item.name);
        ModelData model;
        const std::string failure = item.read(model);
        const QRect where(QPoint(kGap + (i % cols) * (cell.width() + kGap),
                                 kGap + (i / cols) * (cell.height() + kGap)),
                          cell);
        if (!failure.empty()) {
            err << item.name << ": " << failure << "\n";
            PaintCell(painter, where, nullptr, QString::fromStdString(item.name),
                      QString::fromStdString(failure));
            continue;
        }
        const std::string path = folder ? (fs::path(source) / item.name).string() : item.name;
        PrepareModel(session.view, model, path, session.gameDataOrNull(), settings);
        const QImage picture =
            FitIntoSquare(session.view.RenderTransparent(model, ModelOnlyFrame(model)), size);
        PaintCell(painter, where, &picture, QString::fromStdString(item.name), {});
    }
    progress.Report(100, "");
    progress.End();
    painter.end();
    if (!sheet.save(QString::fromStdString(png), "PNG")) {
        err << "Error writing " << png << "\n";
        return kExitCantCreate;
    }
    out << count << " models\n";
    return 0;
}

}  // namespace mw
