// Trying a mission in the open-source engine: a scratch folder holding the mission in its
// "missions" folder, the program's arguments to start that mission's level at once, and what
// the game's output says went wrong with models, textures and pages.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace mw {

struct PlaySetup {
    std::filesystem::path Program;  // the game's program
    std::filesystem::path GameDir;  // the folder of the game's data (d3.hog); may be empty
    std::filesystem::path Mission;  // NAME.mn3
    int Level = 1;
    std::filesystem::path Scratch;  // the folder made for the run (its contents are replaced)
};

struct PreparedPlay {
    std::string Error;  // why the game cannot be started; empty when ready
    std::filesystem::path Program;
    std::vector<std::string> Arguments;
    std::filesystem::path WorkingDir;   // the scratch folder
    std::filesystem::path MissionCopy;  // SCRATCH/missions/NAME.mn3
};

// The scratch folder for runs: $XDG_CACHE_HOME/meshwright/play (~/.cache/... without it).
std::filesystem::path DefaultPlayFolder();

// Copies the mission into the scratch folder and makes the arguments:
//   -setdir SCRATCH -additionaldir GAMEDIR -additionaldir SCRATCH -mission NAME.mn3
//   -loadlevel N -windowed
// The scratch folder is both the writable base folder of engines that take -setdir and the
// read-only folder named last (searched first) by those that keep their own writable folder,
// so the mission under test is found before any copy of it in the game's folder.
PreparedPlay PreparePlay(const PlaySetup& setup);

// The mission archive's copy of a file (an entry of the same name) against the file itself.
enum class MissionCopy { Same, Differs, Missing, Unreadable };
MissionCopy CompareMissionCopy(const std::filesystem::path& mission,
                               const std::filesystem::path& file);
// The file put into the mission archive under its own name (replacing the entry of that
// name; every other entry unchanged). "" or why nothing was written.
std::string PutIntoMission(const std::filesystem::path& mission, const std::filesystem::path& file);

// What the message says, when the game cannot be started for want of a program.
std::string NoGameProgramMessage();

// One thing the game's output says went wrong.
struct GameProblem {
    std::string Kind;     // "file not found", "redundant page", "bitmap type refused", ...
    std::string Subject;  // the file or page concerned ("" when the line names none)
    std::string Page;     // the page kind that named it ("generic", "ship" ...), when known
    std::string Line;     // the line as the game printed it
};

// Reads the game's output a line at a time and keeps the problems it finds.
class GameLogReader {
  public:
    // Text as it arrives, in any pieces; complete lines are read.
    void Add(std::string_view text);
    // Reads what is left of an unfinished last line.
    void Finish();
    const std::vector<GameProblem>& Problems() const { return problems_; }

  private:
    void ReadLine(std::string_view line);
    std::string partial_;
    std::string lastBitmap_;  // the bitmap named by the line before a "can't read" line
    std::vector<GameProblem> problems_;
};

// "file not found: ship.oof (named by a generic page)": a problem as one line for people.
std::string DescribeProblem(const GameProblem& p);

// Told what the game prints while it runs (both streams, as it comes), and asked a few
// times a second whether to go on.
class GameOutput {
  public:
    virtual ~GameOutput() = default;
    virtual void Output(std::string_view text) = 0;
    // False ends the game by its process.
    virtual bool KeepRunning() { return true; }
};

struct GameRunResult {
    bool Started = false;
    bool Stopped = false;  // ended through KeepRunning
    bool Crashed = false;  // ended by a signal
    int ExitCode = 0;
    std::string Error;  // why it did not start
};

// Runs the prepared game until it ends, handing its output on.
GameRunResult RunGame(const PreparedPlay& play, GameOutput& output);

}  // namespace mw
