// Which commands the menus offer for a model and a selection.
#pragma once

#include <array>

#include "model/model_data.h"
#include "view/view_state.h"

namespace mw {

struct EditEnabling {
    bool Delete = false;
    bool Convert = false;
    std::array<bool, 4> ConvertTo{};  // "ATCH", "NATH", "GRND", "GPNT"
};

// The Edit menu: nothing with nothing selected; a point can be deleted and converted to the
// other types that have room; a sub-object with a parent and no children in the tree can be
// converted, and any sub-object but the last top-level one can be deleted.
EditEnabling ComputeEditEnabling(const ModelData& model, const SelectionState& selection);

// The number of top-level sub-objects (children of the tree's root).
int TopLevelCount(const ModelData& model);

}  // namespace mw
