#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "browser/ImageBrowserCtl.h"
#include "editor/ImageProcessingCtl.h"
#include "host/dispatch/Convert.h"
#include "host/dispatch/Errors.h"
#include "host/dispatch/Invoke.h"
#include "host/dispatch/Registry.h"
#include "imaging/contract/Document.h"
#include "imaging/contract/Writer.h"
#include "platform/headless/ImageView.h"
#include "platform/headless/Moorage.h"
#include "platform/headless/Platform.h"
#include "settings/modProcessing.h"

namespace kestrel::dispatch {

/// A late-bound host on the headless platform. Boxes, dialogs and reports that a test did not announce fail
/// it, unless it ignores them.
class HostFixture : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-dispatch-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    scratch_ = name;
    headless::Setup setup;
    setup.scratch = scratch_;
    platform_ = std::make_unique<headless::Platform>(std::move(setup));
    platform_->user().onComplaint = [](const std::string& text) { ADD_FAILURE() << text; };
    std::filesystem::create_directories(platform_->files().host(platform_->files().scratch()));
    modProcessing::Attach(*platform_);
    modProcessing::Main();
  }

  void TearDown() override {
    connections_.clear();
    endEditor();
    endBrowser();
    modProcessing::Detach();
    EXPECT_EQ(platform_->user().left(), "") << "still expected by the user";
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  headless::Platform& platform() { return *platform_; }
  void ignoreComplaints() {
    platform_->user().onComplaint = [](const std::string&) {};
  }

  /// The automation class, started.
  static Reference::Pointer started() {
    auto processing = Create("ImageProcessing");
    Call(*processing, "Initialize");
    return processing;
  }

  /// An editor that its owner embeds, started; `endEditor` is the owner's end.
  Reference::Pointer embedded() {
    site_ = platform_->createEditorSite();
    editor_ = std::make_unique<ImageProcessingCtl>(*site_);
    site_->InitProperties();
    site_->Move(0, 0, 800, 600);
    editor_->Initialize();
    token_ = std::make_shared<char>();
    IImageProcessingCtl& control = *editor_;
    return Reference::Watch(Describe<IImageProcessingCtl>(), &control, token_);
  }
  void endEditor() {
    token_.reset();
    editor_.reset();
    site_.reset();
  }
  IImageProcessingCtl& editor() { return *editor_; }
  headless::Moorage& suite() { return Bind<headless::Moorage>(*site_, "mrgUI"); }
  headless::ImageView& view() { return Bind<headless::ImageView>(*site_, "igxImage"); }
  /// The docking suite of the embedded editor, which the control itself does not hand out.
  Reference::Pointer suiteReference() {
    Moorage& moorage = suite();
    return Reference::Watch(Describe<Moorage>(), &moorage, token_);
  }

  /// A browser that its owner embeds, at run time; `endBrowser` is the owner's end.
  Reference::Pointer browsing() {
    browserSite_ = platform_->createBrowserSite();
    browser_ = std::make_unique<ImageBrowserCtl>(*browserSite_);
    browserSite_->InitProperties();
    browserSite_->Move(0, 0, 800, 600);
    browserToken_ = std::make_shared<char>();
    IImageBrowserCtl& control = *browser_;
    return Reference::Watch(Describe<IImageBrowserCtl>(), &control, browserToken_);
  }
  void endBrowser() {
    browserToken_.reset();
    browser_.reset();
    browserSite_.reset();
  }

  /// Writes a picture of 40 by 30.
  std::string png(const std::string& name = "a.png") {
    const auto picture = platform_->CreateImgX();
    const Colour background(0x00336699);
    picture->Document().NewImage(40, 30, &background);
    const std::string file = platform_->files().scratch() + platform_->files().separator() + name;
    picture->Writer().ToFile(file, 2);
    return file;
  }

  void on(const Reference& source, const std::string& event, Handler handler) {
    connections_.push_back(Connect(source, event, std::move(handler)));
  }

  /// "91 Object variable not set."; empty if nothing was raised.
  static std::string raised(const std::function<void()>& act) {
    try {
      act();
    } catch (const RuntimeError& error) {
      return std::to_string(error.Number()) + " " + error.Description();
    }
    return {};
  }
  /// A property of an object, and a property of that.
  static Variant get(const Variant& object, const std::string& name) {
    return Get(ReferenceIn(object), name);
  }
  static std::string raisedByGet(const Variant& object, const std::string& name) {
    return raised([&] { Get(ReferenceIn(object), name); });
  }

  std::vector<Connection> connections_;

 private:
  std::string scratch_;
  std::unique_ptr<headless::Platform> platform_;
  std::unique_ptr<headless::Site> site_;
  std::unique_ptr<ImageProcessingCtl> editor_;
  std::shared_ptr<char> token_;
  std::unique_ptr<headless::Site> browserSite_;
  std::unique_ptr<ImageBrowserCtl> browser_;
  std::shared_ptr<char> browserToken_;
};

}  // namespace kestrel::dispatch
