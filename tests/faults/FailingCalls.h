#pragma once

#include <cerrno>
#include <cstddef>

namespace kestrel::test {

/// What happens to the system calls that change files. The linker directs them here.
enum class Fault {
  kNone,
  kKilled,        ///< the process is killed before the call
  kFails,         ///< the call fails
  kWritesLittle,  ///< all writes are short or interrupted
};

/// From now on counts the calls from 1, and strikes the one with the number `at`, or none for 0.
void strike(Fault fault, int at, int error = EIO);

/// Calls since `strike`.
int callsSinceStrike();

/// Writes without being counted.
void writeUncounted(int file, const void* data, std::size_t size);

}  // namespace kestrel::test
