#pragma once

#include <memory>
#include <string>

#include "base/RuntimeError.h"
#include "imaging/contract/ObjectFactory.h"

namespace kestrel::headless {

/// Simulates a machine without a reporting object.
class ObjectFactory final : public kestrel::ObjectFactory {
 public:
  std::unique_ptr<ErrorReporter> CreateErrorReporter(const std::string& Identifier) override {
    throw RuntimeError(err::kCannotCreateObject, "\"" + Identifier + "\" is not installed.");
  }
};

}  // namespace kestrel::headless
