#pragma once

#include <png.h>

#include <array>
#include <csetjmp>
#include <cstring>

namespace kestrel::engine::png {

/// Error handler for libpng, which reports errors by a jump: code that runs under `guarded` must not own
/// objects with destructors.
struct Errors {
  std::jmp_buf jump;
  std::array<char, 200> text{};  ///< last error, without a full stop

  /// libpng's error callback.
  static void raise(png_structp png, png_const_charp message) {
    auto* const errors = static_cast<Errors*>(png_get_error_ptr(png));
    std::strncpy(errors->text.data(), message, errors->text.size() - 1);
    std::longjmp(errors->jump, 1);
  }
  /// libpng's warning callback.
  static void ignore(png_structp, png_const_charp) {}

  /// Calls the library; false if it reported an error.
  template <typename Step>
  bool guarded(const Step& step) {
    if (setjmp(jump) != 0) return false;
    step();
    return true;
  }
};

}  // namespace kestrel::engine::png
