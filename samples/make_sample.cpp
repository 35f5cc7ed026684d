// Writes the bundled sample: meshwright-make-sample SAMPLES_DIR
// (SAMPLES_DIR/ship.oof and SAMPLES_DIR/gamedata/d3.hog).
#include <filesystem>
#include <iostream>
#include <string>

#include "model/file_io.h"
#include "model/oof_writer.h"
#include "sample_gamedata.h"
#include "sample_model.h"

int main(int argc, char** argv) {
    constexpr const char* kUsage =
        "Usage: meshwright-make-sample SAMPLES_DIR\n"
        "Writes the sample model (SAMPLES_DIR/ship.oof) and its game data\n"
        "(SAMPLES_DIR/gamedata/d3.hog).\n";
    const std::string arg = argc == 2 ? argv[1] : "";
    if (arg == "--help" || arg == "-h") {
        std::cout << kUsage;
        return 0;
    }
    if (argc != 2 || arg.starts_with("-")) {
        std::cerr << kUsage;
        return 64;
    }
    const std::filesystem::path dir = argv[1];
    std::error_code ec;
    std::filesystem::create_directories(dir / "gamedata", ec);
    mw::ModelData model = mw::BuildSampleModel();
    std::string failure = mw::SaveOOF(model, dir / "ship.oof");
    if (failure.empty()) {
        failure = mw::WriteFileReplacing(dir / "gamedata" / "d3.hog", mw::BuildSampleArchive());
    }
    if (!failure.empty()) {
        std::cerr << failure << "\n";
        return 73;
    }
    return 0;
}
