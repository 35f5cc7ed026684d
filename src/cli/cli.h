// meshwright-cli: the model core as a scriptable command-line tool.
#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "model/model_data.h"

namespace mw {

// Exit statuses besides 0 and the readers' result codes 1 to 7.
inline constexpr int kExitRefused = 65;  // the model refused an operation
inline constexpr int kExitUsage = 64;
inline constexpr int kExitNoInput = 66;
inline constexpr int kExitCantCreate = 73;

// Runs one command line (without the program name).
int RunCli(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// The commands, each given the arguments after its name.
int InfoCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int ResaveCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int EditCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int RenderCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int ConvertCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int HogCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int ImageCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
// "image encode" and "image encode-animation" (args[0] is the sub-command).
int EncodeImageCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
// "hog create", "hog add" and "hog remove" (args[0] is the sub-command).
int HogWriteCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int ExportCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int ImportCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int PackageCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int GamCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int CheckCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int TexturesCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int ThumbnailCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int PlayCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int SheetCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// The bytes of one archive entry, found by name ignoring case. Returns 0 or an exit status.
int ExtractHogEntry(const std::string& archive, const std::string& entry,
                    std::vector<std::uint8_t>& bytes, std::ostream& err);

// A whole decimal number, or false.
bool ParseInt(const std::string& text, int& value);

class GameNameTable;

// Shared by the commands: reads a model file (an OOF model, or an ORF room when its name
// ends in .orf), reporting failures on `err`. Returns 0 or the exit status to end with.
int LoadModelFile(const std::filesystem::path& path, ModelData& model, std::ostream& err,
                  const GameNameTable* roomNames = nullptr);
// Reads the settings file at `path` into `settings`; 0 or the exit status.
int LoadSettingsFile(const std::string& path, struct Settings& settings, std::ostream& err);

int SaveModelFile(const std::filesystem::path& path, ModelData& model, std::ostream& err);

bool WantsHelp(const std::vector<std::string>& args);

// The model as JSON, with or without the vertex and face lists.
std::string ModelJson(const ModelData& model, bool geometry);
// The model as text for people.
std::string ModelText(const ModelData& model);

}  // namespace mw
