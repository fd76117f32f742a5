#pragma once

#include <string>
#include <vector>

namespace kestrel::bench {

/// Runs a program with arguments, waits for it and gives what it wrote to its standard output. Raises
/// std::runtime_error if it does not end with 0.
std::string runProcess(const std::vector<std::string>& command);

}  // namespace kestrel::bench
