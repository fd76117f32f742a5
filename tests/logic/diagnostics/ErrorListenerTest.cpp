// Errors that the apartment's listener hears.

#include "diagnostics/ErrorListener.h"

#include <string>
#include <vector>

#include "Diagnostics.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"

namespace kestrel {
namespace {

std::int32_t failedLine = 0;

void Failing() {
  try {
    failedLine = __LINE__ + 1;
    throw RuntimeError(err::kDiskFull, "The disk is full.");
  } catch (...) {
    QDK_TRAILER(Failing, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

class Recorder final : public ErrorListener {
 public:
  bool Reported(const Error& error) override {
    errors.push_back(error);
    return takes;
  }
  void HandlerFailed(const std::exception_ptr& cause) override { failures.push_back(cause); }

  bool takes = true;
  std::vector<Error> errors;
  std::vector<std::exception_ptr> failures;
};

class Listening : public Diagnostics {
 protected:
  Listening() { ErrorListener::Attach(&listener_); }
  ~Listening() override { ErrorListener::Attach(nullptr); }

  Recorder listener_;
  OpenCalls calls_;
};

TEST_F(Listening, HearsTheErrorAndTheUserSeesNoBox) {
  Failing();
  ASSERT_EQ(listener_.errors.size(), 1U);
  const ErrorListener::Error& error = listener_.errors.front();
  EXPECT_EQ(error.Number, err::kDiskFull);
  EXPECT_EQ(error.Module, "ErrorListenerTest");
  EXPECT_EQ(error.Procedure, "Failing");
  EXPECT_EQ(error.Line, 5 * failedLine);
  EXPECT_EQ(error.Description, "The disk is full.");
  EXPECT_THROW(std::rethrow_exception(error.Cause), RuntimeError);
  EXPECT_TRUE(boxes().empty());
}

TEST_F(Listening, MayLeaveTheErrorToTheBox) {
  listener_.takes = false;
  Failing();
  EXPECT_EQ(listener_.errors.size(), 1U);
  EXPECT_EQ(boxes().size(), 1U);
}

TEST_F(Listening, HearsNothingOnceItIsRemoved) {
  ErrorListener::Attach(nullptr);
  Failing();
  EXPECT_TRUE(listener_.errors.empty());
  EXPECT_EQ(boxes().size(), 1U);
}

TEST_F(Listening, HearsOfTheExceptionThatLeavesAHandlerWhichThenPropagates) {
  bool open = false;
  EXPECT_THROW(CallHost(calls_,
                        [&] {
                          open = calls_.Any();
                          throw std::string("of the host");
                        }),
               std::string);
  EXPECT_TRUE(open) << "the host may destroy the caller in its handler";
  EXPECT_FALSE(calls_.Any());
  ASSERT_EQ(listener_.failures.size(), 1U);
  EXPECT_THROW(std::rethrow_exception(listener_.failures.front()), std::string);
  CallHost(calls_, [] {});
  EXPECT_EQ(listener_.failures.size(), 1U);
}

}  // namespace
}  // namespace kestrel
