#include "support/temp_dir.h"

#include <unistd.h>

namespace mw::test {

TempDir::TempDir(const std::string& name)
    : path_(std::filesystem::temp_directory_path() /
            ("mw_" + name + "_" + std::to_string(::getpid()))) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace mw::test
