#pragma once

#include <string>

namespace kestrel::tools {

/// A header in C of the numbers of the public interface: the values of its enumerations, and the numbers of
/// members and events. The names are those of the interface behind the prefix KESTREL_.
std::string constantsHeader();

}  // namespace kestrel::tools
