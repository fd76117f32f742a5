#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

/// The reporting object, which takes error reports instead of the built-in box.
class ErrorReporter {
 public:
  virtual ~ErrorReporter() = default;

  virtual void ErrorHandler(std::int32_t& Number, const std::string& Project, const std::string& Module,
                            const std::string& Procedure, const std::string& Description, std::int32_t& Line,
                            const std::string& Variables, const std::string& Version) = 0;
  /// The action that the object requests for the last report.
  virtual std::string Action() const = 0;
};

}  // namespace kestrel
