#include <cstdint>
#include <string>
#include <tuple>

#include "base/Numbers.h"
#include "host/dispatch/Elements.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/ThumbnailView.h"

namespace kestrel::dispatch {
namespace {

constexpr std::tuple kThumbnailViewMembers{
    Property("Folder", 1, &ThumbnailView::Folder, &ThumbnailView::Folder,
             "The folder whose image files are shown."),
    Property("View", 2, &ThumbnailView::View, &ThumbnailView::View, "0 thumbnail, 1 film strip, 2 single."),
    ReadOnly("Thumbnails", 3, &ThumbnailView::Thumbnails, "All thumbnails, in the order of the view."),
    ReadOnly("SelectedItems", 4, &ThumbnailView::SelectedItems, "The selected thumbnails."),
};
constexpr ClassDescription kThumbnailView = MakeClass<ThumbnailView, kThumbnailViewMembers>(
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

Thumbnail* Locate<Thumbnail>::Find(Thumbnails& thumbnails, const std::string& key) {
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
