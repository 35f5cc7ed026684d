#include "model/file_io.h"

#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace mw {

std::optional<std::vector<std::uint8_t>> ReadFileBytes(const std::filesystem::path& path) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)),
                                    std::istreambuf_iterator<char>());
    if (in.bad()) return std::nullopt;
    return bytes;
}

std::string WriteFileReplacing(const std::filesystem::path& path,
                               std::span<const std::uint8_t> bytes) {
    namespace fs = std::filesystem;
    const std::string failure = "Error writing " + path.string();
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    std::random_device seed;
    const fs::path temp =
        folder / ("." + path.filename().string() + "." + std::to_string(seed()) + ".tmp");
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (!out) return failure;
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
        out.flush();
        if (!out) {
            out.close();
            std::error_code ignored;
            fs::remove(temp, ignored);
            return failure;
        }
    }
    std::error_code ec;
    fs::rename(temp, path, ec);
    if (ec) {
        fs::remove(temp, ec);
        return failure;
    }
    return {};
}

}  // namespace mw
