#include "Diagnostics.h"
#include "FailedLineProcedures.h"

namespace kestrel {
namespace {

class FailedLine : public Diagnostics, public testing::WithParamInterface<procedures::Procedure> {};

TEST_P(FailedLine, IsFiveTimesTheLineOfTheStatementThatFailed) {
  GetParam().run();
  EXPECT_EQ(state().qdkErrorLine, 5 * procedures::expectedLine)
      << "which is line " << state().qdkErrorLine / 5.0;
  ASSERT_EQ(boxes().size(), 1u);
  EXPECT_NE(boxes()[0].text.find("Procedure: " + std::string(GetParam().name) + "\r\n"), std::string::npos);
}

const auto kName = [](const auto& procedure) {
  return procedure.param.name + std::to_string(procedure.index);
};
INSTANTIATE_TEST_SUITE_P(EveryShape, FailedLine, testing::ValuesIn(procedures::RaisingRuntimeErrors()),
                         kName);
INSTANTIATE_TEST_SUITE_P(ByTheThrowHook, FailedLine, testing::ValuesIn(procedures::RaisingOtherExceptions()),
                         kName);

}  // namespace
}  // namespace kestrel
