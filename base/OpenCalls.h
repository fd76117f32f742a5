#pragma once

#include "Event.h"

namespace kestrel {

/// Counts the calls to the outside that have not returned: to a host's handler, to a user at a dialog. During
/// such a call the host may destroy the object that made it. The stack frames below still use the object, so
/// its memory is kept until `AllReturned`.
class OpenCalls {
 public:
  /// RAII: one call, counted from construction to destruction.
  class [[nodiscard]] Call {
   public:
    explicit Call(OpenCalls& calls) : calls_(calls) { ++calls_.count_; }
    ~Call() {
      if (--calls_.count_ == 0) calls_.AllReturned();
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

   private:
    OpenCalls& calls_;
  };

  bool Any() const { return count_ > 0; }

  /// The outermost call has returned; the frames that made it are still on the stack. Handlers must not
  /// throw.
  Event<> AllReturned;

 private:
  int count_ = 0;
};

}  // namespace kestrel
