#pragma once

#include <string>
#include <string_view>

namespace kestrel {

/// The UTF-8 text for comparing without case: each character by Unicode's simple case folding, which maps one
/// character to one ("ÄRGER.PNG" and "ärger.png" fold to the same; "ß" and "ss" do not). Bytes that
/// are no UTF-8 stay as they are.
std::string FoldCase(std::string_view text);

}  // namespace kestrel
