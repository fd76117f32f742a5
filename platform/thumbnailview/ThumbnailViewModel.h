#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Arrangement.h"
#include "Items.h"
#include "Navigation.h"
#include "Services.h"
#include "imaging/contract/ThumbnailView.h"

namespace kestrel::thumbnails {

/// The thumbnail view without a toolkit.
///
/// A platform derives from it, adds the members of `Control` and `BrowseForFolder`, forwards size and input,
/// paints what `visibleItems` and `pictureOf` return, and implements the hooks at the end. Positions and
/// sizes are in device pixels of the viewport, whose top left corner is (0, 0). Items are counted from 0 here
/// (-1 is none), unlike in the contract. Modifiers are the masks `kShiftMask`, `kCtrlMask`, `kAltMask`.
///
/// All members are called on the owner's thread, on which all events and hooks happen. A handler of an event
/// may call any member and may destroy the view. Hooks must not: they note what to repaint.
///
/// Loading: assigning `Folder`, and `Refresh`, raise `FolderLoadStart` at once. The folder is read and the
/// pictures are decoded on worker threads; what they find arrives through `Services::post`. Then come
/// `FolderSearchComplete`, `ThumbnailLoaded` for each thumbnail (visible ones first), and
/// `FolderLoadComplete`. A load that is cut short by a handler's Cancel or by another folder ends with
/// `FolderLoadComplete(true)`; then nothing is loaded until the next `Folder` or `Refresh`. Files that come,
/// go or change after the load raise no events.
///
/// Recalculation: where thumbnails are too small after a change of view or scale, they are made again after
/// the load, visible ones first, between `RecalculatingThumbnailsStart` and
/// `RecalculatingThumbnailsComplete`.
class ThumbnailViewModel : public kestrel::ThumbnailView {
 public:
  explicit ThumbnailViewModel(Services services);
  ThumbnailViewModel(const ThumbnailViewModel&) = delete;
  ThumbnailViewModel& operator=(const ThumbnailViewModel&) = delete;
  /// Cancels loading; does not wait for a decoder.
  ~ThumbnailViewModel() override;

  // The contract.
  std::string Folder() const override;
  /// An empty text is no folder: the view is empty.
  void Folder(const std::string& value) override;
  void Clear() override;
  std::int32_t View() const override;
  /// Raises RuntimeError 380 outside 0 to 2.
  void View(std::int32_t value) override;
  std::string EmptyText() const override;
  void EmptyText(const std::string& value) override;
  void UserMode(bool value) override;
  void Refresh() override;
  kestrel::Thumbnails& Thumbnails() override;
  kestrel::Thumbnails& SelectedItems() override;

  // Layout.
  /// Sets size and metrics of the viewport. The first visible item stays visible.
  void layOut(Size viewport, const Metrics& metrics);
  const Arrangement& arrangement() const;

  // Scrolling, along one axis: down in the grid, to the right in the film strip.
  std::int64_t scroll() const;
  /// Clamped to 0 to `arrangement().scrollRange()`.
  void scrollTo(std::int64_t position);
  void scrollBy(std::int64_t distance) { scrollTo(scroll() + distance); }

  // Painting.
  /// Items of which a part is visible; in the film strip those of the row, in the single view none.
  ItemRange visibleItems() const;
  ItemPlace placeOf(std::int32_t item) const;
  /// The item of the large picture (film strip and single view), -1 if there is none.
  std::int32_t largeItem() const;
  /// The picture of an item in its cell.
  PaintedPicture pictureOf(std::int32_t item) const;
  /// The large picture. The small one, enlarged, while the large one is being decoded.
  PaintedPicture largePicture() const;
  ItemFacts factsOf(std::int32_t item) const;
  std::int32_t itemCount() const;
  bool isSelected(std::int32_t item) const;
  /// The rubber band; empty if there is none.
  Rectangle rubberBand() const;
  /// What is shown in place of items: empty if there are items or while the folder is being read; the reason
  /// where it cannot be read; else `EmptyText`.
  std::string message() const;
  /// Whether the folder is being read for the first time.
  bool searching() const;
  /// Whether a load or a recalculation is under way: its events are not complete.
  bool loading() const;
  /// Whether nothing is being loaded, not even what only painting needs. For tests and scripts.
  bool settled() const;

  // The pointer. `button` is `kLeftButton`, `kRightButton` or `kMiddleButton`; only the left one selects.
  /// At a position of the viewport; -1 if there is no item. The large picture is its item.
  std::int32_t hitTest(Point position) const;
  void pointerDown(std::int32_t button, std::int32_t modifiers, Point position);
  /// With the button pressed; may call `beginDrag`, after which the gesture is over.
  void pointerMove(std::int32_t modifiers, Point position);
  void pointerUp(std::int32_t button, std::int32_t modifiers, Point position);
  /// The second press of a double click. Raises `ThumbnailDblClick` on an item.
  void pointerDoubleClick(std::int32_t button, std::int32_t modifiers, Point position);
  /// The gesture was ended by the system, for example by a dialog.
  void pointerCancel();
  /// Asks for a context menu at a position: selects an item that is not selected, then raises
  /// `ThumbnailContextClick`; on the ground clears the selection. True if an item was hit.
  bool contextClick(Point position);
  /// The same by the keyboard, on the focus item. True if there is one.
  bool contextKey();
  /// A step of scrolling for a rubber band beyond the edge: called some 60 times a second while `autoScroll`
  /// is on.
  void autoScrollTick();

  // The keyboard.
  /// False if the view has no use for the key now; then the container gets it.
  bool key(Key key, std::int32_t modifiers);
  /// Typed characters, UTF-8: moves to the next item whose name begins with what was typed within a second.
  bool type(std::string_view text);
  /// -1 while there are no items.
  std::int32_t focusItem() const;

  // Commands of the platform.
  /// Selects this item alone, moves the focus to it and makes it visible.
  void selectOnly(std::int32_t item);
  /// Adds an item to the selection or takes it out, for assistive technology.
  void select(std::int32_t item, bool selected);
  /// Moves the focus without selecting, and makes the item visible.
  void focus(std::int32_t item);
  /// The paths on the disk of the selected items, in the order of the view.
  std::vector<std::filesystem::path> selectedPaths() const;
  std::filesystem::path pathOf(std::int32_t item) const;
  /// The path on the disk of `Folder`, empty for none.
  std::filesystem::path folderPath() const;
  /// Whether the user sees the files of `Folder`: not without one, after `Clear`, or at design time.
  bool showsFolder() const;
  /// The window was activated: reads the folder again where changes may go unnoticed. Raises no events of
  /// loading.
  void activated();

 protected:
  // Hooks, implemented by the platform.
  /// An area of the viewport must be repainted.
  virtual void invalidate(const Rectangle& area) = 0;
  /// Scroll position or range differ. The areas to repaint are reported separately.
  virtual void scrollChanged() = 0;
  /// Starts or stops the timer that calls `autoScrollTick`.
  virtual void autoScroll(bool on) = 0;
  /// The pointer drags the selected items out of the view. The platform runs the drag after this call has
  /// returned.
  virtual void beginDrag() = 0;
  // For accessibility; all may be left out.
  virtual void itemsChanged() {}
  virtual void selectionChanged() {}
  virtual void focusItemChanged() {}

 private:
  struct Inside;

  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::thumbnails
