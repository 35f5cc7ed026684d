#include "cli/terminal_progress.h"

#include <unistd.h>
#include <iostream>

namespace mw {

TerminalProgress::TerminalProgress(std::ostream& err)
    : err_(err), enabled_(&err == &std::cerr && ::isatty(STDERR_FILENO) == 1) {}

void TerminalProgress::Report(int percent, const std::string& text) {
    if (!text.empty()) text_ = text;
    if (!enabled_ || (percent == shown_ && text.empty())) return;
    shown_ = percent;
    err_ << "\r\033[K[" << percent << "%] " << text_ << std::flush;
}

void TerminalProgress::End() {
    if (enabled_ && shown_ >= 0) err_ << "\r\033[K" << std::flush;
    shown_ = -1;
}

}  // namespace mw
