// Builds a model from an imported scene: from the nodes alone, or, for a file our own glTF
// export wrote, from the "descent3" extras it keeps (what another program changed since wins).
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "convert/import_scene.h"
#include "convert/scene_transform.h"
#include "model/model_data.h"

namespace mw {

class SceneModelBuilder {
  public:
    explicit SceneModelBuilder(const ImportScene& scene);
    bool AnyFaces() const;
    // A model from the nodes alone.
    ModelData Generic();
    // The model our own export wrote, or nullopt when the file is not one or has been
    // changed past what the extras can follow (sub-objects added or removed).
    std::optional<ModelData> Exact();

    // What the model could not keep as the file had it (texture names cut), for people.
    std::vector<std::string> Notes;
    // How many triangles were joined into polygons.
    int MergedTriangles = 0;

  private:
    void Reset();
    bool HasFaces(int node) const;
    // The hash the export keeps of a node's meshes; empty for none.
    std::string Fingerprint(const std::vector<int>& meshes) const;
    SubObject ExactSubObject(int node);
    void ExactPoints(const nlohmann::json& e);
    int NearestSub(int node) const;
    void Keys();
    // A point (and for an attach point its normal) where its node puts it.
    void SetPointFromNode(PointType type, int index, int node);
    void AddPointFromNode(PointType type, int node);
    int TextureOf(int material);
    std::optional<std::array<std::uint8_t, 3>> ColourOnly(int material) const;
    // The faces of a node's meshes, moved by `bake` (the node's rotation and scale) into
    // the sub-object and into the game's space; vertices shared where position and normal
    // agree.
    void Geometry(int node, const Transform& bake, SubObject& sub);
    // Vertex normals as the mean of the normals of the faces around each vertex, where the
    // file gave none.
    static void FaceAveragedNormals(SubObject& sub);
    void Finish();
    // Sub-objects come back in the order of their records, which the export numbered.
    static int ExactOrder(const nlohmann::json& sub);

    const ImportScene& s_;
    std::vector<Transform> world_;
    std::vector<int> subNodes_;  // node of each sub-object
    std::vector<int> subOf_;     // sub-object of each node, or -1
    ModelData m_;
    std::map<std::string, int> textureOfName_;  // a material's texture name, as the file has it
};

}  // namespace mw
