#include "base/OpenCalls.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(OpenCalls, AreOpenUntilTheOutermostReturns) {
  OpenCalls calls;
  int returned = 0;
  const Connection watch = calls.AllReturned.Connect([&] { ++returned; });
  EXPECT_FALSE(calls.Any());
  {
    const OpenCalls::Call outer(calls);
    {
      const OpenCalls::Call inner(calls);
      EXPECT_TRUE(calls.Any());
    }
    EXPECT_TRUE(calls.Any());
    EXPECT_EQ(returned, 0);
  }
  EXPECT_FALSE(calls.Any());
  EXPECT_EQ(returned, 1);
}

TEST(OpenCalls, CountAnErrorAsAReturn) {
  OpenCalls calls;
  const auto fail = [&] {
    const OpenCalls::Call call(calls);
    throw 1;
  };
  EXPECT_THROW(fail(), int);
  EXPECT_FALSE(calls.Any());
}

}  // namespace
}  // namespace kestrel
