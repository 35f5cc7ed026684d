#include "editor/model_check.h"

#include <QStringList>

#include "editor/document.h"
#include "gamedata/texture_loader.h"

namespace mw {

ModelCheck DocumentCheck(const Document& doc, const LoadedTextures* textures,
                         const Settings* settings) {
    return [&doc, textures, settings] {
        const bool gameData = settings != nullptr && NamesGameData(*settings);
        if (!gameData || textures == nullptr ||
            textures->Resolved.size() != doc.model().Textures.size()) {
            return CheckModel(doc.model());
        }
        const std::vector<bool> resolved = FoundInGameData(*textures);
        return CheckModel(doc.model(), &resolved);
    };
}

QString SaveWithErrorsQuestion(const std::vector<Finding>& findings) {
    QStringList lines;
    int errors = 0;
    for (const Finding& f : findings) {
        if (f.Level != Severity::Error) continue;
        if (++errors <= 5) lines << "- " + QString::fromStdString(f.Message);
    }
    if (errors == 0) return {};
    if (errors > 5) lines << QString("... and %1 more.").arg(errors - 5);
    return QString(
               "The game will refuse this model or stop on it (%1):\n\n%2\n\n"
               "Tools > Check Model... lists every finding. Save it anyway?")
        .arg(errors == 1 ? QString("1 error") : QString("%1 errors").arg(errors), lines.join("\n"));
}

}  // namespace mw
