#include "base/CallStack.h"

#include <gtest/gtest.h>

#include "base/RuntimeError.h"

namespace kestrel {
namespace {

[[gnu::noinline]] CallStack recordedBelow(int depth) {
  if (depth == 0) return CallStack::Record();
  CallStack stack = recordedBelow(depth - 1);
  asm volatile("" ::: "memory");  // prevents a tail call
  return stack;
}

TEST(CallStack, HasOneAddressPerCaller) {
  const std::size_t shallow = recordedBelow(1).Addresses().size();
  EXPECT_EQ(recordedBelow(6).Addresses().size(), shallow + 5);
}

TEST(CallStack, IsCutOffAtItsOuterEnd) {
  EXPECT_EQ(recordedBelow(200).Addresses().size(), CallStack::kMaxDepth);
}

TEST(RuntimeError, RecordsWhereItWasMade) {
  const RuntimeError error(err::kDiskFull, "The disk is full.", "engine");
  EXPECT_EQ(error.Number(), 61);
  EXPECT_STREQ(error.what(), "The disk is full.");
  EXPECT_EQ(error.Source(), "engine");
  EXPECT_FALSE(error.Stack().Addresses().empty());
}

}  // namespace
}  // namespace kestrel
