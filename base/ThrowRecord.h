#pragma once

#include <array>
#include <cstddef>
#include <exception>

#include "CallStack.h"

namespace kestrel {

/// The call stacks of a thread's latest throws.
///
/// An error of the standard library carries no call stack. Where the platform has a hook in the C++ runtime's
/// throw, the hook notes each throw here. Only threads that keep a record pay for that: one walk of the stack
/// per throw, without an allocation.
class ThrowRecord {
 public:
  /// Keeps the record of the calling thread. Destroy it on the same thread. The latest record made is the
  /// active one.
  ThrowRecord();
  ~ThrowRecord();
  ThrowRecord(const ThrowRecord&) = delete;
  ThrowRecord& operator=(const ThrowRecord&) = delete;

  /// Notes that the exception object is about to be thrown by the caller's caller. Does nothing on a thread
  /// without a record.
  static void Note(const void* exceptionObject) noexcept;

  /// The stack of the latest noted throw of the error that is being handled; null where there is none.
  /// Valid until the next throw.
  static const CallStack* OfCurrentError() noexcept;

 private:
  /// The number of throws kept. Errors thrown and caught between an error's throw and its report, as in a
  /// destructor or a skipped statement, must not evict that error.
  static constexpr std::size_t kKept = 8;

  struct Throw {
    const void* object = nullptr;
    CallStack stack;
  };
  std::array<Throw, kKept> throws_;
  std::size_t next_ = 0;
};

/// Rethrows an error that was caught on another thread. A report shows the stack of this call.
[[noreturn]] void RethrowHere(const std::exception_ptr& error);

}  // namespace kestrel
