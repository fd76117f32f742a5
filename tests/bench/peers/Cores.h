#pragma once

namespace kestrel::bench {

/// From now on this thread, and the threads and processes that it starts, run on so many cores: the last of
/// those that the process was given, or all where it was given fewer. Raises std::system_error where the
/// system refuses.
void runOnCores(int count);

}  // namespace kestrel::bench
