#pragma once

#include <vector>

#include "Comparison.h"
#include "Peers.h"

namespace kestrel::bench {

/// Deflate encoders on the filtered rows of a PNG file that ours wrote. Those whose stream is smaller than
/// ours by more than a twentieth are named, with size and time, and not compared. All raise
/// std::runtime_error when a stream does not inflate to the rows.
std::vector<Contender> packers(const Bytes& file);

}  // namespace kestrel::bench
