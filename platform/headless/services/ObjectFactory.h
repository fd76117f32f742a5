#pragma once

#include <memory>
#include <string>

#include "base/RuntimeError.h"
#include "imaging/contract/ObjectFactory.h"

namespace kestrel::headless {

/// A machine on which no reporting object is installed.
class ObjectFactory final : public kestrel::ObjectFactory {
 public:
  std::unique_ptr<ErrorReporter> CreateErrorReporter(const std::string& Identifier) override {
    throw RuntimeError(err::kCannotCreateObject, "\"" + Identifier + "\" is not installed.");
  }
};

}  // namespace kestrel::headless
