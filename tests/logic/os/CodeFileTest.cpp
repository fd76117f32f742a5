#include "platform/os/CodeFile.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(CodeFile, IsTheProgramThatTheCodeIsLinkedInto) {
  EXPECT_EQ(os::codeFile(), std::filesystem::canonical("/proc/self/exe"));
}

}  // namespace
}  // namespace kestrel
