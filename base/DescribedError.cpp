#include "DescribedError.h"

#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <typeinfo>
#include <variant>

#include "RuntimeError.h"
#include "platform/os/Paths.h"

namespace kestrel {
namespace {

struct Meaning {
  std::int32_t number;
  const char* sentence;
};

constexpr Meaning kNoMemory{err::kOutOfMemory, "There is not enough memory."};
constexpr Meaning kUnknown{err::kInternal, "An internal error occurred."};

struct SystemMeaning {
  std::errc code;
  Meaning meaning;
};

// clang-format off
constexpr SystemMeaning kSystemMeanings[] = {
    {std::errc::no_such_file_or_directory, {err::kFileNotFound, "The file was not found."}},
    {std::errc::file_exists, {err::kFileExists, "The file already exists."}},
    {std::errc::no_space_on_device, {err::kDiskFull, "The disk is full."}},
    {std::errc::permission_denied, {err::kPermissionDenied, "Permission was denied."}},
    {std::errc::read_only_file_system, {err::kPermissionDenied, "The disk is write-protected."}},
    {std::errc::not_a_directory, {err::kPathNotFound, "The path was not found."}},
    {std::errc::io_error, {err::kDeviceIO, "The device reported a read or write error."}},
    {std::errc::not_enough_memory, kNoMemory},
};
// clang-format on

Meaning MeaningOf(const std::error_code& code) {
  for (const SystemMeaning& row : kSystemMeanings) {
    if (code == row.code) return row.meaning;
  }
  return {err::kPathFileAccess, "The operating system refused access to a path or another resource."};
}

/// Whether the class belongs to the C++ library; its mangled name begins with the library's namespace.
bool IsOfStandardLibrary(const std::exception& error) {
  const std::string_view name = typeid(error).name();
  return name.starts_with("St") || name.starts_with("NSt") || name.starts_with("N9__gnu_cxx");
}

DescribedError Standard(const Meaning& meaning, const std::exception& error) {
  if (!IsOfStandardLibrary(error) && *error.what() != '\0') return {meaning.number, error.what(), {}};
  return {meaning.number, meaning.sentence, error.what()};
}

}  // namespace

DescribedError DescribeCurrentError() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return {error.Number(), error.Description(), error.Source()};
  } catch (const std::bad_alloc& error) {
    return Standard(kNoMemory, error);
  } catch (const std::filesystem::filesystem_error& error) {
    DescribedError described = Standard(MeaningOf(error.code()), error);
    if (!error.path1().empty()) described.Description += " (" + os::textOf(error.path1()) + ")";
    return described;
  } catch (const std::system_error& error) {
    return Standard(MeaningOf(error.code()), error);
  } catch (const std::out_of_range& error) {
    return Standard({err::kSubscript, "There is no element at that position."}, error);
  } catch (const std::length_error& error) {
    return Standard({err::kInvalidCall, "A text or list would become too long."}, error);
  } catch (const std::logic_error& error) {
    return Standard({err::kInvalidCall, "A value is not valid here."}, error);
  } catch (const std::range_error& error) {
    return Standard({err::kOverflow, "A number is too large."}, error);
  } catch (const std::overflow_error& error) {
    return Standard({err::kOverflow, "A number is too large."}, error);
  } catch (const std::bad_cast& error) {
    return Standard({err::kTypeMismatch, "A value is of the wrong type."}, error);
  } catch (const std::bad_variant_access& error) {
    return Standard({err::kTypeMismatch, "A value is of the wrong type."}, error);
  } catch (const std::bad_optional_access& error) {
    return Standard({err::kObjectNotSet, "A value that is needed is missing."}, error);
  } catch (const std::bad_function_call& error) {
    return Standard({err::kObjectNotSet, "A function that is needed is missing."}, error);
  } catch (const std::bad_weak_ptr& error) {
    return Standard({err::kObjectNotSet, "An object that is needed is gone."}, error);
  } catch (const std::exception& error) {
    return Standard(kUnknown, error);
  } catch (...) {
    return {err::kInternal, "An error of an unknown kind was raised.", {}};
  }
}

DescribedError DescribeErrorToShow() {
  DescribedError error = DescribeCurrentError();
  if (error.Number == err::kReported) throw;
  return error;
}

}  // namespace kestrel
