#pragma once

#include <string>
#include <utility>

#include "kestrel.h"

/// The implementation of kestrel.h. No error leaves a function of the interface as an exception.
namespace kestrel::c {

/// Records the error that is being handled as the latest of this thread. Returns its number, never 0.
kestrel_status NoteCurrentError() noexcept;

/// Runs the body of a function of the interface.
template <typename Body>
kestrel_status Guarded(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
    return KESTREL_OK;
  } catch (...) {
    return NoteCurrentError();
  }
}

/// Raises the error with which a host's handler has ended: its own texts if they are of that number.
[[noreturn]] void RaiseHandlerError(kestrel_status status, const std::string& event);

[[noreturn]] void RaiseInvalidCall(const char* sentence);
/// Raises KESTREL_INVALID_CALL if a pointer is null that is needed.
void Require(const void* pointer, const char* sentence);

}  // namespace kestrel::c
