// Large generated inputs for the benchmarks.
#pragma once

#include "model/model_data.h"

namespace mw {

// `subObjects` parts in a two-level hierarchy, each a grid of `facesPerPart` triangles
// with textures, alphas, and ten position and ten rotation keys.
ModelData LargeModel(int subObjects, int facesPerPart);

}  // namespace mw
