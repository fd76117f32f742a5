#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "FakeAccess.h"
#include "FakeStore.h"
#include "PostedCalls.h"
#include "TestView.h"
#include "platform/thumbnailview/Workers.h"

namespace kestrel::thumbnails::test {

/// A view, 600 by 400 device pixels, on a folder in memory. At that size the grid has 4 columns, and rows at
/// 8, 178 and 348: cells are 140 by 162 with 8 pixels around them.
class ViewTest : public testing::Test {
 protected:
  ViewTest() { make(); }
  ~ViewTest() override {
    access_->release();
    view_.reset();
  }

  void make() {
    Services services;
    services.post = calls_.post();
    services.store = store_;
    services.workers = workers_;
    services.access = access_;
    services.now = [this] { return now_; };
    services.memory = memory_;
    view_ = std::make_unique<TestView>(std::move(services));
    view_->layOut({600, 400}, metrics_);
    record();
  }

  /// Makes the view anew, with so many worker threads: one more than are held up can still read the folder.
  void makeWithThreads(int count) {
    view_.reset();
    workers_ = std::make_shared<Workers>(count);
    make();
  }

  /// Pictures "1.jpg" to "N.jpg".
  void fill(int count) {
    for (int i = 1; i <= count; ++i) access_->put(std::to_string(i) + ".jpg");
  }

  void open(const std::string& folder = "/pictures") {
    view().Folder(folder);
    settle();
  }
  void settle() {
    ASSERT_TRUE(runUntil([this] { return view().settled(); })) << "The view does not come to rest.";
  }
  bool runUntil(const std::function<bool()>& done) { return calls_.runUntil(done); }

  TestView& view() { return *view_; }

  std::vector<std::string> names() {
    std::vector<std::string> result;
    for (std::int32_t i = 1; i <= view().Thumbnails().Count(); ++i) {
      result.push_back(view().Thumbnails().Item(i).Filename());
    }
    return result;
  }
  /// The numbers of the selected items, from 0.
  std::vector<std::int32_t> selected() {
    std::vector<std::int32_t> result;
    for (std::int32_t i = 1; i <= view().SelectedItems().Count(); ++i) {
      result.push_back(view().SelectedItems().Item(i).Index() - 1);
    }
    return result;
  }
  Point middleOf(std::int32_t item) {
    const Rectangle cell = view().placeOf(item).cell;
    return {cell.Left + cell.Width / 2, cell.Top + cell.Height / 2};
  }
  void click(std::int32_t item, std::int32_t modifiers = 0) {
    view().pointerDown(kLeftButton, modifiers, middleOf(item));
    view().pointerUp(kLeftButton, modifiers, middleOf(item));
  }

  /// Appends the events to `events_`, in words.
  void record() {
    const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
    TestView& v = view();
    keep(v.FolderLoadStart.Connect([this](bool&) { events_.push_back("start"); }));
    keep(v.FolderSearchComplete.Connect(
        [this](std::int32_t count) { events_.push_back("found " + std::to_string(count)); }));
    keep(v.ThumbnailLoaded.Connect([this](Thumbnail& item, std::int32_t percent, bool&) {
      events_.push_back("loaded " + std::to_string(item.Index()) + " " + std::to_string(percent) + "%");
    }));
    keep(v.FolderLoadComplete.Connect(
        [this](bool canceled) { events_.push_back(canceled ? "canceled" : "complete"); }));
    keep(v.RecalculatingThumbnailsStart.Connect([this](bool&) { events_.push_back("recalculating"); }));
    keep(v.RecalculatedThumbnail.Connect(
        [this](Thumbnail& item) { events_.push_back("recalculated " + std::to_string(item.Index())); }));
    keep(v.RecalculatingThumbnailsComplete.Connect([this] { events_.push_back("recalculation complete"); }));
    keep(v.ThumbnailContextClick.Connect(
        [this](Thumbnail& item) { events_.push_back("context " + std::to_string(item.Index())); }));
    keep(v.ThumbnailDblClick.Connect(
        [this](Thumbnail& item) { events_.push_back("double click " + std::to_string(item.Index())); }));
    keep(v.ThumbnailOpen.Connect(
        [this](Thumbnail& item) { events_.push_back("open " + std::to_string(item.Index())); }));
    keep(v.DeletePressed.Connect([this] { events_.push_back("delete"); }));
    keep(v.ViewChange.Connect(
        [this](std::int32_t mode) { events_.push_back("view " + std::to_string(mode)); }));
  }

  PostedCalls calls_;
  std::shared_ptr<FakeAccess> access_ = std::make_shared<FakeAccess>();
  std::shared_ptr<FakeStore> store_ = std::make_shared<FakeStore>();
  /// One thread, so that decoders begin in the order of the requests.
  std::shared_ptr<Workers> workers_ = std::make_shared<Workers>(1);
  std::chrono::steady_clock::time_point now_;
  std::size_t memory_ = std::size_t{64} << 20;
  Metrics metrics_;
  std::vector<std::string> events_;
  std::unique_ptr<TestView> view_;
  std::vector<Connection> connections_;
};

}  // namespace kestrel::thumbnails::test
