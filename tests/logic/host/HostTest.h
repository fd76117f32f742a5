#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/RuntimeError.h"
#include "host/ImageProcessing.h"
#include "imaging/contract/Document.h"
#include "imaging/contract/Draw.h"
#include "imaging/contract/Image.h"
#include "imaging/contract/Writer.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/FormHeader.h"
#include "platform/headless/Form.h"
#include "platform/headless/ImageView.h"
#include "platform/headless/Moorage.h"
#include "platform/headless/Platform.h"
#include "settings/modProcessing.h"

namespace kestrel {

/// The key of the positions of the editor's window.
inline constexpr char kEditorPosition[] =
    "Software\\Brindlewick\\Common\\ImageProcessing\\WindowPositions\\frmImageEditor";

/// A host on the headless platform with a drive C, and pictures in C:\a. A box or a dialog that the test did
/// not announce fails the test; so does what it announced and did not come.
class HostTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-host-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    scratch_ = name;
    headless::Setup setup;
    setup.pathStyle = headless::PathStyle::kBackslash;
    setup.scratch = scratch_;
    platform_ = std::make_unique<headless::Platform>(std::move(setup));
    user().onComplaint = [](const std::string& text) { ADD_FAILURE() << text; };
    std::filesystem::create_directories(platform_->files().host("C:\\a"));
    modProcessing::Attach(*platform_);
    modProcessing::Main();
  }

  void TearDown() override {
    connections_.clear();
    modProcessing::Detach();
    EXPECT_EQ(user().left(), "") << "still expected by the user";
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  headless::Platform& platform() { return *platform_; }
  headless::User& user() { return platform_->user(); }
  bool exists(const std::string& file) { return platform_->files().exists(file); }
  Variant storedPosition(const char* name) {
    return platform_->RegistryStore().ReadValue(HKEY_CURRENT_USER, kEditorPosition, name);
  }

  /// Writes a picture of 40 by 30 without symmetry.
  std::string makePicture(const std::string& file, std::int32_t format) {
    const auto picture = platform_->CreateImgX();
    const Colour background(0x00336699, 150);
    picture->Document().NewImage(40, 30, &background);
    picture->Draw().Color() = Colour(0x0000CC11);
    picture->Draw().FillMode(kFillSolid);
    picture->Draw().Rectangle({3, 2}, {17, 9});
    picture->Writer().ToFile(file, format);
    return file;
  }
  std::string png() { return makePicture("C:\\a\\b.png", 2); }

  /// A picture with unsaved changes.
  static void change(ImageProcessing& processing) { processing.FlipHorizontally(); }

  /// The window of a host that was made and initialized by it.
  static headless::Form& formOf(const ImageProcessing& processing) {
    const headless::Window* window =
        &dynamic_cast<const headless::Window&>(processing.Control().ImageControl());
    while (window->parent()) window = window->parent();
    return const_cast<headless::Form&>(dynamic_cast<const headless::Form&>(*window));
  }
  static headless::Moorage& suiteOf(const ImageProcessing& processing) {
    return Bind<headless::Moorage>(Bind<Site>(formOf(processing), "Processing"), "mrgUI");
  }

  /// Presses OK (0) or Cancel (1) of a dialog; that of thumbnails has them in its header.
  static void pressButton(Form& form, std::int32_t button) {
    if (form.Name() != "frmGetThumnail") return Bind<CommandButton>(form, "cmdAction", button).Press();
    auto& header = Bind<FormHeader>(form, "FormHeader");
    button == 0 ? header.PressOK() : header.PressCancel();
  }

  template <typename... Args, typename Handler>
  void on(Event<Args...>& event, Handler handler) {
    connections_.push_back(event.Connect(std::move(handler)));
  }
  /// Records the five events by name, with the file names.
  void record(ImageProcessing& processing) {
    on(processing.ImageOpen, [this](const std::string& name) { log_.push_back("ImageOpen " + name); });
    on(processing.ImageSave, [this](const std::string& name) { log_.push_back("ImageSave " + name); });
    on(processing.RequestOpenFilename,
       [this](std::string& name, bool&) { log_.push_back("RequestOpenFilename " + name); });
    on(processing.RequestSaveFilename,
       [this](std::string& name, bool&) { log_.push_back("RequestSaveFilename " + name); });
    on(processing.WindowClosed, [this] { log_.push_back("WindowClosed"); });
  }

  /// The number of the error that a call raises, 0 for none.
  template <typename Call>
  static std::int32_t errorOf(Call call) {
    try {
      call();
      return 0;
    } catch (const RuntimeError& error) {
      return error.Number();
    }
  }

  std::vector<std::string> log_;
  std::vector<Connection> connections_;

 private:
  std::string scratch_;
  std::unique_ptr<headless::Platform> platform_;
};

}  // namespace kestrel
