#pragma once

#include <string>
#include <string_view>

namespace kestrel::docking {

/// The identifier under which the parts of a layout block refer to the thing of that kind and name,
/// whatever the name's case, in the registry's spelling "{XXXXXXXX-XXXX-8XXX-XXXX-XXXXXXXXXXXX}". It depends
/// on nothing else, so a layout compiles to the same bytes wherever and whenever it is compiled.
std::string stableGuid(std::string_view kind, std::string_view name);

}  // namespace kestrel::docking
