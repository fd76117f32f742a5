#pragma once

#include <vector>

#include "Comparison.h"

namespace kestrel::bench {

/// Rows of whole processes that make thumbnails of a folder of photographs: their time, and our peak memory.
std::vector<Comparison> thumbnailComparisons();

}  // namespace kestrel::bench
