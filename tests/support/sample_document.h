// A document over the sample ship, and the model's bytes as the writer would save them.
#pragma once

#include <cstdint>
#include <vector>

#include "editor/document.h"
#include "gamedata/texture_loader.h"
#include "model/file_io.h"
#include "model/oof_writer.h"

namespace mw::test {

inline std::vector<std::uint8_t> SavedBytes(const ModelData& model) {
    ModelData copy = model;
    return WriteOOF(copy);
}

// The sample's game data (its archive and table), as the editor reads it.
inline void ReadSampleGameData(Settings& settings, GameData& game) {
    settings.D3HogPath = MW_SOURCE_DIR "/samples/gamedata/d3.hog";
    DeriveArchivePaths(settings);
    game.Hog.ReadHOGs(settings, nullptr);
    game.Gam.ReadGAMs(game.Hog, settings, nullptr, nullptr);
}

struct SampleDocument {
    SampleDocument() : doc(oof) {
        const auto bytes = ReadFileBytes(MW_SOURCE_DIR "/samples/ship.oof");
        if (bytes) oof.readOOF(*bytes);
        doc.SetModelFile(MW_SOURCE_DIR "/samples/ship.oof", "ship.oof");
        doc.ResetModel(true);
    }
    clsOOF oof;
    Document doc;
};

}  // namespace mw::test
