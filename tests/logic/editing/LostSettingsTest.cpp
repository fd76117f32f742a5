#include "EditingTest.h"

namespace kestrel {
namespace {

using testing::IsEmpty;

class EditingWithoutSettings : public EditingTest {};

TEST_P(EditingWithoutSettings, ASaveKeepsThePreviousQualityAndReportsNothing) {
  options().JPEGQuality(31);
  ASSERT_TRUE(editor().SaveImageAs(path("a.jpg")));
  ASSERT_EQ(view().JPEGQuality(), 31);
  options().JPEGQuality(90);
  loseNextSetting();
  EXPECT_TRUE(editor().SaveImageAs(path("b.jpg")));
  EXPECT_EQ(view().JPEGQuality(), 31);
  EXPECT_TRUE(exists(path("b.jpg")));
  EXPECT_THAT(user().boxes(), IsEmpty());
  ASSERT_TRUE(editor().SaveImageAs(path("c.jpg")));
  EXPECT_EQ(view().JPEGQuality(), 90) << "when it can be read again";
}

KESTREL_WITH_BOTH_PATHS(EditingWithoutSettings);

}  // namespace
}  // namespace kestrel
