#pragma once

#include <vector>

#include "Comparison.h"

namespace kestrel::bench {

/// The rows of this program, by operation.
std::vector<Comparison> rotateRows();
std::vector<Comparison> blurRows();
std::vector<Comparison> shadowRows();

}  // namespace kestrel::bench
