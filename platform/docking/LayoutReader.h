#pragma once

#include <cstddef>
#include <span>

#include "StoredLayout.h"

namespace kestrel::docking {

/// Reads a layout block. Raises RuntimeError 321 with a sentence that says what is wrong for every block
/// that is cut short, changed, or contradicts itself.
StoredLayout readLayout(std::span<const std::byte> block);

}  // namespace kestrel::docking
