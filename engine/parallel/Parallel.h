#pragma once

#include <cstdint>
#include <functional>

namespace kestrel::engine {

/// How many threads `forRows` uses at most, the caller's included: the cores this process may run on.
std::int32_t threadCount();

/// Splits the rows 0 to height - 1 into bands and calls `work(first, last)` for each, `last` not included, on
/// several cores at a time. Each row is in exactly one band; the order of the bands is undefined.
///
/// No band but the last is smaller than `minRowsPerTask` rows; choose it so that a band is worth the
/// hand-over to a thread: some 50 microseconds of work. Returns when all bands are done. The first error
/// raised in a band is raised here, after the running bands have ended; bands not yet begun are skipped. Its
/// report names the caller's statement, not the worker's.
///
/// The calling thread works too. A call from within a band, or while another thread's call has the workers,
/// runs on the calling thread alone: no call waits for the rows of another.
void forRows(std::int32_t height, std::int32_t minRowsPerTask,
             const std::function<void(std::int32_t first, std::int32_t last)>& work);

}  // namespace kestrel::engine
