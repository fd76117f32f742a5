#include "ThumbnailView.h"

#include <utility>

#include "platform/os/Paths.h"

namespace kestrel::headless {
namespace {

thumbnails::Services servicesOf(const FileSystem& files, const std::shared_ptr<PostedCalls>& calls) {
  thumbnails::Services services;
  services.post = [calls](std::function<void()> call) { calls->post(std::move(call)); };
  services.pathOf = [&files](const std::string& folder) { return os::pathOf(files.host(folder)); };
  services.separator = std::string(1, files.separator());
  return services;
}

}  // namespace

ThumbnailView::ThumbnailView(Desktop& desktop, Window* parent, std::string name, const FileSystem& files,
                             User& user)
    : ThumbnailView(desktop, parent, std::move(name), files, user, std::make_shared<PostedCalls>()) {}

ThumbnailView::ThumbnailView(Desktop& desktop, Window* parent, std::string name, const FileSystem& files,
                             User& user, const std::shared_ptr<PostedCalls>& calls)
    : WindowOf(desktop, parent, std::move(name), -1, servicesOf(files, calls)), user_(user), calls_(calls) {}

std::string ThumbnailView::BrowseForFolder(const std::string& prompt, const std::string& title,
                                           const std::string& start) {
  return user_.chooseFolder({prompt, title, start});
}

bool ThumbnailView::runUntil(const std::function<bool()>& done) {
  // A call may destroy the view.
  const auto calls = calls_;
  return calls->runUntil(done);
}

bool ThumbnailView::settle() {
  return runUntil([this] { return settled(); });
}

Point ThumbnailView::middleOf(std::int32_t item) const {
  const Rectangle cell = placeOf(item).cell;
  return {cell.Left + cell.Width / 2, cell.Top + cell.Height / 2};
}

void ThumbnailView::click(std::int32_t item, std::int32_t modifiers) {
  const Point at = middleOf(item);
  pointerDown(kLeftButton, modifiers, at);
  pointerUp(kLeftButton, modifiers, at);
}

void ThumbnailView::doubleClick(std::int32_t item) {
  click(item);
  pointerDoubleClick(kLeftButton, 0, middleOf(item));
}

void ThumbnailView::contextClick(std::int32_t item) { contextClick(middleOf(item)); }

void ThumbnailView::scale(double value) {
  metrics_.scale = value;
  resized();
}

void ThumbnailView::resized() { layOut({Width(), Height()}, metrics_); }

}  // namespace kestrel::headless
