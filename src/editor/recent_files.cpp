#include "editor/recent_files.h"

#include <algorithm>

#include "gamedata/settings.h"

namespace mw {

void AddToRecent(std::vector<std::string>& list, const std::string& path) {
    std::erase(list, path);
    list.insert(list.begin(), path);
    if (list.size() > static_cast<std::size_t>(kMaxRecentFiles)) list.resize(kMaxRecentFiles);
}

void RemoveRecent(std::vector<std::string>& list, int n) {
    if (n < 1 || n > static_cast<int>(list.size())) return;
    list.erase(list.begin() + (n - 1));
}

std::string RecentCaption(int n, const std::string& path) {
    const std::string number = "&" + std::to_string(n);
    if (path.size() < 36) return number + " " + path;
    return number + " ..." + path.substr(path.size() - 35);
}

}  // namespace mw
