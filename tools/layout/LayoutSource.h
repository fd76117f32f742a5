#pragma once

#include <string_view>

#include "platform/docking/StoredLayout.h"

namespace kestrel::tools {

/// Reads the text from which a layout block is compiled; docs/layout.md tells its words. The images have
/// their names and no pictures yet. Raises RuntimeError 5 with the line's number for what it cannot read;
/// whether the layout is sound as a whole is for `docking::writeLayout` to say.
docking::StoredLayout parseLayoutSource(std::string_view text);

}  // namespace kestrel::tools
