#include "Status.h"

#include "Text.h"
#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Errors.h"

namespace kestrel::c {
namespace {

/// The latest error of a thread, with the texts that its description refers to.
struct LatestError {
  kestrel_error error{0, 0, "", ""};
  std::string source;
  std::string description;

  void Set(std::int32_t number, std::int32_t position, std::string ofSource, std::string ofDescription) {
    source = std::move(ofSource);
    description = std::move(ofDescription);
    error = {number, position, source.c_str(), description.c_str()};
  }
};

LatestError& Latest() {
  static thread_local LatestError latest;
  return latest;
}

/// Of an error that concerns an argument, else 0. Call inside a catch block.
std::int32_t PositionOfCurrentError() {
  try {
    throw;
  } catch (const dispatch::ArgumentError& error) {
    return error.Position();
  } catch (...) {
    return 0;
  }
}

}  // namespace

kestrel_status NoteCurrentError() noexcept {
  try {
    const std::int32_t position = PositionOfCurrentError();
    DescribedError described = DescribeCurrentError();
    if (described.Number == 0) described.Number = err::kInternal;
    if (described.Description.empty()) described.Description = "The error was reported.";
    Latest().Set(described.Number, position, ValidUtf8(described.Source), ValidUtf8(described.Description));
    return described.Number;
  } catch (...) {
    // No memory for the texts.
    Latest().error = {KESTREL_OUT_OF_MEMORY, 0, "", "There is not enough memory."};
    return KESTREL_OUT_OF_MEMORY;
  }
}

void RaiseHandlerError(kestrel_status status, const std::string& event) {
  const LatestError& latest = Latest();
  if (latest.error.number == status) throw RuntimeError(status, latest.description, latest.source);
  throw RuntimeError(status, "A handler of the event " + event + " failed.");
}

void RaiseInvalidCall(const char* sentence) { throw RuntimeError(err::kInvalidCall, sentence); }

void Require(const void* pointer, const char* sentence) {
  if (!pointer) RaiseInvalidCall(sentence);
}

}  // namespace kestrel::c

const kestrel_error* kestrel_last_error() { return &kestrel::c::Latest().error; }

kestrel_status kestrel_set_error(std::int32_t number, const char* source, const char* description) {
  using namespace kestrel::c;
  const kestrel_status status = number == KESTREL_OK ? KESTREL_INTERNAL : number;
  const kestrel_status noted = Guarded([&] {
    Latest().Set(status, 0, ValidUtf8(TextOrEmpty(source)),
                 description ? ValidUtf8(description) : "A handler failed.");
  });
  return noted == KESTREL_OK ? status : noted;
}

std::uint32_t kestrel_version() {
  return std::uint32_t{KESTREL_VERSION_MAJOR} << 16 | std::uint32_t{KESTREL_VERSION_MINOR} << 8 |
         std::uint32_t{KESTREL_VERSION_REVISION};
}
