#include "Guard.h"

#include <cstdio>
#include <exception>
#include <utility>

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
  } catch (const std::exception& error) {
    if (handler()) {
      handler()(error.what());
    } else {
      std::fprintf(stderr, "%s\n", error.what());
    }
  }
}

}  // namespace kestrel::qt
