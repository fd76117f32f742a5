#include "CapturedError.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <new>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <typeinfo>
#include <variant>

#include "ModuleFiles.h"
#include "base/RuntimeError.h"
#include "imaging/contract/Platform.h"

namespace kestrel::qdk {
namespace {

std::int32_t NumberOf(const std::error_code& code) {
  if (code == std::errc::no_such_file_or_directory) return err::kFileNotFound;
  if (code == std::errc::file_exists) return err::kFileExists;
  if (code == std::errc::no_space_on_device) return err::kDiskFull;
  if (code == std::errc::permission_denied || code == std::errc::read_only_file_system)
    return err::kPermissionDenied;
  if (code == std::errc::not_a_directory) return err::kPathNotFound;
  if (code == std::errc::io_error) return err::kDeviceIO;
  if (code == std::errc::not_enough_memory) return err::kOutOfMemory;
  return err::kPathFileAccess;
}

/// The frame of `raised` that belongs to the procedure whose callers are `callers`.
///
/// The procedure's callers are on both stacks, at the same return addresses; what stands on the raising
/// stack right before them is the procedure's own call. Either stack may have been cut off at its outer end,
/// so the innermost place counts at which all that is known of both agrees.
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

}  // namespace

std::int32_t FailedLine(const Site& site, const CallStack& raised, const CallStack& caught) {
  const auto stack = raised.Addresses();
  const auto here = caught.Addresses();
  constexpr std::size_t kOwnFrames = 2;  // the trailer's and the procedure's
  if (stack.empty() || here.size() < kOwnFrames) return site.line;
  const bool cutOff = stack.size() == CallStack::kMaxDepth || here.size() == CallStack::kMaxDepth;
  const auto frame = ProcedureFrame(stack, here.subspan(kOwnFrames), cutOff);
  if (!frame) return site.line;

  // Functions that were inlined into the procedure, and one that the procedure was inlined into, share the
  // frame. Of their lines the procedure's is the last one above its trailer.
  std::int32_t line = 0;
  for (const SourcePlace& place : modTollgarthSupport::AttachedPlatform()->StackResolver().Resolve(*frame)) {
    if (FileName(place.File) == FileName(site.file) && place.Line <= site.line)
      line = std::max(line, place.Line);
  }
  return line > 0 ? line : site.line;
}

modTollgarthSupport::CapturedError CurrentError(const Site& site, const CallStack& caught) {
  const auto lineNumber = [&](std::int32_t line) { return LineNumber(site.file, line); };
  const auto standard = [&](std::int32_t number, const std::exception& error) {
    return modTollgarthSupport::CapturedError{number, error.what(), lineNumber(site.line), {}};
  };
  try {
    throw;
  } catch (const RuntimeError& error) {
    return {error.Number(), error.Description(), lineNumber(FailedLine(site, error.Stack(), caught)),
            error.Source()};
  } catch (const std::bad_alloc&) {
    return {err::kOutOfMemory, "There is not enough memory.", lineNumber(site.line), {}};
  } catch (const std::system_error& error) {
    return standard(NumberOf(error.code()), error);
  } catch (const std::out_of_range& error) {
    return standard(err::kSubscript, error);
  } catch (const std::logic_error& error) {
    return standard(err::kInvalidCall, error);
  } catch (const std::range_error& error) {
    return standard(err::kOverflow, error);
  } catch (const std::overflow_error& error) {
    return standard(err::kOverflow, error);
  } catch (const std::bad_cast& error) {
    return standard(err::kTypeMismatch, error);
  } catch (const std::bad_variant_access& error) {
    return standard(err::kTypeMismatch, error);
  } catch (const std::bad_optional_access& error) {
    return standard(err::kObjectNotSet, error);
  } catch (const std::bad_function_call& error) {
    return standard(err::kObjectNotSet, error);
  } catch (const std::exception& error) {
    return standard(err::kInternal, error);
  } catch (...) {
    return {err::kInternal, "An error of an unknown kind was raised.", lineNumber(site.line), {}};
  }
}

}  // namespace kestrel::qdk
