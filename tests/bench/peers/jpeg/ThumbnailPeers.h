#pragma once

#include <vector>

#include "Comparison.h"

namespace kestrel::bench {

/// The rows of whole processes that make thumbnails of a folder of photographs: their time, and the memory
/// that ours takes.
std::vector<Comparison> thumbnailComparisons();

}  // namespace kestrel::bench
