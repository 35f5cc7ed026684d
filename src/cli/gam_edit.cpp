#include "cli/gam_edit.h"

#include <ostream>

#include "cli/cli.h"
#include "gamedata/gam_json.h"
#include "gamedata/game_object.h"
#include "model/text_codec.h"

namespace mw {
namespace {

int Save(const TableFile& source, const GamTable& table, const std::string& out,
         std::ostream& err) {
    const std::string failure = SaveTableFile(source, table, out);
    if (!failure.empty()) {
        err << failure << "\n";
        return kExitCantCreate;
    }
    return 0;
}

int Refuse(std::ostream& err, const std::string& message) {
    err << message << "\n";
    return kExitRefused;
}

// The index of the page named `name` (UTF-8) in the table, or -1 with a message.
int PageOrSay(const GamTable& table, const std::string& name, const std::string& where,
              std::ostream& err) {
    const int i = FindPage(table, Cp1252FromUtf8(name));
    if (i < 0) err << "No page \"" << name << "\" in " << where << ".\n";
    return i;
}

}  // namespace

bool EqualsIgnoringCase1252(const std::string& a, const std::string& b) {
    return LowerCase1252(a) == LowerCase1252(b);
}

int LoadTable(const std::string& path, TableFile& file, std::ostream& err) {
    std::string message;
    switch (LoadTableFile(path, file, message)) {
        case TableLoad::Ok:
            return 0;
        case TableLoad::Unreadable:
            err << message << "\n";
            return kExitNoInput;
        case TableLoad::Damaged:
        case TableLoad::NoTable:
            err << message << "\n";
            return kExitRefused;
    }
    return kExitRefused;
}

int GamSet(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
    if (args.size() < 5) return kExitUsage;
    for (std::size_t i = 4; i < args.size(); ++i) {
        if (args[i].find('=') == std::string::npos) return kExitUsage;
    }
    TableFile file;
    if (const int status = LoadTable(args[1], file, err)) return status;
    const int at = PageOrSay(file.Table, args[3], args[1], err);
    if (at < 0) return kExitRefused;
    TablePage page = file.Table.Pages[static_cast<std::size_t>(at)];
    for (std::size_t i = 4; i < args.size(); ++i) {
        const auto eq = args[i].find('=');
        const std::string problem = SetPageField(page, std::string_view(args[i]).substr(0, eq),
                                                 std::string_view(args[i]).substr(eq + 1));
        if (!problem.empty()) return Refuse(err, problem);
    }
    file.Table.Pages[static_cast<std::size_t>(at)] = std::move(page);
    return Save(file, file.Table, args[2], err);
}

int GamAddObject(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() < 3) return kExitUsage;
    std::string like, from, name;
    ObjectModels models;
    for (std::size_t i = 3; i < args.size(); ++i) {
        if (i + 1 >= args.size()) return kExitUsage;
        const std::string& option = args[i];
        const std::string& value = args[++i];
        if (option == "--like") {
            like = value;
        } else if (option == "--from") {
            from = value;
        } else if (option == "--name") {
            name = value;
        } else if (option == "--model") {
            models.Model = Cp1252FromUtf8(value);
        } else if (option == "--medium") {
            models.Medium = Cp1252FromUtf8(value);
        } else if (option == "--low") {
            models.Low = Cp1252FromUtf8(value);
        } else {
            return kExitUsage;
        }
    }
    if (like.empty() || name.empty() || models.Model.empty()) return kExitUsage;
    TableFile file;
    if (const int status = LoadTable(args[1], file, err)) return status;
    const auto newName = Cp1252FromUtf8Exact(name);
    if (!newName)
        return Refuse(err, "\"" + name + "\" has a character the game's texts cannot hold.");
    if (FindPage(file.Table, *newName) >= 0)
        return Refuse(err, "\"" + name + "\" is a page of " + args[1] + " already.");
    // The page to copy: from the table itself, else from the source named.
    const TablePage* original = nullptr;
    TableFile source;
    if (const int i = FindPage(file.Table, Cp1252FromUtf8(like)); i >= 0) {
        original = &file.Table.Pages[static_cast<std::size_t>(i)];
    } else if (!from.empty()) {
        if (const int status = LoadTable(from, source, err)) return status;
        const int j = PageOrSay(source.Table, like, from, err);
        if (j < 0) return kExitRefused;
        original = &source.Table.Pages[static_cast<std::size_t>(j)];
    } else {
        PageOrSay(file.Table, like, args[1], err);
        return kExitRefused;
    }
    TablePage made;
    if (std::string problem = CopyObjectPage(*original, *newName, models, made); !problem.empty())
        return Refuse(err, problem);
    file.Table.Pages.push_back(std::move(made));
    if (const int status = Save(file, file.Table, args[2], err)) return status;
    out << "Added " << PageKindName(file.Table.Pages.back().Type) << " \"" << name << "\" like \""
        << like << "\".\n";
    return 0;
}

int GamRemove(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
    if (args.size() < 4) return kExitUsage;
    TableFile file;
    if (const int status = LoadTable(args[1], file, err)) return status;
    for (std::size_t i = 3; i < args.size(); ++i) {
        const int at = PageOrSay(file.Table, args[i], args[1], err);
        if (at < 0) return kExitRefused;
        file.Table.Pages.erase(file.Table.Pages.begin() + at);
    }
    return Save(file, file.Table, args[2], err);
}

int GamMerge(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
    if (args.size() < 3) return kExitUsage;
    GamTable merged;
    for (std::size_t i = 2; i < args.size(); ++i) {
        TableFile file;
        if (const int status = LoadTable(args[i], file, err)) return status;
        for (TablePage& page : file.Table.Pages) {
            // The game stops on the same page twice in one add-on table.
            for (const TablePage& earlier : merged.Pages) {
                if (!page.Name().empty() && earlier.Type == page.Type &&
                    EqualsIgnoringCase1252(earlier.Name(), page.Name())) {
                    return Refuse(err, std::string("The ") + PageKindName(page.Type) + " page \"" +
                                           Utf8From1252(page.Name()) + "\" of " + args[i] +
                                           " is in an earlier table too; the game stops on a "
                                           "page twice in one table.");
                }
            }
            merged.Pages.push_back(std::move(page));
        }
    }
    return Save(TableFile{}, merged, args[1], err);
}

}  // namespace mw
