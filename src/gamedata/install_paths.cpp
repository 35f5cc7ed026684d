#include "gamedata/install_paths.h"

namespace mw {

namespace fs = std::filesystem;

fs::path ProgramDir() {
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? fs::current_path(ec) : exe.parent_path();
}

fs::path FindProgramFile(const fs::path& programDir, const std::string& relative) {
    std::error_code ec;
    for (const fs::path& candidate :
         {programDir / relative, programDir / ".." / "share" / "meshwright" / relative}) {
        if (fs::is_regular_file(candidate, ec)) return candidate.lexically_normal();
    }
    return {};
}

}  // namespace mw
