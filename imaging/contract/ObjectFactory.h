#pragma once

#include <memory>
#include <string>

#include "ErrorReporter.h"

namespace kestrel {

/// Makes objects of optional components.
class ObjectFactory {
 public:
  virtual ~ObjectFactory() = default;

  /// A new reporting object of that identifier ("BrindleError.Error"). Raises 429 if it cannot be created.
  virtual std::unique_ptr<ErrorReporter> CreateErrorReporter(const std::string& Identifier) = 0;
};

}  // namespace kestrel
