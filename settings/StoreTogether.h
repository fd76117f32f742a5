#pragma once

#include <functional>

namespace kestrel {

/// Runs `Lets`, which set several options, and stores these together: all of them, or none if the store can't
/// write one. Reports a failure of the store itself, once per run of failing writes. `Lets` must not wait for
/// the user. An error that they raise propagates; what they set before it is stored.
void StoreTogether(const std::function<void()>& Lets);

}  // namespace kestrel
