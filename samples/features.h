#pragma once

#include "deviations.h"

namespace samples {

// Single features of the format, each on the first page of the plain document, with what a reader must show.
std::vector<Deviation> ImageFeatures();
std::vector<Deviation> SealFeatures();
std::vector<Deviation> ColourFeatures();
std::vector<Deviation> FontFeatures();
std::vector<Deviation> PatternFeatures();
std::vector<Deviation> ShadingFeatures();
std::vector<Deviation> ClipFeatures();
std::vector<Deviation> TransparencyFeatures();
std::vector<Deviation> TextFeatures();
std::vector<Deviation> LinkFeatures();
std::vector<Deviation> SharingFeatures();

} // namespace samples
