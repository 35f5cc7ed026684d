#include "gamedata/game_object.h"

#include "gamedata/file_names.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr std::size_t kPageStringLength = 34;
constexpr std::size_t kModelStemLength = 30;

}  // namespace

std::string PageNameProblem(const std::string& name) {
    if (name.empty()) return "A page needs a name.";
    if (name.size() > kPageStringLength) {
        return "\"" + Utf8From1252(name) + "\" is longer than the " +
               std::to_string(kPageStringLength) + " characters a page string holds.";
    }
    return {};
}

std::string ModelNameProblem(const std::string& name) {
    const std::string shown = Utf8From1252(name);
    if (name.size() < 5 || !EqualsIgnoringCase(name.substr(name.size() - 4), ".oof"))
        return "\"" + shown + "\" is no .oof name; the game loads models only by their .oof name.";
    if (name.size() - 4 > kModelStemLength) {
        return "\"" + shown + "\" has a name longer than the " + std::to_string(kModelStemLength) +
               " characters the game keeps of a model's name.";
    }
    if (name.size() > kPageStringLength) return PageNameProblem(name);
    return {};
}

std::string CopyObjectPage(const TablePage& like, const std::string& name,
                           const ObjectModels& models, TablePage& made) {
    if (std::string problem = PageNameProblem(name); !problem.empty()) return problem;
    for (const std::string* m : {&models.Model, &models.Medium, &models.Low}) {
        if (m->empty()) continue;
        if (std::string problem = ModelNameProblem(*m); !problem.empty()) return problem;
    }
    if (models.Model.empty()) return "The new object needs a model.";
    PageRecord record = like.Record();
    if (auto* g = RecordAs<GenericRecord>(record)) {
        g->Name = name;
        g->Model = models.Model;
        g->MediumModel = models.Medium;
        g->LowModel = models.Low;
    } else if (auto* s = RecordAs<ShipRecord>(record)) {
        s->Name = name;
        s->Model = models.Model;
        s->MediumModel = models.Medium;
        s->LowModel = models.Low;
    } else if (auto* w = RecordAs<WeaponRecord>(record)) {
        if (w->Flags & (kWeaponImageBitmap | kWeaponImageVclip))
            return "\"" + Utf8From1252(w->Name) + "\" fires a bitmap, not a model.";
        w->Name = name;
        w->FireImage = models.Model;
    } else {
        return std::string("A ") + PageKindName(like.Type) +
               " page names no model; copy a generic, ship or weapon page.";
    }
    made = MakePage(std::move(record));
    return {};
}

std::vector<std::string> PageModels(const TablePage& page) {
    std::vector<std::string> names;
    auto add = [&names](const std::string& n) {
        if (!n.empty()) names.push_back(n);
    };
    if (const auto* g = RecordAs<GenericRecord>(page.Record())) {
        add(g->Model);
        add(g->MediumModel);
        add(g->LowModel);
    } else if (const auto* s = RecordAs<ShipRecord>(page.Record())) {
        add(s->Model);
        add(s->DyingModel);
        add(s->MediumModel);
        add(s->LowModel);
    } else if (const auto* w = RecordAs<WeaponRecord>(page.Record())) {
        if (!(w->Flags & (kWeaponImageBitmap | kWeaponImageVclip))) add(w->FireImage);
    } else if (const auto* d = RecordAs<DoorRecord>(page.Record())) {
        add(d->Model);
    }
    return names;
}

}  // namespace mw
