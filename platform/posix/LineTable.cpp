#include "LineTable.h"

#include <backtrace.h>
#include <cxxabi.h>

#include <cstdlib>
#include <memory>

#include "ThrowHook.h"

namespace kestrel::posix {
namespace {

std::string SourceName(const char* linkerName) {
  if (linkerName == nullptr) return {};
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(linkerName, nullptr, nullptr, &status), &std::free);
  return status == 0 ? name.get() : linkerName;
}

int TakePlace(void* data, std::uintptr_t /*address*/, const char* file, int line, const char* function) {
  if (file != nullptr) {
    static_cast<std::vector<SourcePlace>*>(data)->push_back({SourceName(function), file, line});
  }
  return 0;
}

// If a table cannot be read, the places stay unknown to the caller.
void IgnoreFailure(void* /*data*/, const char* /*message*/, int /*number*/) {}

}  // namespace

LineTable::LineTable() { requireThrowHook(); }

std::vector<SourcePlace> LineTable::Resolve(std::uintptr_t returnAddress) {
  // The library's state lives as long as the process, so all objects share one.
  static backtrace_state* const state =
      backtrace_create_state(nullptr, /*threaded=*/1, IgnoreFailure, nullptr);
  std::vector<SourcePlace> places;
  // The instruction before the return address is the call.
  if (state != nullptr) backtrace_pcinfo(state, returnAddress - 1, TakePlace, IgnoreFailure, &places);
  return places;
}

}  // namespace kestrel::posix
