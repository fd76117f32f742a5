#pragma once

#include <cstddef>

namespace kestrel::test {

/// From now on `count` allocations succeed, on any thread, and all later ones fail; negative: none fails.
/// Allocations of less than `smallest` bytes neither count nor fail.
///
/// A program that links this library has its operators `new` and `delete` replaced.
void failAllocationsAfter(long count, std::size_t smallest = 0);

/// Bytes allocated with `new` and not yet deleted, by all threads. Allocations of C libraries and page
/// mappings are not counted.
std::size_t heldMemory();

}  // namespace kestrel::test
