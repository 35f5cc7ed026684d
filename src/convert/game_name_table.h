// The table that turns the texture names rooms use (the game's names) into bitmap names.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mw {

class clsGAM;

class GameNameTable {
  public:
    // The rows that ship with the program.
    static GameNameTable Builtin();
    // The shipped rows, then the texture entries of the loaded GAM tables.
    static GameNameTable WithGam(const clsGAM& gam);

    // Parses "game name,bitmap name" lines; empty lines and lines starting with '#' are
    // skipped, as are lines without a comma.
    void AddRows(std::string_view text);
    void AddRow(std::string gameName, std::string bitmapName);

    const std::vector<std::pair<std::string, std::string>>& rows() const { return rows_; }

  private:
    std::vector<std::pair<std::string, std::string>> rows_;
};

}  // namespace mw
