#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "ContractPlatform.h"
#include "HeadlessThumbnailsUser.h"
#include "HeadlessTreeUser.h"
#include "platform/headless/FileAnswers.h"
#include "platform/headless/Form.h"
#include "platform/headless/Platform.h"
#include "platform/headless/controls/ColorPicker.h"
#include "platform/headless/controls/SplitPanel.h"

namespace kestrel::headless {
/// The forms of this suite; generated.
const std::vector<FormDescription>& contractForms();
}  // namespace kestrel::headless

namespace kestrel::contract {
namespace {

/// A temporary folder. The destructor removes it.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-contract-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    path_ = name;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

class HeadlessPlatform final : public ContractPlatform {
 public:
  explicit HeadlessPlatform(headless::PathStyle pathStyle)
      : platform_({.pathStyle = pathStyle, .scratch = scratch_.path()}) {
    platform_.user().onComplaint = [](const std::string& text) { throw std::runtime_error(text); };
    platform_.desktop().frame = {4, 30, 4, 5};
    std::filesystem::create_directories(host(folder()));
  }

  kestrel::Platform& platform() override { return platform_; }

  std::unique_ptr<Form> controls() override {
    return platform_.createForm(headless::contractForms().front());
  }
  std::unique_ptr<Form> header() override { return platform_.createForm(headless::contractForms().back()); }

  Site& editorSite() override {
    site_.reset();
    site_ = platform_.createEditorSite();
    site_->Move(0, 0, 800, 600);
    return *site_;
  }

  std::unique_ptr<TreeUser> treeUser() override { return headlessTreeUser(platform_); }
  std::unique_ptr<ThumbnailsUser> thumbnailsUser() override { return headlessThumbnailsUser(platform_); }

  std::string folder() override { return platform_.files().scratch(); }
  std::string host(const std::string& path) override { return platform_.files().host(path); }

  void willAnswer(std::int32_t answer) override { platform_.user().answers(answer); }
  void willDecide(Clash choice, bool forAll) override {
    const std::int32_t answer = choice == Clash::kReplace    ? kAnswerYes
                                : choice == Clash::kMerge    ? kAnswerYes
                                : choice == Clash::kSkip     ? kAnswerNo
                                : choice == Clash::kKeepBoth ? headless::kAnswerKeepBoth
                                                             : kAnswerCancel;
    platform_.user().answers(answer + (forAll ? headless::kAnswerForAll : 0));
  }
  void willType(const std::string& text) override { platform_.user().types(text); }
  void willCancelInput() override { platform_.user().cancelsInput(); }
  void willUse(std::function<void(Form&)> doing) override {
    platform_.user().uses("frmControls", std::move(doing));
  }
  void willChoose(const std::string& filename) override { platform_.user().chooses(filename); }
  void willCancelFileDialog() override { platform_.user().cancelsFileDialog(); }
  void willChooseFolder(const std::string& folder) override { platform_.user().choosesFolder(folder); }
  void willCancelFolderDialog() override { platform_.user().cancelsFolderDialog(); }

  void pressCloseBox(Form& form) override { dynamic_cast<headless::Form&>(form).pressCloseBox(); }
  bool clickCommand(Moorage& suite, const std::string& key) override { return own(suite).click(key); }
  void typeComboText(Moorage& suite, const std::string& key, const std::string& text) override {
    own(suite).typeComboText(key, text);
  }
  bool pressHotKey(Moorage& suite, std::int32_t shift, std::int32_t keyCode) override {
    return own(suite).pressHotKey(shift, keyCode);
  }
  void pressPointer(ImageView& view, std::int32_t button, std::int32_t shift, Point at) override {
    own(view).press(button, shift, at);
  }
  void movePointer(ImageView& view, std::int32_t button, std::int32_t shift, Point to) override {
    own(view).move(button, shift, to);
  }
  void releasePointer(ImageView& view, std::int32_t button, std::int32_t shift, Point at) override {
    own(view).release(button, shift, at);
  }
  void turnWheel(ImageView& view, std::int32_t notches, std::int32_t shift, Point at) override {
    own(view).turnWheel(notches, shift, at);
  }
  void restWithPointer(ImageView& view) override {
    const Point corner = own(view).origin();
    platform_.pointerRestsAt({corner.X + 10, corner.Y + 10});
  }
  void pickColor(ColorPicker& picker, OLE_COLOR color) override { own(picker).pick(color); }
  void pickExtra(ColorPicker& picker) override { own(picker).pressEnhanced(); }
  void leaveWithPointer(ImageView& view) override {
    const Point corner = own(view).origin();
    platform_.pointerRestsAt({corner.X - 10, corner.Y - 10});
  }
  void dragDivider(SplitPanel& panel, std::int32_t position) override {
    dynamic_cast<headless::SplitPanel&>(panel).drag(position);
  }
  void pressNoticeButton(ImageView& view) override { own(view).pressNoticeButton(); }
  void closeNotice(ImageView& view) override { own(view).closeNotice(); }
  std::string noticeText(ImageView& view) override { return own(view).Notice(); }
  std::string noticeButton(ImageView& view) override { return own(view).noticeButton(); }
  OLE_COLOR faceColor(Form& form, Point at) override {
    const engine::Bitmap& face = dynamic_cast<headless::Form&>(form).face();
    const engine::Pixel pixel = face.at(at.X, at.Y);
    return pixel.a == 0 ? kNoColor : pixel.r | (pixel.g << 8) | (pixel.b << 16);
  }
  void copyText(const std::string& /*text*/) override { platform_.Clipboard().holdNoPicture(); }
  void settle() override {}

 private:
  static headless::Moorage& own(Moorage& suite) { return dynamic_cast<headless::Moorage&>(suite); }
  static headless::ColorPicker& own(ColorPicker& picker) {
    auto& own = dynamic_cast<headless::ColorPicker&>(picker);
    EXPECT_TRUE(own.isOpen());
    return own;
  }
  static headless::ImageView& own(ImageView& view) { return dynamic_cast<headless::ImageView&>(view); }

  ScratchFolder scratch_;
  headless::Platform platform_;
  std::unique_ptr<headless::Site> site_;
};

}  // namespace

std::vector<ContractPlatformMaker> contractPlatforms() {
  return {
      {"Headless", [] { return std::make_unique<HeadlessPlatform>(headless::PathStyle::kSlash); }},
      {"HeadlessWithDrives",
       [] { return std::make_unique<HeadlessPlatform>(headless::PathStyle::kBackslash); }},
  };
}

}  // namespace kestrel::contract
