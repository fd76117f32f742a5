#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "ContractPlatform.h"
#include "base/RuntimeError.h"

namespace kestrel::contract {

/// Base of the contract tests, which run on each platform.
class ContractTest : public testing::TestWithParam<ContractPlatformMaker> {
 protected:
  void SetUp() override { user_ = GetParam().make(); }
  void TearDown() override { user_.reset(); }

  ContractPlatform& user() { return *user_; }
  Platform& platform() { return user_->platform(); }
  std::string path(const std::string& name) {
    return user_->folder() + platform().FileHelpers().PathSeparator() + name;
  }

 private:
  std::unique_ptr<ContractPlatform> user_;
};

inline std::string nameOfPlatform(const testing::TestParamInfo<ContractPlatformMaker>& info) {
  return info.param.name;
}

/// The number of the RuntimeError that `call` raises, 0 if none.
template <typename Call>
std::int32_t errorOf(Call call) {
  try {
    call();
    return 0;
  } catch (const RuntimeError& error) {
    return error.Number();
  }
}

}  // namespace kestrel::contract

/// Runs the tests of a fixture, which derives from ContractTest, on all platforms of the program.
#define KESTREL_ON_ALL_PLATFORMS(Fixture)                                                                \
  INSTANTIATE_TEST_SUITE_P(Contract, Fixture, testing::ValuesIn(kestrel::contract::contractPlatforms()), \
                           kestrel::contract::nameOfPlatform)
