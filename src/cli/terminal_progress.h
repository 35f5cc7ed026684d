// Progress and messages of the game-data readers for the command-line tool: a progress line
// on a terminal, nothing when standard error is not one.
#pragma once

#include <ostream>

#include "gamedata/progress.h"

namespace mw {

class TerminalProgress : public ProgressSink {
  public:
    explicit TerminalProgress(std::ostream& err);
    void End() override;
    void Report(int percent, const std::string& text) override;

  private:
    std::ostream& err_;
    bool enabled_;
    std::string text_;
    int shown_ = -1;
};

class StreamMessages : public MessageSink {
  public:
    explicit StreamMessages(std::ostream& err) : err_(err) {}
    void Information(const std::string& text) override { err_ << text << "\n"; }

  private:
    std::ostream& err_;
};

}  // namespace mw
