#include "model/model_data.h"

#include "model/version.h"

namespace mw {

std::int32_t PrimitiveFor(std::int32_t cornerCount) {
    if (cornerCount == 3) return kPrimTriangles;
    if (cornerCount == 4) return kPrimQuads;
    return kPrimPolygon;
}

const char* PointTag(PointType type) {
    switch (type) {
        case PointType::ATCH:
            return "ATCH";
        case PointType::NATH:
            return "NATH";
        case PointType::GRND:
            return "GRND";
        case PointType::GPNT:
            return "GPNT";
    }
    return "";
}

std::optional<PointType> PointTypeFromTag(std::string_view tag) {
    for (PointType t : kPointTypes) {
        if (tag == PointTag(t)) return t;
    }
    return std::nullopt;
}

int PointLimit(PointType type) {
    switch (type) {
        case PointType::ATCH:
            return kMaxAttachPoints;
        case PointType::NATH:
            return kMaxAttachNormals;
        case PointType::GRND:
            return kMaxGroundPoints;
        case PointType::GPNT:
            return kMaxGunPoints;
    }
    return 0;
}

std::vector<ModelPoint>& ModelData::Points(PointType type) {
    switch (type) {
        case PointType::ATCH:
            return AttachPoints;
        case PointType::NATH:
            return AttachNormals;
        case PointType::GRND:
            return GroundPoints;
        case PointType::GPNT:
            break;
    }
    return GunPoints;
}

const std::vector<ModelPoint>& ModelData::Points(PointType type) const {
    return const_cast<ModelData&>(*this).Points(type);
}

void ClearModel(ModelData& model) {
    const std::int32_t version = model.Version;
    model = ModelData{};
    model.Version = version;
}

void RebuildSaveOrder(ModelData& model) {
    const int n = static_cast<int>(model.SubObjects.size());
    std::vector<std::vector<int>> children(static_cast<std::size_t>(n));
    std::vector<int> stack;
    for (int s = n - 1; s >= 0; --s) {
        const int parent = model.Sub(s).Parent;
        if (parent == -1) {
            stack.push_back(s);  // highest first, so the lowest root is walked first
        } else if (parent >= 0 && parent < n && parent != s) {
            children[static_cast<std::size_t>(parent)].push_back(s);  // descending order
        }
    }

    std::vector<std::vector<std::int32_t>> order;
    order.reserve(static_cast<std::size_t>(n));
    while (!stack.empty()) {
        const int s = stack.back();
        stack.pop_back();
        order.push_back({s});
        const auto& kids = children[static_cast<std::size_t>(s)];
        stack.insert(stack.end(), kids.begin(), kids.end());
    }
    model.MergeTable = std::move(order);
}

const std::string& WriterInfo() {
    static const std::string text =
        "\n" + VersionText() + "\nWritten by Meshwright, the open model editor for Descent 3.\n";
    return text;
}

}  // namespace mw
