#pragma once

#include <functional>
#include <memory>
#include <string>

#include "../FileSystem.h"
#include "../PostedCalls.h"
#include "../User.h"
#include "../Window.h"
#include "platform/thumbnailview/ThumbnailViewModel.h"

namespace kestrel::headless {

/// The thumbnail view without a window. It reads the platform's file system on worker threads; what they find
/// arrives while a test waits in `settle` or `runUntil`.
class ThumbnailView final : public WindowOf<thumbnails::ThumbnailViewModel> {
 public:
  ThumbnailView(Desktop& desktop, Window* parent, std::string name, const FileSystem& files, User& user);

  std::string BrowseForFolder(const std::string& prompt, const std::string& title,
                              const std::string& start) override;

  // The scripted user.
  /// Waits until the folder is loaded and everything visible is shown. False if a minute passes without
  /// progress.
  bool settle();
  /// Waits until the condition holds. False if a minute passes without progress.
  bool runUntil(const std::function<bool()>& done);
  /// Clicks into the middle of an item, counted from 0, which must be visible.
  void click(std::int32_t item, std::int32_t modifiers = 0);
  void doubleClick(std::int32_t item);
  using WindowOf::contextClick;
  /// With the right button. What its event opens must have been scripted.
  void contextClick(std::int32_t item);
  /// Moves the view to another screen: device pixels per logical pixel.
  void scale(double value);

  /// How often the selected items were dragged out.
  int drags() const { return drags_; }

 protected:
  void resized() override;
  void invalidate(const Rectangle& /*area*/) override {}
  void scrollChanged() override {}
  void autoScroll(bool /*on*/) override {}
  void beginDrag() override { ++drags_; }

 private:
  ThumbnailView(Desktop& desktop, Window* parent, std::string name, const FileSystem& files, User& user,
                const std::shared_ptr<PostedCalls>& calls);

  Point middleOf(std::int32_t item) const;

  User& user_;
  std::shared_ptr<PostedCalls> calls_;
  thumbnails::Metrics metrics_;
  int drags_ = 0;
};

}  // namespace kestrel::headless
