#pragma once

#include <cstdint>
#include <string>

#include "ImageBrowserCtlEvents.h"
#include "base/Object.h"

namespace kestrel {

// Types that members return; a host includes the headers of those it uses.
class FolderTreeView;
class Moorage;
class ThumbnailView;
class Thumbnails;

/// The embeddable image browser: a folder tree and the thumbnails of the selected folder, surrounded by
/// menus, a tool bar and a status bar. These are the public members of `ImageBrowserCtl`; its events are in
/// the base.
///
/// All calls and events happen on the thread that made the control. An error inside a member is reported and
/// the member returns its default result. Setting a property to its current value does nothing.
class IImageBrowserCtl : public Object, public ImageBrowserCtlEvents {
 public:
  /// The docking suite.
  virtual Moorage& ObjectMoorage() = 0;
  /// Returns access to the browser
  virtual FolderTreeView& ObjectFolderBrowse() = 0;
  /// Returns access to the thumbnail view. Its event `ThumbnailOpen` is for the host.
  virtual ThumbnailView& ObjectThumbnailView() = 0;
  /// Returns access to the thumbnails
  virtual kestrel::Thumbnails& Thumbnails() = 0;
  /// Returns access to the selected thumbnails
  virtual kestrel::Thumbnails& SelectedItems() = 0;

  /// Whether the menu bar is shown at run time; stored.
  virtual bool ShowMenuBar() const = 0;
  virtual void ShowMenuBar(bool Value) = 0;
  /// The selected folder, with a trailing separator; empty for none. Setting it selects the deepest folder of
  /// the path that the tree lists.
  virtual std::string Path() const = 0;
  virtual void Path(const std::string& Value) = 0;
  /// The width of the folder tree in pixels; the user can change it.
  virtual std::int32_t DividerPosition() const = 0;
  virtual void DividerPosition(std::int32_t Value) = 0;

  /// Has no effect: all commands stay enabled.
  virtual void SetControls(bool Enabled) = 0;
  /// Shows a message in the status line.
  virtual void Status(const std::string& Message) = 0;
};

}  // namespace kestrel
