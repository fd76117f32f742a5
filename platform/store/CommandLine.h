#pragma once

#include <string>
#include <vector>

namespace kestrel::store {

/// The program and its arguments as one command line that can be parsed again: an argument that is empty or
/// contains a blank, a tab or a quote is quoted; inside quotes, a quote and the backslashes before it are
/// escaped by backslashes.
std::string commandLineOf(const std::vector<std::string>& arguments);

}  // namespace kestrel::store
