#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

namespace err {
/// A reporting object has taken the error, which now climbs through the callers. It has no description, and
/// nothing more of it is shown to the user.
inline constexpr std::int32_t kReported = 65535;
}  // namespace err

/// An error in the system's own terms.
struct DescribedError {
  std::int32_t Number = 0;
  std::string Description;  ///< a sentence a user can read; empty only for `err::kReported`
  std::string Source;       ///< for developers: what an error of the standard library says of itself
};

/// Describes the error that is being handled; to be called inside a catch block.
///
/// A RuntimeError has its own number and text. An error of the standard library gets the number of the same
/// meaning and a sentence of ours, since its own text is written for programmers. An error class of a host's
/// keeps its text and gets number 51.
DescribedError DescribeCurrentError();

/// The same for a handler that tells the user in a box of its own. Rethrows an error that a reporting object
/// has taken already, since nothing more of it is shown.
DescribedError DescribeErrorToShow();

}  // namespace kestrel
