#pragma once

#include <string>
#include <vector>

namespace kestrel::store {

/// The program and its arguments as one command line that can be taken apart again: what is empty or holds a
/// blank, a tab or a quote is put between quotes; within them a quote, and the backslashes before one, have a
/// backslash before each.
std::string commandLineOf(const std::vector<std::string>& arguments);

}  // namespace kestrel::store
