#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/thumbnailview/ThumbnailViewModel.h"

namespace kestrel::thumbnails::test {

/// A view without a window that records what a platform is asked to do.
class TestView final : public ThumbnailViewModel {
 public:
  using ThumbnailViewModel::ThumbnailViewModel;

  std::string BrowseForFolder(const std::string& /*prompt*/, const std::string& /*title*/,
                              const std::string& /*start*/) override {
    return {};
  }
  const std::string& Name() const override { return name_; }
  std::int32_t Index() const override { return -1; }
  std::int32_t Left() const override { return 0; }
  void Left(std::int32_t /*value*/) override {}
  std::int32_t Top() const override { return 0; }
  void Top(std::int32_t /*value*/) override {}
  std::int32_t Width() const override { return 0; }
  void Width(std::int32_t /*value*/) override {}
  std::int32_t Height() const override { return 0; }
  void Height(std::int32_t /*value*/) override {}
  void Move(std::int32_t /*left*/, std::int32_t /*top*/, std::int32_t /*width*/,
            std::int32_t /*height*/) override {}
  bool Visible() const override { return true; }
  void Visible(bool /*value*/) override {}
  bool Enabled() const override { return true; }
  void Enabled(bool /*value*/) override {}
  void ZOrder() override {}
  WindowHandle hWnd() const override { return 0; }

  std::vector<Rectangle> invalid;
  int scrollChanges = 0;
  bool autoScrolls = false;
  int drags = 0;
  int itemChanges = 0, selectionChanges = 0, focusChanges = 0;

 protected:
  void invalidate(const Rectangle& area) override { invalid.push_back(area); }
  void scrollChanged() override { ++scrollChanges; }
  void autoScroll(bool on) override { autoScrolls = on; }
  void beginDrag() override { ++drags; }
  void itemsChanged() override { ++itemChanges; }
  void selectionChanged() override { ++selectionChanges; }
  void focusItemChanged() override { ++focusChanges; }

 private:
  std::string name_ = "thvBrowse";
};

}  // namespace kestrel::thumbnails::test
