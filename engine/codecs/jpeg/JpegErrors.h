#pragma once

#include <array>
#include <csetjmp>

#include "JpegLib.h"

namespace kestrel::engine::jpeg {

/// Error handler for libjpeg, which reports errors by a jump: code that runs under `guarded` must not own
/// objects with destructors.
struct Errors {
  jpeg_error_mgr base;
  std::jmp_buf jump;
  std::array<char, JMSG_LENGTH_MAX> text;  ///< last error, without a full stop
  bool damaged;                            ///< true after a warning that means a decode error

  void install(jpeg_common_struct* common);

  /// Calls the library; false if it reported an error.
  template <typename Step>
  bool guarded(const Step& step) {
    if (setjmp(jump) != 0) return false;
    step();
    return true;
  }
};

}  // namespace kestrel::engine::jpeg
