#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "CallStack.h"

namespace kestrel {

/// The run-time error numbers that the system raises or tests.
namespace err {
inline constexpr std::int32_t kInvalidCall = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscript = 9;
inline constexpr std::int32_t kDivisionByZero = 11;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kInternal = 51;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kDeviceIO = 57;
inline constexpr std::int32_t kFileExists = 58;
inline constexpr std::int32_t kDiskFull = 61;
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kPathFileAccess = 75;
inline constexpr std::int32_t kPathNotFound = 76;
inline constexpr std::int32_t kObjectNotSet = 91;
inline constexpr std::int32_t kInvalidUseOfNull = 94;
inline constexpr std::int32_t kInvalidPropertyValue = 380;
inline constexpr std::int32_t kCannotCreateObject = 429;
inline constexpr std::int32_t kDuplicateKey = 457;
inline constexpr std::int32_t kInvalidPicture = 481;
}  // namespace err

/// An error: a number, a sentence that a user can read, and a source. The call stack is recorded in the
/// constructor, so that a report can name the failed statement.
class RuntimeError : public std::exception {
 public:
  explicit RuntimeError(std::int32_t number, std::string description = {}, std::string source = {});

  std::int32_t Number() const noexcept { return number_; }
  const std::string& Description() const noexcept { return description_; }
  const std::string& Source() const noexcept { return source_; }
  const CallStack& Stack() const noexcept { return stack_; }

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string description_;
  std::string source_;
  CallStack stack_;
};

}  // namespace kestrel
