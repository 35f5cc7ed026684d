// Writes the bundled sample model: meshwright-make-sample OUT.oof
#include <iostream>

#include "model/oof_writer.h"
#include "sample_model.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Usage: meshwright-make-sample OUT.oof\n";
        return 64;
    }
    mw::ModelData model = mw::BuildSampleModel();
    const std::string failure = mw::SaveOOF(model, argv[1]);
    if (!failure.empty()) {
        std::cerr << failure << "\n";
        return 73;
    }
    return 0;
}
