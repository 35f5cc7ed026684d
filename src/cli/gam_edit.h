// The gam sub-commands that change tables, and what they share with dump.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "gamedata/table_file.h"

namespace mw {

// Reads a table (a .gam, or the table of an archive); 0 or the exit status, with a message.
int LoadTable(const std::string& path, TableFile& file, std::ostream& err);

bool EqualsIgnoringCase1252(const std::string& a, const std::string& b);

// Each takes the arguments after "gam" (args[0] is the sub-command).
int GamSet(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int GamAddObject(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int GamRemove(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int GamMerge(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace mw
