#include "HeadlessThumbnailsUser.h"

#include <map>

#include "platform/headless/controls/ThumbnailView.h"

namespace kestrel::contract {
namespace {

class HeadlessThumbnails final : public ThumbnailsUser {
 public:
  explicit HeadlessThumbnails(headless::Platform& platform)
      : view_(platform.desktop(), nullptr, "thvBrowse", platform.files(), platform.user()) {
    view_.Move(0, 0, 600, 400);
    view_.UserMode(true);
  }

  ThumbnailView& view() override { return view_; }

  void click(std::int32_t index, std::int32_t shift) override { view_.click(index - 1, shift); }
  void doubleClick(std::int32_t index) override { view_.doubleClick(index - 1); }
  void contextClick(std::int32_t index) override { view_.contextClick(index - 1); }
  bool pressKey(std::int32_t keyCode, std::int32_t shift) override {
    using thumbnails::Key;
    static const std::map<std::int32_t, Key> kKeys = {
        {13, Key::kEnter}, {36, Key::kHome}, {39, Key::kRight}, {46, Key::kDelete}, {'A', Key::kSelectAll}};
    return view_.key(kKeys.at(keyCode), shift);
  }

  bool waitFor(const std::function<bool()>& condition) override { return view_.runUntil(condition); }

 private:
  headless::ThumbnailView view_;
};

}  // namespace

std::unique_ptr<ThumbnailsUser> headlessThumbnailsUser(headless::Platform& platform) {
  return std::make_unique<HeadlessThumbnails>(platform);
}

}  // namespace kestrel::contract
