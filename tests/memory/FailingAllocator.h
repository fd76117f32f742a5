#pragma once

#include <cstddef>

namespace kestrel::test {

/// From now on so many allocations succeed, on any thread, and all later ones fail; negative: none fails.
/// Those of less than `smallest` bytes neither count nor fail.
///
/// Whoever calls it links its own `new` and `delete` in place of the usual ones.
void failAllocationsAfter(long count, std::size_t smallest = 0);

/// Bytes allocated with `new` and not yet deleted, by all threads. What C libraries allocate is not counted,
/// nor are mappings of pages.
std::size_t heldMemory();

}  // namespace kestrel::test
