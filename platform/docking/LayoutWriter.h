#pragma once

#include <cstddef>
#include <vector>

#include "StoredLayout.h"

namespace kestrel::docking {

/// The layout as one block; deterministic. Raises RuntimeError 5 for an inconsistent layout (a key that is
/// defined twice; an entry, category, image or pane that does not exist).
std::vector<std::byte> writeLayout(const StoredLayout& layout);

}  // namespace kestrel::docking
