#pragma once

#include <string>
#include <string_view>

namespace kestrel {

/// A key whose order by bytes is the natural order of names: numbers by their values ("img2" before "img10"),
/// letters without case, and a name before those that extend it ("a.png" before "a (1).png"). The key of
/// names that differ in nothing else is equal.
std::string NaturalKey(std::string_view name);

/// Natural order; names with equal keys by their bytes, so that the order of different names is defined.
bool NaturalLess(std::string_view left, std::string_view right);

}  // namespace kestrel
