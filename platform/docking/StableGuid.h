#pragma once

#include <string>
#include <string_view>

namespace kestrel::docking {

/// The identifier by which the parts of a layout block refer to the object of that kind and name (ignoring
/// case), in registry format "{XXXXXXXX-XXXX-8XXX-XXXX-XXXXXXXXXXXX}". It is a hash of kind and name, so a
/// layout always compiles to the same bytes.
std::string stableGuid(std::string_view kind, std::string_view name);

}  // namespace kestrel::docking
