// A copy of the model that an edit can be undone to. Geometry (vertices, faces, corners) is
// the bulk of a model and most edits leave it alone, so a snapshot copies the geometry of
// only the sub-objects it is told the edit touches; everything else is copied whole.
#pragma once

#include <vector>

#include "model/model_data.h"

namespace mw {

struct SubObjectGeometry {
    int Record = -1;
    std::vector<Vertex> Vertices;
    std::vector<Face> Faces;
    std::vector<FaceVertex> Corners;
};

// Which sub-objects' geometry a snapshot keeps.
struct GeometryScope {
    bool All = false;
    std::vector<int> Records;

    static GeometryScope None() { return {}; }
    static GeometryScope Everything() { return {true, {}}; }
    static GeometryScope Of(std::vector<int> records) { return {false, std::move(records)}; }
};

class ModelSnapshot {
  public:
    ModelSnapshot() = default;
    ModelSnapshot(const ModelData& model, const GeometryScope& scope);

    // Puts the model back as it was when the snapshot was taken. The geometry the snapshot
    // did not keep is taken from the model as it is now, so it must not have changed.
    // Returns false (changing nothing) when the model's records no longer match.
    bool Restore(ModelData& model) const;

    // Bytes held, roughly (for the undo stack's memory figures).
    std::size_t ByteSize() const;

  private:
    ModelData structure_;  // every sub-object's geometry left empty
    std::vector<SubObjectGeometry> geometry_;
};

}  // namespace mw
