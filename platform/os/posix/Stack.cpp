#include "platform/os/Stack.h"

#include <unwind.h>

namespace kestrel::os {
namespace {

struct Recording {
  std::span<std::uintptr_t> addresses;
  std::size_t skip;
  std::size_t depth;
};

_Unwind_Reason_Code recordFrame(_Unwind_Context* context, void* data) {
  auto& recording = *static_cast<Recording*>(data);
  if (recording.skip > 0) {
    --recording.skip;
    return _URC_NO_REASON;
  }
  if (recording.depth == recording.addresses.size()) return _URC_END_OF_STACK;
  const std::uintptr_t address = _Unwind_GetIP(context);
  if (address == 0) return _URC_END_OF_STACK;
  recording.addresses[recording.depth++] = address;
  return _URC_NO_REASON;
}

}  // namespace

[[gnu::noinline]] std::size_t recordStack(std::span<std::uintptr_t> addresses, std::size_t skip) noexcept {
  // The first frame is this function's own.
  Recording recording{addresses, skip + 1, 0};
  _Unwind_Backtrace(recordFrame, &recording);
  return recording.depth;
}

}  // namespace kestrel::os
