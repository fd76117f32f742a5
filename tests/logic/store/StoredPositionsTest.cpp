#include "platform/store/StoredPositions.h"

#include <gtest/gtest.h>

#include <ostream>

#include "platform/store/MemoryStore.h"
#include "tests/logic/fakes/FakeForm.h"

namespace kestrel {

void PrintTo(const Rectangle& r, std::ostream* out) {
  *out << r.Left << "," << r.Top << " " << r.Width << "x" << r.Height;
}

namespace {

using fakes::FakeForm;

class StoredPositions : public testing::Test {
 protected:
  StoredPositions() {
    screens_.screens = {{0, 0, 1920, 1040}, {1920, 0, 1280, 1024}};
    positions_.RegistryKey("Root\\WindowPositions");
  }

  /// The restored position of a window that was closed at `place`.
  Rectangle restored(const Rectangle& place) {
    FakeForm closing("frmImageEditor", place), opening("frmImageEditor", {5, 5, 50, 50});
    positions_.SavePosition(closing, "");
    positions_.LoadPosition(opening, "");
    return opening.place();
  }

  store::MemoryStore store_;
  fakes::FakeScreens screens_;
  store::StoredPositions positions_{store_, screens_};
};

TEST_F(StoredPositions, AreRestoredOnTheirScreen) {
  EXPECT_EQ(restored({100, 200, 800, 600}), (Rectangle{100, 200, 800, 600}));
  EXPECT_EQ(restored({2000, 20, 800, 600}), (Rectangle{2000, 20, 800, 600}));
}

TEST_F(StoredPositions, KeepAWindowWithoutAStoredPosition) {
  FakeForm form("frmImageEditor", {5, 6, 50, 60});
  positions_.LoadPosition(form, "");
  EXPECT_EQ(form.place(), (Rectangle{5, 6, 50, 60}));
  EXPECT_TRUE(store_.isEmpty());
}

TEST_F(StoredPositions, CenterAWindowWithoutAStoredPositionOnRequest) {
  FakeForm form("frmGetThumnail", {5, 6, 400, 300});
  positions_.LoadPosition(form, "GetThumbnail", 2, 0);
  EXPECT_EQ(form.place(), (Rectangle{760, 370, 400, 300}));
  positions_.LoadPosition(form, "GetThumbnail", 2, 1);
  EXPECT_EQ(form.place(), (Rectangle{2360, 362, 400, 300}));
}

TEST_F(StoredPositions, AreMovedOntoAScreenThatExists) {
  EXPECT_EQ(restored({-900, -700, 800, 600}), (Rectangle{0, 0, 800, 600}));
  EXPECT_EQ(restored({1500, 900, 800, 600}), (Rectangle{1120, 440, 800, 600}));
  const Rectangle onSecond{2300, 100, 800, 600};
  EXPECT_EQ(restored(onSecond), onSecond);
  screens_.screens.pop_back();
  EXPECT_EQ(restored(onSecond), (Rectangle{1120, 100, 800, 600}));
}

TEST_F(StoredPositions, MoveToTheNearestScreenIfOffScreen) {
  EXPECT_EQ(restored({5000, 100, 800, 600}), (Rectangle{2400, 100, 800, 600}));
}

TEST_F(StoredPositions, AreShrunkToTheScreen) {
  EXPECT_EQ(restored({-10, -10, 3000, 2000}), (Rectangle{0, 0, 1920, 1040}));
}

TEST_F(StoredPositions, KeepTheFrameAndItsTitleBarOnTheScreen) {
  screens_.frame = {4, 30, 4, 5};
  EXPECT_EQ(restored({100, 200, 800, 600}), (Rectangle{100, 200, 800, 600})) << "the client area";
  EXPECT_EQ(restored({4, 30, 800, 600}), (Rectangle{4, 30, 800, 600}));
  EXPECT_EQ(restored({0, 0, 800, 600}), (Rectangle{4, 30, 800, 600}));
  EXPECT_EQ(restored({1500, 900, 800, 600}), (Rectangle{1116, 435, 800, 600}));
  EXPECT_EQ(restored({0, 0, 3000, 2000}), (Rectangle{4, 30, 1912, 1005}));
  screens_.screens.pop_back();
  EXPECT_EQ(restored({2300, -100, 800, 600}), (Rectangle{1116, 30, 800, 600})) << "its screen is gone";
}

TEST_F(StoredPositions, DoNotMoveAWindowThatIsClosedAndOpenedTenTimes) {
  screens_.frame = {4, 30, 4, 5};
  Rectangle place{100, 200, 800, 600};
  for (int round = 0; round < 10; ++round) place = restored(place);
  EXPECT_EQ(place, (Rectangle{100, 200, 800, 600}));
}

TEST_F(StoredPositions, AreKeptPerKeyAndName) {
  FakeForm editor("frmImageEditor", {1, 2, 300, 400}), browser("frmImageBrowser", {5, 6, 700, 800});
  positions_.SavePosition(editor, "");
  positions_.SavePosition(browser, "");
  positions_.SavePosition(editor, "Second");
  FakeForm form("frmImageEditor");
  positions_.LoadPosition(form, "");
  EXPECT_EQ(form.place(), (Rectangle{1, 2, 300, 400}));
  EXPECT_TRUE(store_.hasKey(HKEY_CURRENT_USER, "Root\\WindowPositions\\frmImageEditor"));
  EXPECT_TRUE(store_.hasKey(HKEY_CURRENT_USER, "Root\\WindowPositions\\Second"));
}

TEST_F(StoredPositions, AreReadUnderTheCurrentKey) {
  FakeForm first("frmImageEditor", {1, 2, 300, 400});
  positions_.SavePosition(first, "");
  positions_.RegistryKey("Software\\Brindlewick\\ImageProcessing2");
  FakeForm second("frmImageEditor", {9, 9, 90, 90});
  positions_.LoadPosition(second, "");
  EXPECT_EQ(second.place(), (Rectangle{9, 9, 90, 90})) << "the first editor's is not under this key";
}

TEST_F(StoredPositions, AreNeitherStoredNorFoundWithoutAKey) {
  positions_.RegistryKey("");
  EXPECT_EQ(restored({100, 200, 800, 600}), (Rectangle{5, 5, 50, 50}));
  EXPECT_TRUE(store_.isEmpty());
}

TEST_F(StoredPositions, OfAMaximizedWindowKeepTheNormalPosition) {
  FakeForm form("frmImageEditor", {100, 200, 800, 600});
  positions_.SavePosition(form, "");
  form.Move(0, 0, 1920, 1040);
  form.WindowState(kWindowMaximized);
  positions_.SavePosition(form, "");
  FakeForm opening("frmImageEditor");
  positions_.LoadPosition(opening, "");
  EXPECT_EQ(opening.place(), (Rectangle{100, 200, 800, 600}));
  EXPECT_EQ(opening.WindowState(), kWindowMaximized);
}

TEST_F(StoredPositions, OfAMinimizedWindowAreUnchanged) {
  FakeForm form("frmImageEditor", {100, 200, 800, 600});
  positions_.SavePosition(form, "");
  form.Move(-32000, -32000, 160, 30);
  form.WindowState(kWindowMinimized);
  positions_.SavePosition(form, "");
  FakeForm opening("frmImageEditor");
  positions_.LoadPosition(opening, "");
  EXPECT_EQ(opening.place(), (Rectangle{100, 200, 800, 600}));
}

TEST_F(StoredPositions, ThatAreInvalidCountAsNone) {
  const std::string key = "Root\\WindowPositions\\frmImageEditor";
  for (const auto& [name, value] : {std::pair{"Left", 2'000'000'000}, {"Width", 0}, {"Height", -5}}) {
    FakeForm form("frmImageEditor", {100, 200, 800, 600});
    positions_.SavePosition(form, "");
    store_.WriteValue(HKEY_CURRENT_USER, key, name, value, kStoreNumber);
    FakeForm opening("frmImageEditor", {5, 5, 50, 50});
    positions_.LoadPosition(opening, "");
    EXPECT_EQ(opening.place(), (Rectangle{5, 5, 50, 50})) << name;
  }
  store_.WriteValue(HKEY_CURRENT_USER, key, "WindowState", 77, kStoreNumber);
  store_.WriteValue(HKEY_CURRENT_USER, key, "Top", "far up", kStoreString);
  FakeForm opening("frmImageEditor", {5, 5, 50, 50});
  positions_.LoadPosition(opening, "");
  EXPECT_EQ(opening.place(), (Rectangle{5, 5, 50, 50}));
  EXPECT_EQ(opening.WindowState(), kWindowNormal);
}

}  // namespace
}  // namespace kestrel
