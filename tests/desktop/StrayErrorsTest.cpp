// Errors that leave the logic and reach the toolkit.

#include <gtest/gtest.h>

#include <QTest>
#include <functional>
#include <string>
#include <vector>

#include "EditorBench.h"
#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "platform/qt/core/Guard.h"

namespace kestrel::desktop {
namespace {

class StrayErrors : public testing::Test {
 protected:
  StrayErrors() {
    qt::setStrayErrorHandler([this](const std::string& description) { texts_.push_back(description); });
    bench_.showPicture(noise(300, 200));
  }
  ~StrayErrors() override { qt::setStrayErrorHandler(nullptr); }

  /// The texts shown to the user when a handler of the view's click fails like that.
  std::vector<std::string> textsOf(const std::function<void()>& failure) {
    texts_.clear();
    int clicks = 0;
    const Connection failing = bench_.view().Click.Connect([&] {
      ++clicks;
      failure();
    });
    QTest::mouseClick(&bench_.canvas(), Qt::LeftButton);
    settle();
    EXPECT_EQ(clicks, 1);
    return texts_;
  }

  EditorBench bench_;
  std::vector<std::string> texts_;
};

TEST_F(StrayErrors, AreShownAsText) {
  EXPECT_EQ(textsOf([] { throw RuntimeError(err::kDiskFull, "The disk is full."); }),
            std::vector<std::string>{"The disk is full."});
  EXPECT_EQ(textsOf([] { (void)std::vector<int>().at(3); }),
            std::vector<std::string>{"There is no element at that position."});
  EXPECT_EQ(textsOf([] { throw 5; }), std::vector<std::string>{"An error of an unknown kind was raised."});
}

TEST_F(StrayErrors, ThatWereReportedShowNothing) {
  EXPECT_TRUE(textsOf([] { throw RuntimeError(err::kReported); }).empty());
}

}  // namespace
}  // namespace kestrel::desktop
