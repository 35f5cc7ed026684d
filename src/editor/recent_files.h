// The list of recent paths (most recent first, at most nine) and the captions of its menu.
#pragma once

#include <string>
#include <vector>

namespace mw {

// Puts `path` first, removing any earlier entry equal to it; the ninth falls off.
void AddToRecent(std::vector<std::string>& list, const std::string& path);

// Removes entry n (1 for the most recent); later entries move up.
void RemoveRecent(std::vector<std::string>& list, int n);

// The menu caption of entry n: "&n path", or "&n ..." and the last 35 characters of a path
// of 36 characters or more.
std::string RecentCaption(int n, const std::string& path);

}  // namespace mw
