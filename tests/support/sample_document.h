// A document over the sample ship, and the model's bytes as the writer would save them.
#pragma once

#include <cstdint>
#include <vector>

#include "editor/document.h"
#include "model/file_io.h"
#include "model/oof_writer.h"

namespace mw::test {

inline std::vector<std::uint8_t> SavedBytes(const ModelData& model) {
    ModelData copy = model;
    return WriteOOF(copy);
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
