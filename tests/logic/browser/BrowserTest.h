#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "FakeThumbnailView.h"
#include "RecordingPlatform.h"
#include "browser/ImageBrowserCtl.h"
#include "platform/headless/BagOfProperties.h"
#include "platform/headless/Moorage.h"
#include "platform/headless/Surfaces.h"
#include "platform/headless/controls/SplitPanel.h"
#include "settings/modProcessing.h"

namespace kestrel {

inline constexpr char kNoFolder[] =
    "This location does not support image files. Please select a folder from the list to the left.";

/// A browser in a container on the headless platform with a drive C, with thumbnails that the test loads and
/// operations on files that are only recorded.
///
/// An error report, a box or a dialog that the test did not announce fails the test; so does what it
/// announced and did not come.
class BrowserTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-browser-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    scratch_ = name;
    std::filesystem::create_directories(scratch_ + "/help/BrindleImgPro");
    std::ofstream(scratch_ + "/help/BrindleImgPro/default.html") << "<p>Help";
    headless::Setup setup;
    setup.pathStyle = headless::PathStyle::kBackslash;
    setup.scratch = scratch_;
    setup.helpFolder = scratch_ + "/help";
    platform_ = std::make_unique<RecordingPlatform>(std::move(setup));
    user().onComplaint = [](const std::string& text) { ADD_FAILURE() << text; };
    modProcessing::Attach(*platform_);
    modProcessing::Main();
  }

  void TearDown() override {
    browser_.reset();
    site_.reset();
    modProcessing::Detach();
    EXPECT_EQ(user().left(), "") << "still expected by the user";
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  /// The browser on its site, before the property stage.
  void create(bool userMode = true) {
    headless::Platform& inner = platform_->inner();
    site_ = inner.createSite("ImageBrowserCtl", userMode);
    site_->add(headless::makeBrowserSuite(*site_, inner.surroundings()));
    site_->add(std::make_unique<headless::SplitPanel>(inner.desktop(), site_.get(), "pnlBrowse", -1));
    site_->add(headless::makeFolderTreeSite(inner.desktop(), site_.get(), "ftvBrowse", userMode));
    site_->add(std::make_unique<FakeThumbnailView>(inner.desktop(), site_.get(), "thvBrowse", -1));
    browser_ = std::make_unique<ImageBrowserCtl>(*site_);
    const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
    keep(browser_->PathChange.Connect([this](const std::string& path) { raised("PathChange " + path); }));
    keep(browser_->ExitRequest.Connect([this] { raised("ExitRequest"); }));
    keep(browser_->InvalidPathChange.Connect([this] { raised("InvalidPathChange"); }));
  }

  /// A new browser at run time, 800 by 600, which has not been shown yet.
  void start() {
    create();
    site_->InitProperties();
    site_->Move(0, 0, 800, 600);
    forget();
  }

  IImageBrowserCtl& browser() { return *browser_; }
  /// As its container has it.
  ImageBrowserCtl& control() { return *browser_; }
  RecordingPlatform& platform() { return *platform_; }
  RecordingFileHelpers& files() { return platform_->FileHelpers(); }
  headless::User& user() { return platform_->inner().user(); }
  headless::Site& site() { return *site_; }
  headless::Moorage& suite() { return Bind<headless::Moorage>(*site_, "mrgUI"); }
  headless::SplitPanel& split() { return Bind<headless::SplitPanel>(*site_, "pnlBrowse"); }
  headless::Site& treeSite() { return Bind<headless::Site>(*site_, "ftvBrowse"); }
  FakeThumbnailView& view() { return Bind<FakeThumbnailView>(*site_, "thvBrowse"); }

  std::string panel(const std::string& name) { return suite().StatusPanel(name).Caption(); }
  /// A click that must be accepted.
  void click(const std::string& key) { EXPECT_TRUE(suite().click(key)) << key << " can't be clicked"; }

  /// The view commands that are shown as checked.
  std::string checkedViews() {
    std::string keys;
    for (const char* key : {"btnViewThumbnail", "btnViewFilmstrip", "btnViewSingle"}) {
      if (suite().Commands()(key).Checked()) keys += (keys.empty() ? "" : " ") + std::string(key);
    }
    return keys;
  }

  /// The events so far, with their arguments.
  const std::vector<std::string>& events() const { return events_; }
  void forget() {
    events_.clear();
    view().calls.clear();
  }

  void makeFolder(const std::string& path) {
    std::filesystem::create_directories(platform_->inner().files().host(path));
  }
  void loseHelpBooks() { std::filesystem::remove_all(scratch_ + "/help"); }

  /// Called with each event.
  std::function<void(const std::string&)> onEvent;

 private:
  void raised(const std::string& event) {
    events_.push_back(event);
    if (onEvent) onEvent(event);
  }

  std::string scratch_;
  std::unique_ptr<RecordingPlatform> platform_;
  std::unique_ptr<headless::Site> site_;
  std::unique_ptr<ImageBrowserCtl> browser_;
  std::vector<std::string> events_;
  std::vector<Connection> connections_;
};

}  // namespace kestrel
