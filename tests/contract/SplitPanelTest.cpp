#include "ContractTest.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/SplitPanel.h"

namespace kestrel::contract {
namespace {

/// A panel of 600 by 40 with two labels.
class SplitPanels : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    form_ = user().controls();
    form_->Show();
    panel().Panes(first(), second());
    user().settle();
    changed_ = panel().PositionChange.Connect([this] { ++changes_; });
  }
  void TearDown() override {
    form_.reset();
    ContractTest::TearDown();
  }

  SplitPanel& panel() { return Bind<SplitPanel>(*form_, "pnlSplit"); }
  Control& first() { return Bind<Label>(*form_, "lblFirst"); }
  Control& second() { return Bind<Label>(*form_, "lblSecond"); }

  void expectFirstWidth(std::int32_t width) {
    EXPECT_EQ(first().Left(), 0);
    EXPECT_EQ(first().Width(), width);
    EXPECT_EQ(first().Height(), panel().Height());
    EXPECT_GT(second().Left(), width);
    EXPECT_EQ(second().Left() + second().Width(), panel().Width());
    EXPECT_EQ(second().Height(), panel().Height());
  }

  int changes_ = 0;

 private:
  std::unique_ptr<Form> form_;
  Connection changed_;
};

TEST_P(SplitPanels, StartAt240PixelsWithTheSecondPaneInTheRest) {
  EXPECT_EQ(panel().Position(), 240);
  expectFirstWidth(240);
}

TEST_P(SplitPanels, FollowTheUsersDrag) {
  user().dragDivider(panel(), 300);
  EXPECT_EQ(panel().Position(), 300);
  expectFirstWidth(300);
  EXPECT_GT(changes_, 0);
}

TEST_P(SplitPanels, KeepTheDraggedDividerInside) {
  user().dragDivider(panel(), 900);
  EXPECT_LT(panel().Position(), 600);
  EXPECT_EQ(second().Width(), 0);
  user().dragDivider(panel(), -50);
  EXPECT_EQ(panel().Position(), 0);
  expectFirstWidth(0);
}

TEST_P(SplitPanels, RaiseTheChangeForAnotherPositionOnly) {
  panel().Position(240);
  EXPECT_EQ(changes_, 0);
  panel().Position(100);
  EXPECT_EQ(changes_, 1);
  expectFirstWidth(100);
}

TEST_P(SplitPanels, TakeANegativePositionAsZero) {
  panel().Position(-7);
  EXPECT_EQ(panel().Position(), 0);
  panel().Position(-8);
  EXPECT_EQ(changes_, 1);
}

TEST_P(SplitPanels, GiveTheFirstPaneItsWidthBackWhenThereIsRoomAgain) {
  panel().Move(0, 0, 100, 40);
  user().settle();
  EXPECT_EQ(panel().Position(), 240);
  EXPECT_LT(first().Width(), 100);
  panel().Move(0, 0, 700, 40);
  user().settle();
  expectFirstWidth(240);
  EXPECT_EQ(changes_, 0);
}

KESTREL_ON_ALL_PLATFORMS(SplitPanels);

}  // namespace
}  // namespace kestrel::contract
