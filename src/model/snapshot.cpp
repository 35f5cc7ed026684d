#include "model/snapshot.h"

#include <algorithm>

namespace mw {
namespace {

SubObjectGeometry CopyGeometry(const SubObject& sub, int record) {
    return {record, sub.Vertices, sub.Faces, sub.Corners};
}

// Copies a sub-object without its geometry (the three vectors stay empty).
SubObject WithoutGeometry(const SubObject& sub) {
    SubObject copy;
    copy.Index = sub.Index;
    copy.Parent = sub.Parent;
    copy.KeptVectorA = sub.KeptVectorA;
    copy.KeptFloat = sub.KeptFloat;
    copy.KeptVectorB = sub.KeptVectorB;
    copy.Offset = sub.Offset;
    copy.Radius = sub.Radius;
    copy.KeptIntA = sub.KeptIntA;
    copy.KeptIntB = sub.KeptIntB;
    copy.Center = sub.Center;
    copy.Name = sub.Name;
    copy.Properties = sub.Properties;
    copy.KeptIntC = sub.KeptIntC;
    copy.KeptIntD = sub.KeptIntD;
    copy.BoxMin = sub.BoxMin;
    copy.BoxMax = sub.BoxMax;
    copy.HasAlpha = sub.HasAlpha;
    copy.PropertyFlags = sub.PropertyFlags;
    copy.RotateSpeed = sub.RotateSpeed;
    copy.GlowColor = sub.GlowColor;
    copy.GlowSize = sub.GlowSize;
    copy.FovValues = sub.FovValues;
    copy.Pos = sub.Pos;
    copy.Rot = sub.Rot;
    return copy;
}

// Everything of the model but its sub-object records.
void CopyModelValues(const ModelData& from, ModelData& to) {
    to.Version = from.Version;
    to.Textures = from.Textures;
    to.Header = from.Header;
    to.HeaderList = from.HeaderList;
    to.MergeTable = from.MergeTable;
    to.GunPoints = from.GunPoints;
    to.AttachPoints = from.AttachPoints;
    to.AttachNormals = from.AttachNormals;
    to.GroundPoints = from.GroundPoints;
    to.Special = from.Special;
    to.SpecialParked = from.SpecialParked;
    to.Batteries = from.Batteries;
    to.PinfText = from.PinfText;
    to.FrameMin = from.FrameMin;
    to.FrameMax = from.FrameMax;
    to.HasPANI = from.HasPANI;
    to.HasRANI = from.HasRANI;
    to.PushFlags = from.PushFlags;
    to.PopFlags = from.PopFlags;
}

}  // namespace

ModelSnapshot::ModelSnapshot(const ModelData& model, const GeometryScope& scope) {
    CopyModelValues(model, structure_);
    structure_.SubObjects.reserve(model.SubObjects.size());
    for (const SubObject& sub : model.SubObjects)
        structure_.SubObjects.push_back(WithoutGeometry(sub));

    const int records = static_cast<int>(model.SubObjects.size());
    if (scope.All) {
        for (int r = 0; r < records; ++r)
            geometry_.push_back(CopyGeometry(model.Sub(r), r));
        return;
    }
    std::vector<int> wanted = scope.Records;
    std::sort(wanted.begin(), wanted.end());
    wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
    for (int r : wanted) {
        if (model.IsRecord(r)) geometry_.push_back(CopyGeometry(model.Sub(r), r));
    }
}

bool ModelSnapshot::Restore(ModelData& model) const {
    if (model.SubObjects.size() != structure_.SubObjects.size()) return false;
    // The geometry the snapshot does not hold is the model's own; move it across.
    std::vector<SubObject> subs = structure_.SubObjects;
    for (std::size_t r = 0; r < subs.size(); ++r) {
        subs[r].Vertices = std::move(model.SubObjects[r].Vertices);
        subs[r].Faces = std::move(model.SubObjects[r].Faces);
        subs[r].Corners = std::move(model.SubObjects[r].Corners);
    }
    for (const SubObjectGeometry& g : geometry_) {
        SubObject& sub = subs[static_cast<std::size_t>(g.Record)];
        sub.Vertices = g.Vertices;
        sub.Faces = g.Faces;
        sub.Corners = g.Corners;
    }
    CopyModelValues(structure_, model);
    model.SubObjects = std::move(subs);
    return true;
}

std::size_t ModelSnapshot::ByteSize() const {
    std::size_t bytes = sizeof(*this);
    for (const SubObject& sub : structure_.SubObjects) {
        bytes += sizeof(SubObject) + sub.Name.size() + sub.Properties.size() +
                 sub.Pos.Keys.size() * sizeof(PosKey) + sub.Rot.Keys.size() * sizeof(RotKey);
    }
    for (const auto& column : structure_.MergeTable)
        bytes += column.size() * sizeof(std::int32_t) + sizeof(column);
    bytes += (structure_.GunPoints.size() + structure_.AttachPoints.size() +
              structure_.AttachNormals.size() + structure_.GroundPoints.size()) *
             sizeof(ModelPoint);
    bytes += structure_.Textures.size() * sizeof(Texture);
    for (const SubObjectGeometry& g : geometry_) {
        bytes += g.Vertices.size() * sizeof(Vertex) + g.Faces.size() * sizeof(Face) +
                 g.Corners.size() * sizeof(FaceVertex);
    }
    return bytes;
}

}  // namespace mw
