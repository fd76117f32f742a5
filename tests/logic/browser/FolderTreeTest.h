#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "browser/FolderTreeView.h"
#include "browser/modFolderTreeView.h"
#include "imaging/contract/Shell.h"
#include "platform/headless/BagOfProperties.h"
#include "platform/headless/Platform.h"
#include "platform/headless/controls/PictureBox.h"
#include "platform/headless/controls/TreeView.h"
#include "settings/modProcessing.h"

namespace kestrel {

/// A machine with simulated drives, and a folder tree in a container on it. A box that the test did not
/// announce fails the test.
class FolderTreeTest : public testing::Test {
 protected:
  using Keys = std::vector<std::string>;

  virtual headless::PathStyle pathStyle() const { return headless::PathStyle::kBackslash; }
  virtual std::vector<headless::Drive> drives() const {
    return {{'A', kDriveRemovable, "", "", true},
            {'C', kDriveFixed, "System", "", true},
            {'D', kDriveCD, "HOLIDAYS", "", false}};
  }

  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-tree-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    scratch_ = name;
    platform_ = std::make_unique<headless::Platform>(
        headless::Setup{.pathStyle = pathStyle(), .scratch = scratch_, .drives = drives()});
    platform_->user().onComplaint = [](const std::string& text) { ADD_FAILURE() << text; };
    modProcessing::Attach(*platform_);
    modProcessing::Main();
    // The special folders are on a drive of their own, so that the other drives hold what the test makes.
    for (const std::int32_t folder : {kFolderDesktop, kFolderPersonal}) shell().specialFolder(folder, "");
    shell().specialFolder(headless::Shell::kWindowsFolder, "");
    shell().specialFolder(headless::Shell::kSystemFolder, "");
  }

  void TearDown() override {
    control_.reset();
    site_.reset();
    modProcessing::Detach();
    EXPECT_EQ(platform_->user().left(), "") << "still expected by the user";
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  headless::Platform& platform() { return *platform_; }
  headless::Shell& shell() { return platform_->Shell(); }
  const std::string& scratch() const { return scratch_; }

  /// Makes a folder with all folders above it.
  void folder(const std::string& path) { std::filesystem::create_directories(platform_->files().host(path)); }
  void removeFolder(const std::string& path) { std::filesystem::remove_all(platform_->files().host(path)); }
  void specialFolder(std::int32_t which, const std::string& path) {
    folder(path);
    shell().specialFolder(which, path);
  }

  /// The control in its container, before the property stage.
  void create(bool userMode = true) {
    site_ = platform_->createFolderTreeSite(userMode);
    control_ = std::make_unique<FolderTreeView>(*site_);
  }
  void start(bool userMode = true) {
    create(userMode);
    site_->InitProperties();
  }

  headless::Site& site() { return *site_; }
  FolderTreeView& control() { return *control_; }
  headless::TreeView& tree() { return Bind<headless::TreeView>(*site_, "tvwFolders"); }
  headless::PictureBox& icon() { return Bind<headless::PictureBox>(*site_, "picIcon"); }
  TreeNode& node(const std::string& key) { return tree().Nodes().Item(key); }
  bool has(const std::string& key) { return tree().Nodes().Find(key) != nullptr; }
  std::string selectedKey() {
    const TreeNode* const selected = tree().SelectedItem();
    return selected ? selected->Key() : std::string();
  }
  /// The pointers shown since the last call.
  std::vector<std::int32_t> pointers() {
    auto shown = platform_->FormUtility().pointers();
    platform_->FormUtility().forgetPointers();
    return {shown.begin(), shown.end()};
  }

  /// Records the events of the control in the order in which they are raised.
  void record() {
    const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
    const auto plain = [&](Event<>& event, const char* name) {
      keep(event.Connect([this, name] { log_.emplace_back(name); }));
    };
    const auto ofNode = [&](Event<TreeNode&>& event, const char* name) {
      keep(event.Connect([this, name](const TreeNode& node) { log_.push_back(name + (" " + node.Key())); }));
    };
    const auto ofFolder = [&](Event<const std::string&>& event, const char* name) {
      keep(event.Connect([this, name](const std::string& folder) { log_.push_back(name + (" " + folder)); }));
    };
    plain(control_->Click, "Click");
    plain(control_->DblClick, "DblClick");
    plain(control_->MyComputerClick, "MyComputerClick");
    plain(control_->MyComputerDblClick, "MyComputerDblClick");
    plain(control_->MyComputerRightClick, "MyComputerRightClick");
    plain(control_->DesktopClick, "DesktopClick");
    plain(control_->DesktopDblClick, "DesktopDblClick");
    plain(control_->DesktopRightClick, "DesktopRightClick");
    ofNode(control_->Expand, "Expand");
    ofNode(control_->Collapse, "Collapse");
    ofNode(control_->NodeClick, "NodeClick");
    ofNode(control_->NodeCheck, "NodeCheck");
    ofFolder(control_->FolderClick, "FolderClick");
    ofFolder(control_->FolderDblClick, "FolderDblClick");
    ofFolder(control_->FolderRightClick, "FolderRightClick");
  }
  /// As `record`, with the mouse and the keys.
  void recordInput() {
    const auto mouse = [&](Event<std::int32_t, std::int32_t, float, float>& event, const char* name) {
      connections_.push_back(
          event.Connect([this, name](std::int32_t button, std::int32_t shift, float, float) {
            log_.push_back(name + (" " + std::to_string(button)) + " " + std::to_string(shift));
          }));
    };
    const auto key = [&](Event<std::int32_t, std::int32_t>& event, const char* name) {
      connections_.push_back(event.Connect([this, name](std::int32_t code, std::int32_t shift) {
        log_.push_back(name + (" " + std::to_string(code)) + " " + std::to_string(shift));
      }));
    };
    record();
    mouse(control_->MouseDown, "MouseDown");
    mouse(control_->MouseMove, "MouseMove");
    mouse(control_->MouseUp, "MouseUp");
    key(control_->KeyDown, "KeyDown");
    key(control_->KeyUp, "KeyUp");
    connections_.push_back(control_->KeyPress.Connect(
        [this](std::int32_t character) { log_.push_back("KeyPress " + std::to_string(character)); }));
  }
  /// The events since the last call.
  std::vector<std::string> events() { return std::exchange(log_, {}); }

 private:
  std::string scratch_;
  std::unique_ptr<headless::Platform> platform_;
  std::unique_ptr<headless::Site> site_;
  std::unique_ptr<FolderTreeView> control_;
  std::vector<std::string> log_;
  std::vector<Connection> connections_;
};

}  // namespace kestrel
