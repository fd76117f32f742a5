#include "CapturedError.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>

#include "ModuleFiles.h"
#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "base/ThrowRecord.h"
#include "imaging/contract/Platform.h"

namespace kestrel::qdk {
namespace {

/// The frame of `raised` that belongs to the procedure whose callers are `callers`.
///
/// The procedure's callers are on both stacks at the same return addresses; the frame before them on the
/// raising stack is the procedure's own call. Either stack may be truncated at its outer end, so the
/// innermost position at which the known parts agree counts.
std::optional<std::uintptr_t> ProcedureFrame(std::span<const std::uintptr_t> raised,
                                             std::span<const std::uintptr_t> callers, bool cutOff) {
  for (std::size_t i = 1; i <= raised.size(); ++i) {
    const auto tail = raised.subspan(i);
    if (!cutOff && tail.size() != callers.size()) continue;
    const std::size_t common = std::min(tail.size(), callers.size());
    if (cutOff && common == 0) break;
    if (std::equal(tail.begin(), tail.begin() + static_cast<std::ptrdiff_t>(common), callers.begin())) {
      return raised[i - 1];
    }
  }
  return std::nullopt;
}

/// The line of the procedure's statement below which the stack was recorded; none if the procedure is not on
/// the stack or its source place is unknown.
std::optional<std::int32_t> StatementLine(const Site& site, const CallStack& raised,
                                          const CallStack& caught) {
  const auto stack = raised.Addresses();
  const auto here = caught.Addresses();
  constexpr std::size_t kOwnFrames = 2;  // the trailer's and the procedure's
  if (stack.empty() || here.size() < kOwnFrames) return std::nullopt;
  const bool cutOff = stack.size() == CallStack::kMaxDepth || here.size() == CallStack::kMaxDepth;
  const auto frame = ProcedureFrame(stack, here.subspan(kOwnFrames), cutOff);
  if (!frame) return std::nullopt;

  // Functions inlined into the procedure, and the function that the procedure was inlined into, share the
  // frame. Of their lines the procedure's is the last one above its trailer.
  std::int32_t line = 0;
  for (const SourcePlace& place : modTollgarthSupport::AttachedPlatform()->StackResolver().Resolve(*frame)) {
    if (FileName(place.File) == FileName(site.file) && place.Line <= site.line)
      line = std::max(line, place.Line);
  }
  return line > 0 ? std::optional(line) : std::nullopt;
}

/// The stack recorded in the error; only a RuntimeError has one.
CallStack OwnStack() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return error.Stack();
  } catch (...) {
    return {};
  }
}

/// The line of the procedure's statement that raised the handled error, however deep below it; the trailer's
/// own line if that is unknown.
std::int32_t FailedLine(const Site& site, const CallStack& caught) {
  // Prefer the stack of the throw: the error object may have been constructed elsewhere.
  if (const CallStack* const thrown = ThrowRecord::OfCurrentError()) {
    if (const auto line = StatementLine(site, *thrown, caught)) return *line;
  }
  return StatementLine(site, OwnStack(), caught).value_or(site.line);
}

}  // namespace

modTollgarthSupport::CapturedError CurrentError(const Site& site, const CallStack& caught) {
  const DescribedError error = DescribeCurrentError();
  return {error.Number, error.Description, LineNumber(site.file, FailedLine(site, caught)), error.Source};
}

}  // namespace kestrel::qdk
