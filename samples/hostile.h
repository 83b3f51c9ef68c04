#pragma once

#include "damaged.h"

namespace samples {

// Files of a few kilobytes that open, but ask for far more work or memory than any reader has: by things that contain
// themselves or each other many times, and by numbers. Listed with the damaged ones.
std::vector<Damage> HostileFiles();

} // namespace samples
