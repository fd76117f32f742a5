#include "BrowserWindow.h"

#include <utility>

#include "apps/common/window/RunCommand.h"
#include "base/RuntimeError.h"
#include "platform/os/Paths.h"
#include "platform/thumbnailview/ThumbnailViewModel.h"
#include "settings/modProcessing.h"

namespace kestrel::app {
namespace {

thumbnails::ThumbnailViewModel& modelOf(IImageBrowserCtl& browser) {
  return dynamic_cast<thumbnails::ThumbnailViewModel&>(browser.ObjectThumbnailView());
}

std::string withSeparator(std::string folder) {
  const std::string separator = modProcessing::FileHelpers().PathSeparator();
  return folder.ends_with(separator) ? folder : folder + separator;
}

}  // namespace

BrowserWindow::BrowserWindow(const std::string& title, std::function<void()> closed,
                             std::function<void(const std::string&)> open) {
  const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
  window_.Title(title);
  keep(form().QueryUnload.Connect([closed = std::move(closed)](bool&, std::int32_t) { closed(); }));
  keep(browser().ObjectThumbnailView().ThumbnailOpen.Connect(
      [open = std::move(open)](Thumbnail& thumbnail) { open(thumbnail.Filename()); }));
  connectLoading();
}

void BrowserWindow::connectLoading() {
  const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
  ThumbnailView& view = browser().ObjectThumbnailView();
  keep(view.FolderLoadStart.Connect([this](bool&) { loading_ = true; }));
  keep(view.FolderSearchComplete.Connect([this](std::int32_t) { selectWanted(); }));
  keep(view.FolderLoadComplete.Connect([this](bool) { loading_ = false; }));
  keep(view.RecalculatingThumbnailsStart.Connect([this](bool&) { recalculating_ = true; }));
  keep(view.RecalculatingThumbnailsComplete.Connect([this] { recalculating_ = false; }));
}

Control& BrowserWindow::control() { return Bind<Site>(form(), "Browser"); }

void BrowserWindow::show(const std::string& folder, const std::string& file) {
  wanted_ = file;
  bool announced = false;
  const Connection connection = browser().PathChange.Connect([&](const std::string&) { announced = true; });
  browser().Path(folder);
  // The first show would announce the folder once more.
  if (announced) browser().ObjectFolderBrowse().AutoSelect(false);
  form().Show();
}

void BrowserWindow::selectWanted() {
  const std::string wanted = std::exchange(wanted_, {});
  if (wanted.empty()) return;
  thumbnails::ThumbnailViewModel& view = modelOf(browser());
  for (std::int32_t item = 0; item < view.itemCount(); ++item) {
    if (os::textOf(view.pathOf(item).filename()) == wanted) return view.selectOnly(item);
  }
}

void BrowserWindow::path(const std::string& folder) {
  browser().Path(folder);
  const std::string wanted = withSeparator(modProcessing::FileHelpers().ResolvePath(folder));
  if (browser().Path() != wanted) {
    throw RuntimeError(err::kPathNotFound, "The folder \"" + folder + "\" was not found in the tree.");
  }
}

void BrowserWindow::select(const std::vector<std::int32_t>& numbers) {
  thumbnails::ThumbnailViewModel& view = modelOf(browser());
  for (const std::int32_t number : numbers) view.Thumbnails().Item(number);  // raises if there is none
  bool first = true;
  for (const std::int32_t number : numbers) {
    if (std::exchange(first, false)) {
      view.selectOnly(number - 1);
    } else {
      view.select(number - 1, true);
    }
  }
}

std::vector<std::string> BrowserWindow::selectedFiles() {
  std::vector<std::string> files;
  Thumbnails& selected = browser().SelectedItems();
  for (std::int32_t i = 1; i <= selected.Count(); ++i) files.push_back(selected.Item(i).Filename());
  return files;
}

void BrowserWindow::runCommand(const std::string& key) { app::runCommand(browser().ObjectMoorage(), key); }

}  // namespace kestrel::app
