#include <gtest/gtest.h>

#include "FailedLineProcedures.h"
#include "diagnostics/modTollgarthSupport.h"
#include "platform/posix/LineTable.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {
namespace {

class FailedLine : public testing::TestWithParam<procedures::Procedure> {
 protected:
  FailedLine() {
    platform_.lines = &lines_;
    modTollgarthSupport::Attach(&platform_);
  }
  ~FailedLine() override { modTollgarthSupport::Attach(nullptr); }

  fakes::FakePlatform platform_;
  posix::LineTable lines_;
};

TEST_P(FailedLine, IsFiveTimesTheLineOfTheStatementThatFailed) {
  GetParam().run();
  EXPECT_EQ(modTollgarthSupport::State().qdkErrorLine, 5 * procedures::expectedLine)
      << "which is line " << modTollgarthSupport::State().qdkErrorLine / 5.0;
  ASSERT_EQ(platform_.boxes.boxes.size(), 1u);
  EXPECT_NE(platform_.boxes.boxes[0].text.find("Procedure: " + std::string(GetParam().name) + "\r\n"),
            std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(EveryShape, FailedLine, testing::ValuesIn(procedures::All()),
                         [](const auto& procedure) {
                           return procedure.param.name + std::to_string(procedure.index);
                         });

}  // namespace
}  // namespace kestrel
