#pragma once

#include <stop_token>

namespace kestrel::engine {

/// Raised by work that was canceled. It is no error of a file: handlers of errors let it pass.
struct Canceled {};

/// While it lives, a token cancels the work of the thread that made it, in place of the token before it. Work
/// that `forRows` gives to other threads is not canceled.
class [[nodiscard]] Cancelable {
 public:
  explicit Cancelable(std::stop_token token);
  Cancelable(const Cancelable&) = delete;
  Cancelable& operator=(const Cancelable&) = delete;
  ~Cancelable();

 private:
  std::stop_token token_;
  const std::stop_token* before_;
};

/// Whether the work of this thread was canceled.
bool isCanceled() noexcept;

/// Raises `Canceled` if the work of this thread was canceled. Decoders call it for each row, strip or record;
/// not from a callback of a C library.
void checkCanceled();

}  // namespace kestrel::engine
