#include "Guard.h"

#include <cstdio>
#include <exception>
#include <utility>

namespace kestrel::qt {
namespace {

std::function<void(const std::string&)>& handler() {
  static std::function<void(const std::string&)> theHandler = [](const std::string& description) {
    std::fprintf(stderr, "%s\n", description.c_str());
  };
  return theHandler;
}

}  // namespace

void setStrayErrorHandler(std::function<void(const std::string&)> replacement) {
  handler() = std::move(replacement);
}

void guarded(const std::function<void()>& work) noexcept {
  try {
    work();
  } catch (const std::exception& error) {
    handler()(error.what());
  }
}

}  // namespace kestrel::qt
