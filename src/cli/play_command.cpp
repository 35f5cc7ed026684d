// meshwright-cli play: a mission started in the open-source engine, its output shown as it
// comes, and what went wrong with models, textures and pages listed when the game ends.
#include <ostream>

#include "cli/cli.h"
#include "cli/game_data_options.h"
#include "convert/game_run.h"
#include "gamedata/autofind.h"

namespace mw {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPlayUsage =
    "Usage: meshwright-cli play MISSION.mn3 [--level N] [--game PROGRAM] [--scratch DIR]\n"
    "                           [game data options]\n"
    "Starts the open-source Descent 3 engine on a level of the mission (level 1 unless\n"
    "--level), windowed, with a scratch writable folder (--scratch, by default\n"
    "~/.cache/meshwright/play) that holds a copy of the mission, and the folder of d3.hog as\n"
    "the game's data. The program is --game, else the settings' \"GameProgram\", else one\n"
    "found on the PATH or in the usual install places. The game's output is printed as it\n"
    "comes; when it ends, the models, textures and pages it could not load are listed\n"
    "(exit 65 when there are any; 69 when the game cannot be started).\n";

constexpr int kExitUnavailable = 69;

class PrintedOutput : public GameOutput {
  public:
    PrintedOutput(std::ostream& out, GameLogReader& log) : out_(out), log_(log) {}
    void Output(std::string_view text) override {
        out_ << text;
        out_.flush();
        log_.Add(text);
    }

  private:
    std::ostream& out_;
    GameLogReader& log_;
};

}  // namespace

int PlayCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (WantsHelp(args)) {
        out << kPlayUsage << kGameDataUsage;
        return 0;
    }
    PlaySetup setup;
    GameDataOptions data;
    std::vector<std::string> files;
    std::string program;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--level" && i + 1 < args.size()) {
            if (!ParseInt(args[++i], setup.Level) || setup.Level < 1) {
                err << "--level takes a level number from 1.\n" << kPlayUsage;
                return kExitUsage;
            }
        } else if (args[i] == "--game" && i + 1 < args.size()) {
            program = args[++i];
        } else if (args[i] == "--scratch" && i + 1 < args.size()) {
            setup.Scratch = args[++i];
        } else if (TakeGameDataOption(args, i, data)) {
        } else if (!args[i].starts_with("--")) {
            files.push_back(args[i]);
        } else {
            err << kPlayUsage;
            return kExitUsage;
        }
    }
    if (files.size() != 1) {
        err << kPlayUsage;
        return kExitUsage;
    }
    Settings settings;
    if (const int status = ResolveGameData(data, settings, err)) return status;
    if (!settings.D3HogPath.empty()) setup.GameDir = fs::path(settings.D3HogPath).parent_path();
    if (program.empty()) program = settings.GameProgram;
    if (program.empty())
        program = FindGameProgram(AutofindPlaces::FromEnvironment(), setup.GameDir);
    setup.Program = program;
    setup.Mission = files[0];
    if (setup.Scratch.empty()) setup.Scratch = DefaultPlayFolder();

    const PreparedPlay play = PreparePlay(setup);
    if (!play.Error.empty()) {
        err << play.Error << "\n";
        return setup.Program.empty() ? kExitUnavailable : kExitNoInput;
    }
    out << "Starting " << play.Program.string();
    for (const std::string& a : play.Arguments)
        out << " " << a;
    out << "\n";
    GameLogReader log;
    PrintedOutput printed(out, log);
    const GameRunResult run = RunGame(play, printed);
    if (!run.Started) {
        err << run.Error << "\n";
        return kExitUnavailable;
    }
    log.Finish();
    out << "\nThe game " << (run.Crashed ? "crashed" : "ended")
        << (run.Crashed ? "" : " with exit code " + std::to_string(run.ExitCode)) << ".\n";
    if (log.Problems().empty()) {
        out << "Its output names no model, texture or page it could not load.\n";
        return 0;
    }
    out << "What it could not load:\n";
    for (const GameProblem& p : log.Problems())
        out << "  " << DescribeProblem(p) << "\n";
    return kExitRefused;
}

}  // namespace mw
