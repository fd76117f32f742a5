#pragma once

#include <string_view>

#include "platform/docking/StoredLayout.h"

namespace kestrel::tools {

/// Parses the source text of a layout block; docs/layout.md describes the language. The images have names but
/// no pictures yet. Raises RuntimeError 5 with the line number for a syntax error; `docking::writeLayout`
/// checks the consistency of the whole.
docking::StoredLayout parseLayoutSource(std::string_view text);

}  // namespace kestrel::tools
