#include "diagnostics/qdkClient.h"

#include <memory>

#include "Diagnostics.h"
#include "FakeDebugClient.h"

namespace kestrel {
namespace {

class DebugClientClass : public Diagnostics {
 protected:
  std::string commandLine(const std::string& given) {
    platform_.app.commandLine = given;
    return std::make_shared<qdkClient>()->CommandLine();
  }
  fakes::DebugTool tool_;
};

TEST_F(DebugClientClass, ReturnsTheClientOfTheLibrary) {
  platform_.makeLibrary = [this] { return std::make_unique<fakes::Library>(tool_); };
  const auto client = std::make_shared<qdkClient>();
  EXPECT_EQ(client->IPC(), tool_.client);
}

TEST_F(DebugClientClass, HasNoneWithoutTheLibrary) {
  EXPECT_EQ(std::make_shared<qdkClient>()->IPC(), nullptr);
  platform_.makeLibrary = []() -> std::unique_ptr<DebugClientLibrary> {
    throw RuntimeError(err::kCannotCreateObject, "No library.");
  };
  EXPECT_EQ(std::make_shared<qdkClient>()->IPC(), nullptr);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(DebugClientClass, NormalizesTheCommandLine) {
  EXPECT_EQ(commandLine("/opt/app"), "/opt/app");
  EXPECT_EQ(commandLine("/opt/app -x a.png"), "/opt/app -x a.png");
  EXPECT_EQ(commandLine("/opt/app    -x  a.png "), "/opt/app -x  a.png ");
  EXPECT_EQ(commandLine("\"/opt/my app\" -x"), "/opt/my app -x");
  EXPECT_EQ(commandLine("\"/opt/my app\"-x"), "/opt/my app -x");
  EXPECT_EQ(commandLine("\"/opt/my app\""), "/opt/my app");
  EXPECT_EQ(commandLine("\"/opt/my app"), "/opt/my app") << "a quote that is never closed";
  EXPECT_EQ(commandLine("/opt/app   "), "/opt/app");
  EXPECT_EQ(commandLine(std::string("/opt/app a\0b", 12)), "/opt/app a");
  EXPECT_EQ(commandLine(""), "");
}

TEST_F(DebugClientClass, TruncatesALongCommandLine) {
  EXPECT_EQ(commandLine("a " + std::string(1000, 'x')), "a " + std::string(510, 'x'));
}

}  // namespace
}  // namespace kestrel
