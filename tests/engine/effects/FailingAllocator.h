#pragma once

namespace kestrel::engine::test {

/// From now on so many allocations succeed, on any thread, and all later ones fail; negative: none fails.
void failAllocationsAfter(int count);

}  // namespace kestrel::engine::test
