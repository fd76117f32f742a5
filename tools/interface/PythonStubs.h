#pragma once

#include <string>

namespace kestrel::tools {

/// The type stubs of the package `kestrel` for Python, `__init__.pyi`: a class for each class of the public
/// interface, with the types of the arguments of its events, and an IntEnum for each enumeration. What the
/// package has besides is imported from its modules.
std::string pythonStubs();

}  // namespace kestrel::tools
