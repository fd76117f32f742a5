#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Control.h"
#include "base/Event.h"

namespace kestrel {

/// Values of `ThumbnailView::View`.
inline constexpr std::int32_t kViewThumbnail = 0;
inline constexpr std::int32_t kViewFilmstrip = 1;
inline constexpr std::int32_t kViewSingle = 2;

/// One thumbnail of a view.
class Thumbnail {
 public:
  virtual ~Thumbnail() = default;
  virtual std::string Filename() const = 0;
  /// Its position in the view, counted from 1.
  virtual std::int32_t Index() const = 0;
};

/// Thumbnails in the order of the view, counted from 1.
class Thumbnails {
 public:
  virtual ~Thumbnails() = default;
  virtual std::int32_t Count() const = 0;
  /// Raises RuntimeError 9 outside.
  virtual Thumbnail& Item(std::int32_t index) = 0;
  /// All thumbnails of the view: of a selection those that it is a part of, otherwise these.
  virtual Thumbnails& All() { return *this; }
};

/// The image files of one folder as thumbnails.
class ThumbnailView : public Control {
 public:
  virtual std::string Folder() const = 0;
  /// Loads the folder's image files; `ThumbnailLoaded` reports them one by one. After `Clear`, and while the
  /// folder cannot be read, that includes the current folder.
  virtual void Folder(const std::string& value) = 0;
  /// Shows no images, for a place that is no folder, and cancels loading. `Folder` keeps its value, but
  /// nothing is loaded, by `Refresh` either, until it is written again.
  virtual void Clear() = 0;
  virtual std::int32_t View() const = 0;
  /// 0 thumbnail, 1 film strip, 2 single. Raises `ViewChange`.
  virtual void View(std::int32_t value) = 0;
  /// Shown while the folder holds no images.
  virtual std::string EmptyText() const = 0;
  virtual void EmptyText(const std::string& value) = 0;
  virtual void UserMode(bool value) = 0;
  /// Reads the folder again.
  virtual void Refresh() = 0;
  /// The folder that the user chose, empty when canceled.
  virtual std::string BrowseForFolder(const std::string& prompt, const std::string& title,
                                      const std::string& start) = 0;
  virtual kestrel::Thumbnails& Thumbnails() = 0;
  virtual kestrel::Thumbnails& SelectedItems() = 0;

  Event<bool&> FolderLoadStart;                            ///< Cancel
  Event<std::int32_t> FolderSearchComplete;                ///< Count
  Event<Thumbnail&, std::int32_t, bool&> ThumbnailLoaded;  ///< Item, Percent, Cancel
  Event<bool> FolderLoadComplete;                          ///< Cancelled
  Event<bool&> RecalculatingThumbnailsStart;               ///< Cancel
  Event<Thumbnail&> RecalculatedThumbnail;
  Event<> RecalculatingThumbnailsComplete;
  Event<Thumbnail&> ThumbnailContextClick;
  Event<Thumbnail&> ThumbnailDblClick;
  /// The user has pressed Enter, which opens the thumbnail in the host.
  Event<Thumbnail&> ThumbnailOpen;
  /// The user has pressed Delete with the focus in the view.
  Event<> DeletePressed;
  Event<std::int32_t> ViewChange;
};

}  // namespace kestrel
