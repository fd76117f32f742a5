#include "CallStack.h"

#include "platform/os/Stack.h"

namespace kestrel {

[[gnu::noinline]] CallStack CallStack::Record(std::size_t skip) noexcept {
  CallStack stack;
  // The first address is that of this function.
  stack.depth_ = os::recordStack(stack.addresses_, skip + 1);
  return stack;
}

}  // namespace kestrel
