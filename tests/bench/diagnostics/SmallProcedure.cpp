#include "SmallProcedure.h"

#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"

namespace kestrel::bench {
namespace {

// A call that may fail, and that the compiler cannot inline.
[[gnu::noinline]] std::int32_t step(std::int32_t value) {
  if (value == -1) throw RuntimeError(err::kInvalidCall, "The value is out of range.");
  return value * 3 + 1;
}

}  // namespace

std::int32_t withTrailer(std::int32_t value, const std::string& name) {
  std::int32_t Result = 0;
  bool Found = false;
  try {
    Found = name.size() > 3;
    Result = step(value);
    if (Found) Result += step(Result);
  } catch (...) {
    QDK_TRAILER(withTrailer, QDK_PARAMETERS(value, name), QDK_LOCALS(Found, Result));
  }
  return Result;
}

std::int32_t withoutTrailer(std::int32_t value, const std::string& name) {
  std::int32_t Result = 0;
  bool Found = false;
  Found = name.size() > 3;
  Result = step(value);
  if (Found) Result += step(Result);
  return Result;
}

std::int32_t failing(std::int32_t value) {
  std::int32_t Result = 0;
  try {
    Result = step(value);
  } catch (...) {
    QDK_TRAILER(failing, QDK_PARAMETERS(value), QDK_LOCALS(Result));
  }
  return Result;
}

}  // namespace kestrel::bench
