#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "RecordingView.h"
#include "editor/ImageProcessingCtl.h"
#include "platform/headless/BagOfProperties.h"
#include "platform/headless/Platform.h"
#include "settings/modProcessing.h"

namespace kestrel {

using headless::PathStyle;

/// An editor in a container on the headless platform, once for each path separator.
///
/// A report, box or dialog that the test did not announce fails the test, and so does an announced one that
/// is missing.
class EditorTest : public testing::TestWithParam<PathStyle> {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-editor-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    scratch_ = name;
    const std::string book = scratch_ + "/help/BrindleImgPro";
    std::filesystem::create_directories(book);
    std::ofstream(book + "/default.html") << "<p>Help";
    makePlatform();
  }

  void TearDown() override {
    editor_.reset();
    site_.reset();
    modProcessing::Detach();
    EXPECT_EQ(platform_->user().left(), "") << "still expected by the user";
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  /// The editor on its site, before the property stage.
  void create(bool userMode = true) {
    site_ = platform_->createSite("ImageProcessingCtl", userMode);
    site_->add(makeView());
    site_->add(headless::makeEditorSuite(*site_, platform_->surroundings()));
    editor_ = std::make_unique<ImageProcessingCtl>(*site_);
    view_ = &Bind<RecordingView>(*site_, "igxImage");
    suite_ = &Bind<headless::Moorage>(*site_, "mrgUI");
  }

  /// A new editor, at run time, completely started and 800 by 600.
  void start() {
    create();
    site_->InitProperties();
    site_->Move(0, 0, 800, 600);
    editor_->Initialize();
    log_.clear();
  }

  /// As `start`, and a picture of 40 by 30 pixels is open.
  std::string startWithPicture(const std::string& name = "open.png", std::int32_t format = 2) {
    start();
    const std::string file = makePicture(name, format);
    EXPECT_TRUE(editor_->OpenImage(file));
    log_.clear();
    platform_->FormUtility().forgetPointers();
    return file;
  }

  /// The view of an editor that is being created.
  virtual std::unique_ptr<RecordingView> makeView() {
    return std::make_unique<RecordingView>(log_, platform_->desktop(), site_.get(), "igxImage",
                                           platform_->Clipboard(), platform_->files());
  }

  void endEditor() {
    editor_.reset();
    site_.reset();
  }

  ImageProcessingCtl& editor() { return *editor_; }
  headless::Platform& platform() { return *platform_; }
  headless::Site& site() { return *site_; }
  headless::User& user() { return platform_->user(); }
  RecordingView& view() { return *view_; }
  headless::Moorage& suite() { return *suite_; }
  Options& options() { return *modProcessing::GetOptions(); }
  Log& log() { return log_; }

  Command& command(const std::string& key) { return suite().Commands()(key); }
  std::string panel(const std::string& name) { return suite().StatusPanel(name).Caption(); }
  /// A click that must be accepted.
  void click(const std::string& key) { EXPECT_TRUE(suite().click(key)) << key << " can't be clicked"; }
  /// Dispatches a command without a click.
  void dispatch(const std::string& key) { suite().CommandClick(command(key)); }

  std::string path(const std::string& name) {
    return platform_->files().scratch() + platform_->files().separator() + name;
  }
  bool exists(const std::string& file) { return platform_->files().exists(file); }
  std::string contents(const std::string& file) {
    std::ifstream stream(platform_->files().host(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void write(const std::string& file, const std::string& text) {
    std::ofstream(platform_->files().host(file), std::ios::binary) << text;
  }
  void loseHelpBooks() { std::filesystem::remove_all(scratch_ + "/help"); }
  std::string makePicture(const std::string& name, std::int32_t format, std::int32_t width = 40,
                          std::int32_t height = 30, OLE_COLOR color = 0x00336699) {
    const auto picture = platform_->CreateImgX();
    const Colour background(color);
    picture->Document().NewImage(width, height, &background);
    picture->Writer().ToFile(path(name), format);
    return path(name);
  }
  /// Changes the open picture, so that there is something to save.
  void change() {
    view().ImgX()->Effects().Flip(0, "Flip");
    log_.clear();
  }

  template <typename... Args>
  void note(Event<Args...>& event, std::function<void(Args...)> handler) {
    connections_.push_back(event.Connect(std::move(handler)));
  }

  std::vector<Connection> connections_;

 private:
  void makePlatform() {
    headless::Setup setup;
    setup.pathStyle = GetParam();
    setup.scratch = scratch_;
    setup.helpFolder = scratch_ + "/help";
    platform_ = std::make_unique<headless::Platform>(std::move(setup));
    platform_->user().onComplaint = [](const std::string& text) { ADD_FAILURE() << text; };
    std::filesystem::create_directories(platform_->files().host(platform_->files().scratch()));
    modProcessing::Attach(*platform_);
    modProcessing::Main();
  }

  std::string scratch_;
  Log log_;
  std::unique_ptr<headless::Platform> platform_;
  std::unique_ptr<headless::Site> site_;
  std::unique_ptr<ImageProcessingCtl> editor_;
  RecordingView* view_ = nullptr;
  headless::Moorage* suite_ = nullptr;
};

/// A host's sink that records its calls in the log and runs a hook of the test.
class RecordingSink final : public IImageEvents {
 public:
  explicit RecordingSink(Log& log) : log_(log) {}

  void RequestSaveFilename(std::string& Filename, bool& CancelDefault) override {
    log_.add("sink RequestSaveFilename \"" + Filename + "\" " + boolean(CancelDefault));
    if (onRequest) onRequest(Filename, CancelDefault);
  }
  void RequestOpenFilename(std::string& Filename, bool& CancelDefault) override {
    log_.add("sink RequestOpenFilename \"" + Filename + "\" " + boolean(CancelDefault));
    if (onRequest) onRequest(Filename, CancelDefault);
  }
  void ImageSave(const std::string& Filename) override { log_.add("sink ImageSave " + Filename); }
  void ImageOpen(const std::string& Filename) override { log_.add("sink ImageOpen " + Filename); }

  std::function<void(std::string&, bool&)> onRequest;

 private:
  Log& log_;
};

inline std::string nameOfPathStyle(const testing::TestParamInfo<PathStyle>& info) {
  return info.param == PathStyle::kSlash ? "Slash" : "Backslash";
}

}  // namespace kestrel

/// Runs the tests of a fixture, which derives from EditorTest, with both path separators.
#define KESTREL_WITH_BOTH_PATHS(Fixture)                                                                \
  INSTANTIATE_TEST_SUITE_P(Paths, Fixture,                                                              \
                           testing::Values(kestrel::PathStyle::kSlash, kestrel::PathStyle::kBackslash), \
                           kestrel::nameOfPathStyle)
