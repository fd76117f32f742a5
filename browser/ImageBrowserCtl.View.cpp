#include "ImageBrowserCtl.h"
#include "diagnostics/Trailer.h"

namespace kestrel {
namespace {

constexpr std::int32_t kPercent = 100;

}  // namespace

void ImageBrowserCtl::zConnectView() {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  keep(thvBrowse.FolderLoadStart.Connect([this](bool& cancel) { thvBrowse_FolderLoadStart(cancel); }));
  keep(thvBrowse.FolderSearchComplete.Connect(
      [this](std::int32_t count) { thvBrowse_FolderSearchComplete(count); }));
  keep(thvBrowse.ThumbnailLoaded.Connect([this](Thumbnail& item, std::int32_t percent, bool& cancel) {
    thvBrowse_ThumbnailLoaded(item, percent, cancel);
  }));
  keep(thvBrowse.FolderLoadComplete.Connect(
      [this](bool cancelled) { thvBrowse_FolderLoadComplete(cancelled); }));
  keep(thvBrowse.RecalculatingThumbnailsStart.Connect(
      [this](bool&) { thvBrowse_RecalculatingThumbnailsStart(); }));
  keep(thvBrowse.RecalculatedThumbnail.Connect(
      [this](Thumbnail& item) { thvBrowse_RecalculatedThumbnail(item); }));
  keep(thvBrowse.RecalculatingThumbnailsComplete.Connect(
      [this] { thvBrowse_RecalculatingThumbnailsComplete(); }));
  keep(thvBrowse.ThumbnailContextClick.Connect(
      [this](Thumbnail& item) { thvBrowse_ThumbnailContextClick(item); }));
  keep(thvBrowse.ThumbnailDblClick.Connect([this](Thumbnail& item) { thvBrowse_ThumbnailDblClick(item); }));
  keep(thvBrowse.DeletePressed.Connect([this] { thvBrowse_DeletePressed(); }));
  keep(thvBrowse.ViewChange.Connect([this](std::int32_t view) { thvBrowse_ViewChange(view); }));
}

// -- Progress ---------------------------------------------------------------------------------------------

void ImageBrowserCtl::zShowProgress(std::int32_t Maximum) {
  StatusPanel& progress = mrgUI.StatusPanel("Progress");
  progress.ProgressMin(1);
  progress.ProgressMax(Maximum);
  progress.Visible(true);
}

void ImageBrowserCtl::zHideProgress() {
  iLoading = false;
  mrgUI.StatusPanel("Progress").Visible(false);
  Status({});
}

void ImageBrowserCtl::thvBrowse_FolderLoadStart(bool& Cancel) {
  try {
    iLoading = true;
    Status("Searching for images...");
    zCancelWhileHidden(Cancel);
  } catch (...) {
    QDK_TRAILER(thvBrowse_FolderLoadStart, QDK_PARAMETERS(Cancel), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_FolderSearchComplete(std::int32_t Count) {
  try {
    zShowProgress(kPercent);
  } catch (...) {
    QDK_TRAILER(thvBrowse_FolderSearchComplete, QDK_PARAMETERS(Count), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_ThumbnailLoaded(Thumbnail& Item, std::int32_t Percent, bool& Cancel) {
  try {
    mrgUI.StatusPanel("Progress").ProgressValue(Percent);
    zCancelWhileHidden(Cancel);
  } catch (...) {
    QDK_TRAILER(thvBrowse_ThumbnailLoaded, QDK_PARAMETERS(Item, Percent, Cancel), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_FolderLoadComplete(bool Cancelled) {
  try {
    zHideProgress();
  } catch (...) {
    QDK_TRAILER(thvBrowse_FolderLoadComplete, QDK_PARAMETERS(Cancelled), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_RecalculatingThumbnailsStart() {
  try {
    iLoading = true;
    zShowProgress(Thumbnails().Count());
    Status("Recalculating thumbnails...");
  } catch (...) {
    QDK_TRAILER(thvBrowse_RecalculatingThumbnailsStart, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_RecalculatedThumbnail(Thumbnail& Item) {
  try {
    mrgUI.StatusPanel("Progress").ProgressValue(Item.Index());
  } catch (...) {
    QDK_TRAILER(thvBrowse_RecalculatedThumbnail, QDK_PARAMETERS(Item), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_RecalculatingThumbnailsComplete() {
  try {
    zHideProgress();
  } catch (...) {
    QDK_TRAILER(thvBrowse_RecalculatingThumbnailsComplete, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

// -- Clicks, keys and the view's mode -----------------------------------------------------------------------

void ImageBrowserCtl::zShowPopup(const char* Menu) {
  const OpenCalls::Call Call(iPlatform.Calls);
  mrgUI.ShowPopup(mrgUI.Commands()(Menu));
}

void ImageBrowserCtl::thvBrowse_ThumbnailContextClick(Thumbnail& Item) {
  try {
    zShowPopup("mnuImage");
  } catch (...) {
    QDK_TRAILER(thvBrowse_ThumbnailContextClick, QDK_PARAMETERS(Item), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_ThumbnailDblClick(Thumbnail& Item) {
  try {
    thvBrowse.View(kViewSingle);
  } catch (...) {
    QDK_TRAILER(thvBrowse_ThumbnailDblClick, QDK_PARAMETERS(Item), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_DeletePressed() {
  try {
    Command& command = mrgUI.Commands()("btnImageDelete");
    if (command.Enabled()) mrgUI_CommandClick(command);
  } catch (...) {
    QDK_TRAILER(thvBrowse_DeletePressed, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageBrowserCtl::thvBrowse_ViewChange(std::int32_t View) {
  try {
    DockFunctions& functions = mrgUI.DockFunctions();
    functions.SetChecked(mrgUI.Commands()("btnViewThumbnail"), View == kViewThumbnail);
    functions.SetChecked(mrgUI.Commands()("btnViewFilmstrip"), View == kViewFilmstrip);
    functions.SetChecked(mrgUI.Commands()("btnViewSingle"), View == kViewSingle);
  } catch (...) {
    QDK_TRAILER(thvBrowse_ViewChange, QDK_PARAMETERS(View), QDK_LOCALS());
  }
}

}  // namespace kestrel
