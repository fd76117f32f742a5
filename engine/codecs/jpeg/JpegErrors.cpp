#include "JpegErrors.h"

namespace kestrel::engine::jpeg {
namespace {

/// The other warnings are about harmless liberties of the writing program.
bool meansDecodeError(int code) {
  switch (code) {
    case JWRN_JPEG_EOF:
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_MUST_RESYNC:
    case JWRN_BOGUS_PROGRESSION:
      return true;
    default:
      return false;
  }
}

}  // namespace

void Errors::install(jpeg_common_struct* common) {
  common->err = jpeg_std_error(&base);
  base.error_exit = [](j_common_ptr self) {
    auto* const errors = reinterpret_cast<Errors*>(self->err);
    errors->base.format_message(self, errors->text.data());
    std::longjmp(errors->jump, 1);
  };
  base.emit_message = [](j_common_ptr self, int level) {
    auto* const errors = reinterpret_cast<Errors*>(self->err);
    if (level < 0 && meansDecodeError(errors->base.msg_code)) errors->damaged = true;
  };
  base.output_message = [](j_common_ptr) {};
  text.fill('\0');
  damaged = false;
}

}  // namespace kestrel::engine::jpeg
