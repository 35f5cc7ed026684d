#pragma once

#include <filesystem>
#include <string>

namespace mw::test {

// A fresh folder under the system's temporary folder, removed again at the end.
class TempDir {
  public:
    explicit TempDir(const std::string& name);
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    std::filesystem::path operator/(const std::string& file) const { return path_ / file; }
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace mw::test
