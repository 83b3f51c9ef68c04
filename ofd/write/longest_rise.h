#pragma once

#include <vector>

namespace ofd {

// Chooses as many of the values as possible that rise from front to back; negative ones are never chosen. When rows are
// rearranged, these are the rows that can stay while the others move.
std::vector<bool> LongestRise(const std::vector<int>& values);

} // namespace ofd
