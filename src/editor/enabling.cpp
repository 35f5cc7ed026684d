#include "editor/enabling.h"

#include "model/structure.h"

namespace mw {

int TopLevelCount(const ModelData& model) {
    int count = 0;
    for (int k = 0; k < model.SubObjectCount(); ++k)
        count += model.Sub(model.Head(k)).Parent == -1 ? 1 : 0;
    return count;
}

EditEnabling ComputeEditEnabling(const ModelData& model, const SelectionState& selection) {
    EditEnabling e;
    const int s = selection.curSOBJ;
    if (s == -1 && selection.curPNT == -1) return e;
    if (s == -1) {
        e.Convert = e.Delete = true;
    } else if (model.IsRecord(s)) {
        const bool hasParent = model.Sub(s).Parent != -1;
        e.Convert = hasParent && !HasTreeChildren(model, s);
        e.Delete = hasParent || TopLevelCount(model) >= 2;
    }
    if (!e.Convert) return e;
    for (std::size_t k = 0; k < kPointTypes.size(); ++k) {
        const PointType t = kPointTypes[k];
        e.ConvertTo[k] = selection.curPNTtype != PointTag(t) &&
                         static_cast<int>(model.Points(t).size()) < PointLimit(t);
    }
    return e;
}

}  // namespace mw
