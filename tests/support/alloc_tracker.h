// Records the largest single allocation made through operator new, so that tests can
// show a reader never allocates more than its input justifies.
#pragma once

#include <cstddef>

namespace mw::test {

void ResetLargestAllocation();
std::size_t LargestAllocation();

}  // namespace mw::test
