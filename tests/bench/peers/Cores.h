#pragma once

namespace kestrel::bench {

/// From now on this thread, and the threads and processes that it starts, run on `count` cores: the last ones
/// of the process, or all if it has fewer. Raises std::system_error if the system refuses.
void runOnCores(int count);

}  // namespace kestrel::bench
