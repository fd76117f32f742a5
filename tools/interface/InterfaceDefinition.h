#pragma once

#include <string>
#include <string_view>

#include "Identifiers.h"

namespace kestrel::tools {

/// The public interface in the interface definition language, as the type library KestrelLib2 of a Windows
/// component: per class a dual interface `_Name`, a dispatch interface `__Name` of its events if it has some,
/// and a coclass `Name`; and the enumerations. The version is "major.minor". Raises RuntimeError 5 if a GUID
/// is missing.
std::string interfaceDefinition(const Identifiers& identifiers, std::string_view version);

}  // namespace kestrel::tools
