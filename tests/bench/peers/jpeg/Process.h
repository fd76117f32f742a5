#pragma once

#include <string>
#include <vector>

namespace kestrel::bench {

/// Runs a program with arguments, waits for it and returns its standard output. Raises std::runtime_error if
/// its exit code is not 0.
std::string runProcess(const std::vector<std::string>& command);

}  // namespace kestrel::bench
