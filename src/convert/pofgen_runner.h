// Runs a model compiler on a P3D file. The compilers are Windows programs: they are started
// through "wine" found on the PATH, with the P3D file given as a Windows path, and
// everything they print on either stream is collected until they end.
#pragma once

#include <string>

namespace mw {

// Told while the compiler runs (a few times a second), so the caller can keep its window
// alive and offer to stop a long run.
class CompilerWatch {
  public:
    virtual ~CompilerWatch() = default;
    // `seconds` since the start; false stops the compiler.
    virtual bool KeepWaiting(double seconds) = 0;
};

struct CompilerRun {
    enum class Status {
        Finished,       // the compiler ran and ended; `output` holds what it printed
        NoWine,         // no "wine" on the PATH
        NotStarted,     // the process could not be started
        NoWindowsPath,  // the P3D path has no Windows form
        Cancelled,      // stopped through the watch
    };
    Status status = Status::NotStarted;
    std::string output;  // as printed (bytes)
    std::string windowsPath;
};

// The Windows form of a path: `winepath -w` when winepath is on the PATH, else the path on
// wine's "Z:" drive. Empty when it has none.
std::string WindowsPathOf(const std::string& path);

// Runs `wine compilerPath switches... windowsPath(p3dPath)`.
CompilerRun RunCompiler(const std::string& compilerPath, const std::string& switches,
                        const std::string& p3dPath, CompilerWatch* watch);

}  // namespace mw
