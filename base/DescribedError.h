#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

namespace err {
/// A reporting object has taken the error, which now propagates through the callers. It has no description
/// and is not shown to the user again.
inline constexpr std::int32_t kReported = 65535;
}  // namespace err

/// An error in the system's own terms.
struct DescribedError {
  std::int32_t Number = 0;
  std::string Description;  ///< a sentence a user can read; empty only for `err::kReported`
  std::string Source;       ///< for developers: the text of a standard library error
};

/// Describes the error that is being handled. Call inside a catch block.
///
/// A RuntimeError has its own number and text. An error of the standard library gets the number of the same
/// meaning and our own sentence, since the library's text is written for programmers. An error class of the
/// host keeps its text and gets number 51.
DescribedError DescribeCurrentError();

/// The same for a handler that shows the error in a message box of its own. Rethrows an error that a
/// reporting object has taken, which is not shown again.
DescribedError DescribeErrorToShow();

}  // namespace kestrel
