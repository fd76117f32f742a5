#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "imaging/contract/ThumbnailView.h"
#include "platform/headless/Window.h"
#include "tests/logic/fakes/FakeThumbnails.h"

namespace kestrel {

/// A thumbnail view that loads and selects what the test says, and records the calls.
class FakeThumbnailView final : public headless::WindowOf<ThumbnailView> {
 public:
  using WindowOf::WindowOf;

  std::string Folder() const override { return folder_; }
  void Folder(const std::string& value) override {
    calls.push_back("Folder " + value);
    folder_ = value;
  }
  void Clear() override {
    calls.emplace_back("Clear");
    thumbnails_.files({});
    selected_.files({});
  }
  std::int32_t View() const override { return view_; }
  void View(std::int32_t value) override {
    if (value == view_) return;
    view_ = value;
    ViewChange(value);
  }
  std::string EmptyText() const override { return emptyText_; }
  void EmptyText(const std::string& value) override { emptyText_ = value; }
  void UserMode(bool value) override { calls.push_back(value ? "UserMode True" : "UserMode False"); }
  void Refresh() override { calls.emplace_back("Refresh"); }
  std::string BrowseForFolder(const std::string& prompt, const std::string& title,
                              const std::string& start) override {
    calls.push_back("Browse " + title + "|" + prompt + "|" + start);
    if (whileBrowsing) whileBrowsing();
    return chosenFolder;
  }
  FakeThumbnails& Thumbnails() override { return thumbnails_; }
  FakeThumbnails& SelectedItems() override { return selected_; }

  /// Loads a folder with these files to the end.
  void load(const std::vector<std::string>& names) {
    bool cancel = false;
    FolderLoadStart(cancel);
    thumbnails_.files(names);
    FolderSearchComplete(thumbnails_.Count());
    for (std::int32_t i = 1; i <= thumbnails_.Count(); ++i) {
      ThumbnailLoaded(thumbnails_.Item(i), 100 * i / thumbnails_.Count(), cancel);
    }
    FolderLoadComplete(false);
  }

  std::vector<std::string> calls;
  std::string chosenFolder;
  std::function<void()> whileBrowsing;

 private:
  std::string folder_;
  std::int32_t view_ = kViewThumbnail;
  std::string emptyText_;
  FakeThumbnails thumbnails_;
  FakeThumbnails selected_;
};

}  // namespace kestrel
