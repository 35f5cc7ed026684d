// Writes the bundled sample: meshwright-make-sample SAMPLES_DIR
// (SAMPLES_DIR/ship.oof and SAMPLES_DIR/gamedata/d3.hog).
#include <filesystem>
#include <iostream>

#include "model/file_io.h"
#include "model/oof_writer.h"
#include "sample_gamedata.h"
#include "sample_model.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Usage: meshwright-make-sample SAMPLES_DIR\n";
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
