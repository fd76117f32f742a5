#include "EffectRows.h"

#include "base/RuntimeError.h"

namespace kestrel::engine {

void requirePicture(const Bitmap& bitmap) {
  if (bitmap.empty()) throw RuntimeError(err::kInvalidCall, "There is no picture to work on.");
}

}  // namespace kestrel::engine
