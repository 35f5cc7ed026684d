// Progress and messages reach the user through these small interfaces; the editor shows a
// dialog and message boxes, the command-line tool a terminal line or nothing.
#pragma once

#include <string>
#include <string_view>

namespace mw {

class ProgressSink {
  public:
    virtual ~ProgressSink() = default;
    virtual void Begin() {}
    virtual void End() {}
    // Sets the bar; a non-empty text replaces the line (already shortened).
    virtual void Report(int percent, const std::string& text) = 0;
};

class MessageSink {
  public:
    virtual ~MessageSink() = default;
    virtual void Information(const std::string& text) = 0;
};

// The line as the progress dialog shows it: texts of 30 characters or more are shortened
// around their first blank, keeping their end.
std::string ShortenProgressText(std::string_view text);

// Clamps the percentage to 0..100 (writing it back) and reports it with the shortened text.
// A null sink does nothing.
void ShowProgress(ProgressSink* sink, int& percent, std::string_view text);

// Nearest whole percentage of part / whole, ties to even.
int PercentOf(double part, double whole);

}  // namespace mw
