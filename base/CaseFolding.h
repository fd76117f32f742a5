#pragma once

#include <string>
#include <string_view>

namespace kestrel {

/// The UTF-8 text folded for comparison without case: each character by Unicode's simple case folding, which
/// maps one character to one ("ÄRGER.PNG" and "ärger.png" fold to the same; "ß" and "ss" do not). Invalid
/// UTF-8 bytes are kept.
std::string FoldCase(std::string_view text);

}  // namespace kestrel
