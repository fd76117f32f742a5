#include "HeadlessTreeUser.h"

#include <utility>

#include "platform/headless/controls/PictureBox.h"
#include "platform/headless/controls/TreeView.h"

namespace kestrel::contract {
namespace {

class HeadlessTree final : public TreeUser {
 public:
  explicit HeadlessTree(headless::Platform& platform) : site_(platform.createFolderTreeSite()) {
    site_->Move(0, 0, 240, 400);
  }

  headless::TreeView& tree() override { return Bind<headless::TreeView>(*site_, "tvwFolders"); }
  PictureBox& icon() override { return Bind<PictureBox>(*site_, "picIcon"); }

  void press(const std::string& key, std::int32_t button, std::int32_t shift) override {
    pressed_ = placeOf(key);
    tree().press(button, shift, pressed_.x, pressed_.y);
  }
  void release(std::int32_t button, std::int32_t shift) override {
    tree().release(button, shift, pressed_.x, pressed_.y);
  }
  void doubleClick(const std::string& key) override { tree().doubleClick(key); }
  void clickSign(const std::string& key) override { tree().clickSign(key); }
  void clickCheckBox(const std::string& key) override { tree().clickCheckBox(key); }
  void clickBelowTheNodes(std::int32_t button) override { tree().clickEmptySpace(button); }
  void pressKey(std::int32_t keyCode, std::int32_t shift) override { tree().pressKey(keyCode, shift); }
  void typeLetter(char letter) override { tree().pressKey(letter & ~0x20, 0, letter); }
  Place placeOf(const std::string& key) override {
    const auto [x, y] = tree().placeOf(key);
    return {x, y};
  }
  bool isShown(const std::string& key) override { return tree().isVisible(key); }

 private:
  std::unique_ptr<headless::Site> site_;
  Place pressed_;
};

}  // namespace

std::unique_ptr<TreeUser> headlessTreeUser(headless::Platform& platform) {
  return std::make_unique<HeadlessTree>(platform);
}

}  // namespace kestrel::contract
