#pragma once

#include <cstdint>
#include <functional>

namespace kestrel::engine {

/// How many threads `forRows` uses at most, the caller's included: the cores this process may run on.
std::int32_t threadCount();

/// Splits the rows 0 to height - 1 into bands and calls `work(first, last)` for each, `last` not included,
/// on several cores at a time. Together the bands are every row exactly once; they come in no promised order.
///
/// No band but the last is smaller than `minRowsPerTask` rows, so choose it such that a band is
/// worth the hand-over: some 50 microseconds of work. Returns when all bands are done. The first error that a
/// band raises is raised here, after the bands under way have ended; those not yet begun are left out. A
/// report of it names the caller's statement, not the worker's.
///
/// The caller works too. A call from within a band, or while another thread's call has the workers, does its
/// work alone on the calling thread: nothing ever waits for anything but its own rows.
void forRows(std::int32_t height, std::int32_t minRowsPerTask,
             const std::function<void(std::int32_t first, std::int32_t last)>& work);

}  // namespace kestrel::engine
