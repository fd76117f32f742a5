#pragma once

#include <string>

#include "base/Variant.h"
#include "kestrel.h"

namespace kestrel::c {

/// The value of a host. Raises KESTREL_TYPE_MISMATCH for a type that there is not, KESTREL_OBJECT_GONE and
/// KESTREL_WRONG_THREAD for such a handle.
Variant ToVariant(const kestrel_value& value);

/// A value for a host, which clears it. Raises KESTREL_TYPE_MISMATCH for a type that hosts do not have.
kestrel_value ToValue(const Variant& value);

/// Puts a value into a place of the host, after clearing it.
void Replace(kestrel_value& place, const Variant& value);

/// A text of a host.
std::string TextOf(const kestrel_string& text);

}  // namespace kestrel::c
