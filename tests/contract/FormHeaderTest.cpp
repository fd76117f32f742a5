#include "ContractTest.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/Frame.h"

namespace kestrel::contract {
namespace {

class Header : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    form_ = user().header();
    connection_ = header().Resize.Connect(
        [this](std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
          areas_.push_back({left, top, width, height});
        });
  }
  void TearDown() override {
    connection_ = {};
    form_.reset();
    ContractTest::TearDown();
  }
  Form& form() { return *form_; }
  FormHeader& header() { return Bind<FormHeader>(*form_, "FormHeader"); }
  void show() {
    form_->Show();
    user().settle();
  }
  const std::vector<Rectangle>& areas() const { return areas_; }

 private:
  std::unique_ptr<Form> form_;
  Connection connection_;
  std::vector<Rectangle> areas_;
};

TEST_P(Header, ShowsTheWindowsTitle) {
  show();
  EXPECT_EQ(header().Title(), "With a header");
  form().Caption("Another title");
  EXPECT_EQ(header().Title(), "Another title");
}

TEST_P(Header, ReportsTheDialogsAreaWhenTheWindowIsShown) {
  bool loaded = false, activated = false;
  const Connection load = form().Load.Connect([&] {
    loaded = true;
    EXPECT_TRUE(areas().empty()) << "not while the window is hidden";
  });
  const Connection activate = form().Activate.Connect([&] {
    activated = true;
    EXPECT_FALSE(areas().empty());
  });
  form().Width(520);
  EXPECT_TRUE(areas().empty());
  show();
  EXPECT_TRUE(loaded);
  EXPECT_TRUE(activated);
  EXPECT_FALSE(areas().empty());
}

TEST_P(Header, TheAreaIsBetweenTheStripAndTheRow) {
  show();
  const Rectangle area = areas().back();
  EXPECT_GE(area.Left, 0);
  EXPECT_GT(area.Top, 0);
  EXPECT_EQ(area.Left + area.Width + area.Left, form().ScaleWidth()) << "the margins are equal";
  EXPECT_LE(area.Top + area.Height, form().ScaleHeight() - 32) << "the dialog's part of the row";
  EXPECT_GT(area.Height, 100);
}

TEST_P(Header, TheAreaGrowsWithTheWindow) {
  show();
  const Rectangle before = areas().back();
  form().Move(form().Left(), form().Top(), form().Width() + 100, form().Height() + 50);
  user().settle();
  const Rectangle after = areas().back();
  EXPECT_EQ(after.Left, before.Left);
  EXPECT_EQ(after.Top, before.Top);
  EXPECT_EQ(after.Width, before.Width + 100);
  EXPECT_EQ(after.Height, before.Height + 50);
}

TEST_P(Header, LeavesTheRestOfTheWindowWhereTheDialogPutsIt) {
  auto& box = Bind<CheckBox>(form(), "chkFirst");
  auto& frame = Bind<Frame>(form(), "fraPart");
  const Connection connection = header().Resize.Connect([&](auto left, auto top, auto, auto) {
    frame.Left(left + 3);
    frame.Top(top + 4);
    box.Top(form().ScaleHeight() - 32);
  });
  show();
  form().Height(form().Height() + 60);
  user().settle();
  EXPECT_EQ(frame.Left(), areas().back().Left + 3);
  EXPECT_EQ(frame.Top(), areas().back().Top + 4);
  EXPECT_EQ(box.Top(), form().ScaleHeight() - 32);
  EXPECT_LE(box.Top() + box.Height(), form().ScaleHeight());
}

TEST_P(Header, OKIsClickedOnlyWhileItIsEnabled) {
  show();
  int clicks = 0;
  const Connection connection = header().OKClick.Connect([&] { ++clicks; });
  EXPECT_TRUE(header().OKEnabled());
  header().PressOK();
  EXPECT_EQ(clicks, 1);
  header().OKEnabled(false);
  EXPECT_FALSE(header().OKEnabled());
  header().PressOK();
  EXPECT_EQ(clicks, 1);
  header().OKEnabled(true);
  header().PressOK();
  EXPECT_EQ(clicks, 2);
}

TEST_P(Header, OKIsEnabledApartFromTheForm) {
  form().Enabled(false);
  EXPECT_TRUE(header().OKEnabled());
}

TEST_P(Header, CancelIsClickedRegardlessOfOK) {
  show();
  int clicks = 0;
  const Connection connection = header().CancelClick.Connect([&] { ++clicks; });
  header().OKEnabled(false);
  header().PressCancel();
  EXPECT_EQ(clicks, 1);
}

KESTREL_ON_ALL_PLATFORMS(Header);

}  // namespace
}  // namespace kestrel::contract
