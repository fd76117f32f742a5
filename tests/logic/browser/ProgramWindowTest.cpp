#include <gmock/gmock.h>

#include "BrowserTest.h"
#include "apps/kestrel-browser/window/BrowserWindow.h"

namespace kestrel {
namespace {

using testing::ElementsAre;

/// The window that the program opens.
class ProgramWindow : public BrowserTest {
 protected:
  void SetUp() override {
    BrowserTest::SetUp();
    makeFolder("C:\\Photos\\2001");
    changes_ = window_
                   .emplace(
                       "Images", [] {}, [](const std::string&) {})
                   .browser()
                   .PathChange.Connect([this](const std::string& path) { paths_.push_back(path); });
  }
  void TearDown() override {
    changes_.Disconnect();
    window_.reset();
    BrowserTest::TearDown();
  }

  std::optional<app::BrowserWindow> window_;
  Connection changes_;
  std::vector<std::string> paths_;
};

TEST_F(ProgramWindow, AnnouncesTheFolderThatItOpensOnce) {
  window_->show("C:\\Photos\\2001");
  EXPECT_THAT(paths_, ElementsAre("C:\\Photos\\2001\\"));
}

TEST_F(ProgramWindow, AnnouncesTheFolderThatTheTreeStartsWithOnce) {
  window_->show("C:\\");
  EXPECT_THAT(paths_, ElementsAre("C:\\"));
}

}  // namespace
}  // namespace kestrel
