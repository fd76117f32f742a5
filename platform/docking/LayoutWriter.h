#pragma once

#include <cstddef>
#include <vector>

#include "StoredLayout.h"

namespace kestrel::docking {

/// The layout as one block, the same bytes for the same layout. Raises RuntimeError 5 for a layout that
/// contradicts itself (a key that stands twice, an entry, category, image or pane that is not there).
std::vector<std::byte> writeLayout(const StoredLayout& layout);

}  // namespace kestrel::docking
