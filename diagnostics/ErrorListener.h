#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "base/OpenCalls.h"

namespace kestrel {

/// Receives the errors of an apartment: those that a trailer reports, before the user sees them, and those of
/// a host's handlers. Its members must not throw.
class ErrorListener {
 public:
  /// An error as the message box of the trailer shows it.
  struct Error {
    std::int32_t Number = 0;
    std::string Module;
    std::string Procedure;
    std::int32_t Line = 0;
    std::string Description;
    std::exception_ptr Cause;
  };

  /// Makes a listener that of the calling thread's apartment; null removes it. It must outlive that.
  static void Attach(ErrorListener* listener);
  /// Null without one.
  static ErrorListener* Attached();

  virtual ~ErrorListener() = default;

  /// True if the user need not see the error.
  virtual bool Reported(const Error& error) = 0;
  /// An exception has left a handler of the host. It propagates to the member that raised the event, which
  /// may report it.
  virtual void HandlerFailed(const std::exception_ptr& cause) = 0;
};

/// Calls a handler of the host, during which the host may destroy the caller. The listener hears of an
/// exception that leaves it.
template <typename Work>
void CallHost(OpenCalls& calls, Work work) {
  const OpenCalls::Call call(calls);
  try {
    work();
  } catch (...) {
    if (auto* const listener = ErrorListener::Attached()) listener->HandlerFailed(std::current_exception());
    throw;
  }
}

}  // namespace kestrel
