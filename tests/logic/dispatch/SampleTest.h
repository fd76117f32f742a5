#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "SampleClass.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Convert.h"
#include "host/dispatch/Errors.h"
#include "host/dispatch/Invoke.h"

namespace kestrel::dispatch {

/// An error as a host sees it: "450 Join takes 1 to 4 arguments, not 5. (Sample)", with "@2 " before it if it
/// concerns the second argument; empty if nothing was raised.
inline std::string RaisedBy(const std::function<void()>& act) {
  const auto text = [](const RuntimeError& error) {
    return std::to_string(error.Number()) + " " + error.Description() + " (" + error.Source() + ")";
  };
  try {
    act();
  } catch (const ArgumentError& error) {
    return "@" + std::to_string(error.Position()) + " " + text(error);
  } catch (const RuntimeError& error) {
    return text(error);
  }
  return {};
}

/// A sample object and its reference.
class SampleTest : public testing::Test {
 protected:
  using Object = sample::Sample;

  Object& sample() { return *object_; }
  const Reference& reference() { return *reference_; }
  Reference::Pointer shared() { return reference_; }

  std::string Raised(const std::string& member, std::vector<Variant> arguments = {}) {
    return RaisedBy([&] { Invoke(reference(), member, Use::kGet, arguments); });
  }
  std::string RaisedByPut(const std::string& member, Variant value) {
    return RaisedBy([&] { Put(reference(), member, value); });
  }

  std::shared_ptr<Object> object_ = std::make_shared<Object>();
  Reference::Pointer reference_ = Refer(object_);
};

}  // namespace kestrel::dispatch
