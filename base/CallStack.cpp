#include "CallStack.h"

#include <unwind.h>

namespace kestrel {
namespace {

struct Walk {
  std::span<std::uintptr_t> addresses;
  std::size_t skip;
  std::size_t depth;
};

_Unwind_Reason_Code Visit(_Unwind_Context* context, void* data) {
  auto& walk = *static_cast<Walk*>(data);
  if (walk.skip > 0) {
    --walk.skip;
    return _URC_NO_REASON;
  }
  if (walk.depth == walk.addresses.size()) return _URC_END_OF_STACK;
  const std::uintptr_t address = _Unwind_GetIP(context);
  if (address == 0) return _URC_END_OF_STACK;
  walk.addresses[walk.depth++] = address;
  return _URC_NO_REASON;
}

}  // namespace

[[gnu::noinline]] CallStack CallStack::Record(std::size_t skip) noexcept {
  CallStack stack;
  // The first frame is this function's own.
  Walk walk{stack.addresses_, skip + 1, 0};
  _Unwind_Backtrace(Visit, &walk);
  stack.depth_ = walk.depth;
  return stack;
}

}  // namespace kestrel
