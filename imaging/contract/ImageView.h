#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Control.h"
#include "DeviceContext.h"
#include "ImgX.h"
#include "Picture.h"
#include "base/Event.h"

namespace kestrel {

/// Values of `ImageView::Tool`, the view's own mouse tools.
inline constexpr std::int32_t kViewToolNone = 0;
inline constexpr std::int32_t kViewToolSelect = 1;
inline constexpr std::int32_t kViewToolPan = 2;
inline constexpr std::int32_t kViewToolLine = 7;
inline constexpr std::int32_t kViewToolRectangle = 9;
inline constexpr std::int32_t kViewToolEllipse = 10;
inline constexpr std::int32_t kViewToolFreehand = 11;

/// Values of `ImageView::MousePointer`.
inline constexpr std::int32_t kPointerDefault = 0;
inline constexpr std::int32_t kPointerCustom = 99;

/// The undo name under which nothing is recorded.
inline constexpr char kNoUndo[] = "No Undo";

/// An undo step recorded before work under "No Undo". The step outlives this object.
class UndoPoint {
 public:
  virtual ~UndoPoint() = default;

  /// Rolls failed work back: picture, steps and `Modified` are again what they were before the point. Raises
  /// `Changed` if the picture differs. Does nothing if the point is no longer the latest step.
  virtual void TakeBack() = 0;
};

/// A control that shows one picture, with zoom, scrolling, a mouse tool, a selection and an undo stack.
///
/// View coordinates are device pixels from the view's top left corner. A change of the picture through the
/// view's sub-objects records an undo step under the given name, sets `Modified` and raises `Changed`. A
/// picture set by `Document` under "No Undo" is a load: it sets `Modified` only.
class ImageView : public Control, public ImagingFace {
 public:
  /// The view's own object, which works on its picture and shares its settings; see `ImgX`. Each call returns
  /// the same object until another picture is put into that object; the next call then returns a new one.
  virtual std::shared_ptr<kestrel::ImgX> ImgX() = 0;

  /// The picture as an ordinary picture object, null if there is none. Writing loads it as the view's
  /// picture, as `Document` does under "No Undo".
  virtual PicturePtr Picture() = 0;
  virtual void Picture(const PicturePtr& value) = 0;

  /// Screen pixels per picture pixel. Writing always raises `BeforeZoomChanged` first; the factor is clamped
  /// to 0.01 to 64.
  virtual double Zoom() const = 0;
  virtual void Zoom(double value) = 0;
  /// The largest factor at which the whole picture is in view without scroll bars, within the bounds of
  /// `Zoom`; 1.0 without a picture.
  virtual double FitZoom() const = 0;

  /// Picture column and row at the view's left and top edge; negative if a smaller picture is centered. The
  /// border line around the picture, if shown, counts as that edge: at zoom 1 the picture's column
  /// `ScrollLeft` is then at view pixel 1, else at 0. Writing is clamped to the scrollable range, and raises
  /// `Scroll` and `ScrollChanged` if the position changed.
  virtual std::int32_t ScrollLeft() const = 0;
  virtual void ScrollLeft(std::int32_t value) = 0;
  virtual std::int32_t ScrollTop() const = 0;
  virtual void ScrollTop(std::int32_t value) = 0;

  /// The selection in picture pixels. Sizes read negative for a rectangle dragged leftwards or upwards.
  virtual std::int32_t SelectionLeft() const = 0;
  virtual std::int32_t SelectionTop() const = 0;
  virtual std::int32_t SelectionWidth() const = 0;
  virtual void SelectionWidth(std::int32_t value) = 0;
  virtual std::int32_t SelectionHeight() const = 0;
  virtual void SelectionHeight(std::int32_t value) = 0;
  virtual bool SelectionVisible() const = 0;
  virtual void SelectionVisible(bool value) = 0;
  /// Sets the rectangle; raises no event.
  virtual void SetSelectionRect(std::int32_t left, std::int32_t top, std::int32_t width,
                                std::int32_t height) = 0;

  /// The picture pixel under the pointer, as `MouseMovePixel` would report it now; none while the pointer is
  /// not over the picture.
  virtual std::optional<Point> PointerPixel() const = 0;

  virtual std::int32_t Tool() const = 0;
  virtual void Tool(std::int32_t value) = 0;

  /// The maximum number of undo steps. Writing 0 empties the stack; a negative number counts as 0.
  virtual std::int32_t UndoLevels() const = 0;
  virtual void UndoLevels(std::int32_t value) = 0;
  /// The maximum size of the undo steps, in bytes of pixels; by default a quarter of the machine's memory.
  /// The oldest steps are dropped first, the latest one never.
  virtual std::size_t UndoMemoryLimit() const = 0;
  virtual void UndoMemoryLimit(std::size_t bytes) = 0;
  /// Undo or redo the latest step and raise `Changed`. Do nothing if there is none.
  virtual void Undo() = 0;
  virtual void Redo() = 0;
  /// Whether there is a step to undo or redo.
  virtual bool CanUndo() const = 0;
  virtual bool CanRedo() const = 0;
  /// The name of that step; empty if it is unnamed or there is none.
  virtual std::string UndoName() const = 0;
  virtual std::string RedoName() const = 0;
  /// Records the current picture as one step, for work that follows under "No Undo".
  virtual std::unique_ptr<UndoPoint> CreateUndoPoint(const std::string& name) = 0;

  /// Unsaved changes: set by each change of the picture. Raises `ModifiedChanged` if it is another value.
  virtual bool Modified() const = 0;
  virtual void Modified(bool value) = 0;

  /// Repaints; with `DoubleBuffer`, also raises `DoubleBufferPaintAfter`.
  virtual void Refresh() = 0;
  virtual void DoubleBuffer(bool value) = 0;
  /// The image tiled behind transparent parts of the picture, copied by the call; null for none.
  virtual void BackgroundImage(const kestrel::Image* value) = 0;
  /// 0 the pointer of the tool, 99 the stored custom pointer.
  virtual std::int32_t MousePointer() const = 0;
  virtual void MousePointer(std::int32_t value) = 0;

  /// A border line of one pixel around the picture.
  virtual void ImageBorder(bool value) = 0;
  /// 2: the tool's pointer is shown over the picture only.
  virtual void MousePointerStyle(std::int32_t value) = 0;
  /// Whether writing a selection property repaints at once.
  virtual void AutoRedrawSelection(bool value) = 0;
  /// 0: marching ants.
  virtual void SelectionStyle(std::int32_t value) = 0;

  /// A notice in a strip above the picture; empty for none. The view shows it until another one is set or the
  /// user closes it; then it reads empty. The strip takes no focus, and reduces the visible part of the view
  /// as a smaller window would.
  virtual std::string Notice() const = 0;
  /// `action` is the caption of the strip's button; empty for none.
  virtual void Notice(const std::string& text, const std::string& action = {}) = 0;

  /// A faint line in the middle of the view while there is no picture; empty for none. No part of a picture.
  virtual std::string EmptyHint() const = 0;
  virtual void EmptyHint(const std::string& text) = 0;

  /// A press and release of a button without a drag.
  Event<> Click;
  /// The second click of a double click with the left button, after its `Click`. A write of `Zoom` in the
  /// handler keeps the picture pixel under the pointer in place.
  Event<> DblClick;
  /// The context menu was requested by the keyboard. With the mouse it is a `MouseUp` of the right button.
  Event<> ContextMenu;
  /// Button, Shift, X, Y in view pixels.
  Event<std::int32_t, std::int32_t, float, float> MouseDown;
  Event<std::int32_t, std::int32_t, float, float> MouseMove;
  /// Always raised before the `Click` of the same gesture.
  Event<std::int32_t, std::int32_t, float, float> MouseUp;
  /// Button, Shift, PixelX, PixelY; raised while the pointer is over the picture.
  Event<std::int32_t, std::int32_t, std::int32_t, std::int32_t> MouseMovePixel;
  /// `PointerPixel` has changed without a `MouseMovePixel`: the picture was scrolled, zoomed or moved under a
  /// resting pointer, or the pointer has left the picture.
  Event<> PointerPixelChanged;
  /// The new factor; the view still shows the old one.
  Event<double> BeforeZoomChanged;
  /// After each change of the picture, undo and redo included, but not after a load.
  Event<> Changed;
  /// After a load.
  Event<> Loaded;
  /// `Modified` has changed. After a change of the picture it is raised before `Changed` or `Loaded`.
  Event<> ModifiedChanged;
  /// The undo steps have changed without the picture, by `UndoLevels` or an undo point.
  Event<> UndoStepsChanged;
  /// The picture is in the back buffer; a handler may draw over it.
  Event<DeviceContext&> DoubleBufferPaintAfter;
  /// Left, Top, Width, Height during, and at the end of, the drag or move of a selection. A drag that is
  /// canceled ends with a `SelectChanged` that carries the rectangle from before it.
  Event<std::int32_t, std::int32_t, std::int32_t, std::int32_t> SelectChanged;
  Event<std::int32_t, std::int32_t, std::int32_t, std::int32_t> Selected;
  /// The wheel was turned with Ctrl held: 1 zooms in, -1 zooms out. A write of `Zoom` in the handler keeps
  /// the picture pixel under the pointer in place.
  Event<std::int32_t> WheelZoom;
  /// During and after panning with the pan tool; during and after any other scrolling.
  Event<> Pan;
  Event<> PanChanged;
  Event<> Scroll;
  Event<> ScrollChanged;
  /// The user pressed the button of the notice; the notice stays.
  Event<> NoticeAction;
};

}  // namespace kestrel
