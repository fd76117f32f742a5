#pragma once

#include <cstddef>
#include <span>

#include "StoredLayout.h"

namespace kestrel::docking {

/// Reads a layout block. Raises RuntimeError 321 with a sentence that states the cause for every block that
/// is truncated, changed or inconsistent.
StoredLayout readLayout(std::span<const std::byte> block);

}  // namespace kestrel::docking
