// A GAM table page by page: read every page; a table that reads writes back to the same bytes;
// each decoded page written anew in the current version reads back to a page that writes the
// same bytes again, lists its fields, takes a changed field and passes the table check.
#include <cstdlib>

#include "gamedata/gam_json.h"
#include "gamedata/gam_table.h"
#include "gamedata/table_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string error;
    const auto table = mw::ReadGamPages({data, size}, error);
    if (!table) {
        if (error.empty()) std::abort();
        return 0;
    }
    if (mw::WriteGamPages(*table) != std::vector<std::uint8_t>(data, data + size)) std::abort();
    for (const mw::TablePage& page : table->Pages) {
        if (std::holds_alternative<std::monostate>(page.Record())) continue;
        const mw::TablePage made = mw::MakePage(page.Record());
        std::string again;
        const auto reread = mw::ReadGamPages(made.Bytes, again);
        if (!reread || reread->Pages.size() != 1 || reread->Pages[0].ExtraBytes() != 0)
            std::abort();
        if (mw::EncodePage(reread->Pages[0].Record()) != made.Bytes) std::abort();
        (void)mw::PageJson(made);
        mw::TablePage renamed = made;
        if (!mw::SetPageField(renamed, "name", "Fuzzed").empty()) std::abort();
        if (renamed.Name() != "Fuzzed") std::abort();
    }
    (void)mw::CheckTable(*table, true);
    return 0;
}
