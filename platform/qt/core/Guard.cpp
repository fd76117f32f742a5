#include "Guard.h"

#include <cstdio>
#include <utility>

#include "base/DescribedError.h"
#include "base/RuntimeError.h"

namespace kestrel::qt {
namespace {

using Handler = std::function<void(const std::string&)>;

Handler& handler() {
  static Handler theHandler;
  return theHandler;
}

}  // namespace

void setStrayErrorHandler(Handler replacement) { handler() = std::move(replacement); }

void guarded(const std::function<void()>& work) noexcept {
  try {
    work();
  } catch (...) {
    const DescribedError error = DescribeCurrentError();
    if (error.Number == err::kReported) return;
    if (handler()) {
      handler()(error.Description);
    } else {
      std::fprintf(stderr, "%s\n", error.Description.c_str());
    }
  }
}

}  // namespace kestrel::qt
