// Large generated inputs for the benchmarks.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "model/model_data.h"

namespace mw {

// The floor every file-reading benchmark is set against: copying the same bytes in memory.
void CopyBytesBenchmark(benchmark::State& state, const std::vector<std::uint8_t>& bytes);

// `subObjects` parts in a two-level hierarchy, each a grid of `facesPerPart` triangles
// with textures, alphas, and ten position and ten rotation keys.
ModelData LargeModel(int subObjects, int facesPerPart);

}  // namespace mw
