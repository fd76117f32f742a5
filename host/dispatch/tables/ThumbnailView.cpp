#include <cstdint>
#include <string>
#include <tuple>

#include "base/Numbers.h"
#include "host/dispatch/ControlRows.h"
#include "host/dispatch/Elements.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/ThumbnailView.h"

namespace kestrel::dispatch {
namespace {

constexpr auto kThumbnailViewMembers = std::tuple_cat(
    std::tuple{
        Property("Folder", 1, &ThumbnailView::Folder, &ThumbnailView::Folder,
                 "The folder whose image files are shown."),
        Property("View", 2, &ThumbnailView::View, &ThumbnailView::View,
                 "0 thumbnail, 1 film strip, 2 single."),
        ReadOnly("Thumbnails", 3, &ThumbnailView::Thumbnails, "All thumbnails, in the order of the view."),
        ReadOnly("SelectedItems", 4, &ThumbnailView::SelectedItems, "The selected thumbnails."),
        Property("EmptyText", 5, &ThumbnailView::EmptyText, &ThumbnailView::EmptyText,
                 "Shown while the folder holds no images."),
        Method("Refresh", 6, &ThumbnailView::Refresh, "Reads the folder again."),
        Method("BrowseForFolder", 7, &ThumbnailView::BrowseForFolder, {"Prompt", "Title", "Start"},
               "Asks the user for a folder; empty when canceled."),
        Method("Clear", 8, &ThumbnailView::Clear,
               "Shows no images until Folder is written again, and cancels loading."),
        WriteOnly("UserMode", 9, &ThumbnailView::UserMode, "Whether the container is at run time."),
    },
    kControlRows);
constexpr std::tuple kThumbnailViewEvents{
    EventOf("FolderLoadStart", 1, &ThumbnailView::FolderLoadStart, {"Cancel"},
            "A folder is about to be read."),
    EventOf("FolderSearchComplete", 2, &ThumbnailView::FolderSearchComplete, {"Count"},
            "The image files of the folder were found."),
    EventOf("ThumbnailLoaded", 3, &ThumbnailView::ThumbnailLoaded, {"Item", "Percent", "Cancel"},
            "A thumbnail was loaded."),
    EventOf("FolderLoadComplete", 4, &ThumbnailView::FolderLoadComplete, {"Cancelled"},
            "All thumbnails of the folder were loaded, or loading was canceled."),
    EventOf("RecalculatingThumbnailsStart", 5, &ThumbnailView::RecalculatingThumbnailsStart, {"Cancel"},
            "The thumbnails are about to be made anew."),
    EventOf("RecalculatedThumbnail", 6, &ThumbnailView::RecalculatedThumbnail, {"Item"},
            "A thumbnail was made anew."),
    EventOf("RecalculatingThumbnailsComplete", 7, &ThumbnailView::RecalculatingThumbnailsComplete,
            "All thumbnails were made anew."),
    EventOf("ThumbnailContextClick", 8, &ThumbnailView::ThumbnailContextClick, {"Item"},
            "The context menu of a thumbnail was requested."),
    EventOf("ThumbnailDblClick", 9, &ThumbnailView::ThumbnailDblClick, {"Item"},
            "A thumbnail was double-clicked."),
    EventOf("ThumbnailOpen", 10, &ThumbnailView::ThumbnailOpen, {"Item"},
            "The user has pressed Enter, which opens the thumbnail in the host."),
    EventOf("DeletePressed", 11, &ThumbnailView::DeletePressed,
            "The user has pressed Delete with the focus in the view."),
    EventOf("ViewChange", 12, &ThumbnailView::ViewChange, {"View"}, "The view mode has changed."),
};
constexpr ClassDescription kThumbnailView =
    MakeClass<ThumbnailView, kThumbnailViewMembers, kThumbnailViewEvents>(
        {.name = "ThumbnailView", .help = "The image files of one folder as thumbnails."});

constexpr std::tuple kThumbnailsMembers{
    ItemOf<Thumbnails>("The thumbnail of a position, counted from 1."),
    ReadOnly("Count", 1, &Thumbnails::Count, "The number of thumbnails."),
};
constexpr ClassDescription kThumbnails = MakeClass<Thumbnails, kThumbnailsMembers>(
    {.name = "Thumbnails", .help = "Thumbnails in the order of the view."});

constexpr std::tuple kThumbnailMembers{
    ReadOnly("Filename", 1, &Thumbnail::Filename, "The name of the image file."),
    ReadOnly("Index", 2, &Thumbnail::Index, "The position in the view, counted from 1."),
};
constexpr ClassDescription kThumbnail =
    MakeClass<Thumbnail, kThumbnailMembers>({.name = "Thumbnail", .help = "One thumbnail of a view."});

constexpr char kSeparator = '|';

}  // namespace

template <>
const ClassDescription& Describe<ThumbnailView>() {
  return kThumbnailView;
}
template <>
const ClassDescription& Describe<Thumbnails>() {
  return kThumbnails;
}
template <>
const ClassDescription& Describe<Thumbnail>() {
  return kThumbnail;
}

// The position is a hint: without it each use would search from the beginning.

std::string Locate<Thumbnail>::Key(const Thumbnail& thumbnail) {
  return std::to_string(thumbnail.Index()) + kSeparator + thumbnail.Filename();
}

Thumbnail* Locate<Thumbnail>::Find(Thumbnails& handedOutBy, const std::string& key) {
  // A thumbnail exists as long as its view shows the file, selected or not.
  Thumbnails& thumbnails = handedOutBy.All();
  const std::size_t separator = key.find(kSeparator);
  const std::string filename = key.substr(separator + 1);
  const auto at = [&](std::int32_t index) -> Thumbnail* {
    Thumbnail& thumbnail = thumbnails.Item(index);
    return thumbnail.Filename() == filename ? &thumbnail : nullptr;
  };
  const std::int32_t hint = kestrel::ToInt32(Val(key));
  if (hint >= 1 && hint <= thumbnails.Count()) {
    if (Thumbnail* found = at(hint)) return found;
  }
  for (std::int32_t i = 1; i <= thumbnails.Count(); ++i) {
    if (Thumbnail* found = at(i)) return found;
  }
  return nullptr;
}

Thumbnail* Locate<Thumbnail>::Find(ThumbnailView& view, const std::string& key) {
  return Find(view.Thumbnails(), key);
}

}  // namespace kestrel::dispatch
