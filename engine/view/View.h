#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Gesture.h"
#include "PaintBuffer.h"
#include "Painter.h"
#include "Selection.h"
#include "ViewAxis.h"
#include "ViewInput.h"
#include "engine/imgx/ClipboardPort.h"
#include "engine/imgx/Face.h"
#include "engine/undo/EditablePicture.h"
#include "imaging/contract/ImageView.h"

namespace kestrel::engine {

class ImgXObject;

/// The toolkit-free half of the image view: everything except the window.
///
/// A platform derives from it, adds the members of `Control`, forwards input, shows the buffer that `paint`
/// fills, and implements the hooks at the end. All positions and sizes are in device pixels of the view,
/// whose top left corner is (0, 0); a buffer is the whole view. Not thread-safe.
class View : public Face<ImageView>, private GestureHost {
 public:
  /// The clipboard must outlive the view.
  explicit View(ClipboardPort& clipboard);
  ~View() override;

  // The contract.
  std::shared_ptr<kestrel::ImgX> ImgX() override;
  PicturePtr Picture() override;
  void Picture(const PicturePtr& value) override;
  double Zoom() const override { return horizontal_.zoom(); }
  void Zoom(double value) override;
  double FitZoom() const override;
  std::int32_t ScrollLeft() const override { return horizontal_.scroll(); }
  void ScrollLeft(std::int32_t value) override;
  std::int32_t ScrollTop() const override { return vertical_.scroll(); }
  void ScrollTop(std::int32_t value) override;
  std::int32_t SelectionLeft() const override { return selection_.rectangle.Left; }
  std::int32_t SelectionTop() const override { return selection_.rectangle.Top; }
  std::int32_t SelectionWidth() const override { return selection_.rectangle.Width; }
  void SelectionWidth(std::int32_t value) override;
  std::int32_t SelectionHeight() const override { return selection_.rectangle.Height; }
  void SelectionHeight(std::int32_t value) override;
  bool SelectionVisible() const override { return selection_.visible; }
  void SelectionVisible(bool value) override;
  void SetSelectionRect(std::int32_t left, std::int32_t top, std::int32_t width,
                        std::int32_t height) override;
  std::optional<Point> PointerPixel() const override;
  std::int32_t Tool() const override { return tool_; }
  void Tool(std::int32_t value) override;
  std::int32_t UndoLevels() const override { return picture_->history().levels(); }
  void UndoLevels(std::int32_t value) override { picture_->undoLevels(value); }
  std::size_t UndoMemoryLimit() const override { return picture_->history().memoryLimit(); }
  void UndoMemoryLimit(std::size_t bytes) override { picture_->undoMemoryLimit(bytes); }
  void Undo() override;
  void Redo() override;
  bool CanUndo() const override { return picture_->history().undoSteps() > 0; }
  bool CanRedo() const override { return picture_->history().redoSteps() > 0; }
  std::string UndoName() const override { return picture_->history().undoName(); }
  std::string RedoName() const override { return picture_->history().redoName(); }
  std::unique_ptr<UndoPoint> CreateUndoPoint(const std::string& name) override;
  bool Modified() const override { return picture_->modified(); }
  void Modified(bool value) override { picture_->modified(value); }
  void Refresh() override { repaint(); }
  void DoubleBuffer(bool value) override;
  void BackgroundImage(const kestrel::Image* value) override;
  std::int32_t MousePointer() const override { return mousePointer_; }
  void MousePointer(std::int32_t value) override;
  void ImageBorder(bool value) override;
  void MousePointerStyle(std::int32_t value) override { mousePointerStyle_ = value; }
  void AutoRedrawSelection(bool value) override { autoRedrawSelection_ = value; }
  void SelectionStyle(std::int32_t value) override;
  std::string Notice() const override { return notice_; }
  void Notice(const std::string& text, const std::string& action) override;
  std::string EmptyHint() const override { return emptyHint_; }
  void EmptyHint(const std::string& text) override;

  /// The line to draw over the painted view now: the hint while there is no picture, else empty.
  std::string shownHint() const { return picture_->empty() ? emptyHint_ : std::string(); }

  /// Bytes that the undo stack holds.
  std::size_t undoMemory() const { return picture_->undoMemory(); }

  // Input and paint requests from the platform.

  /// Call when the view's size has changed.
  void resize(std::int32_t width, std::int32_t height);
  /// Device pixels per logical pixel: scales handles and the click tolerance.
  void deviceScale(double value) { deviceScale_ = value; }

  /// Paints the part `area` of the view. Errors of a `DoubleBufferPaintAfter` handler propagate.
  void paint(const PaintBuffer& buffer, const Rectangle& area);

  /// `button` and `shift` are masks from Types.h; for a move, `button` holds the pressed buttons. The middle
  /// button pans with any tool, without `MouseDown`, `MouseUp` and `Click`. `again` marks the second press of
  /// a double click.
  void pointerDown(std::int32_t button, std::int32_t shift, float x, float y, bool again = false);
  void pointerMove(std::int32_t button, std::int32_t shift, float x, float y);
  void pointerUp(std::int32_t button, std::int32_t shift, float x, float y);
  /// The pointer has come over the view, which may have been covered, at this position.
  void pointerEnter(float x, float y);
  /// The view has moved under the resting pointer, whose position in the view is now this one.
  void pointerShifted(float x, float y);
  /// The pointer has left the view, or the window system has released its capture.
  void pointerLeave();
  /// Wheel rotation in notches or fractions, positive upwards and to the left. Scrolls; with Shift the axes
  /// are swapped; with Ctrl each full vertical notch raises `WheelZoom`.
  void wheel(float notchesX, float notchesY, std::int32_t shift, float x, float y);
  /// Touchpad scrolling: moves the picture by x pixels to the right and y down.
  void scrollBy(float x, float y);
  /// Returns false if the view does not handle the key in its present state.
  bool keyDown(ViewKey key, std::int32_t shift);
  /// Whether a drag is under way, which Escape would end.
  bool isDragging() const { return gesture_ != nullptr; }
  /// The user has closed the notice.
  void closeNotice() { Notice({}, {}); }
  /// Call at the timer's interval while it is on.
  void timer(ViewTimer which);

  ScrollRange horizontalScroll() const { return horizontal_.range(); }
  ScrollRange verticalScroll() const { return vertical_.range(); }
  /// The user has moved the scroll bars to these positions.
  void scrollTo(std::int32_t x, std::int32_t y);

 protected:
  // Hooks. None may paint or raise errors, except `repaint`.

  /// Schedules a repaint of a part of the view.
  virtual void invalidate(const Rectangle& area) = 0;
  /// Paints the whole view immediately, if it is visible.
  virtual void repaint() = 0;
  virtual void showCursor(ViewCursor cursor) = 0;
  /// `horizontalScroll` and `verticalScroll` have changed.
  virtual void scrollRangesChanged() = 0;
  virtual void setTimer(ViewTimer which, bool on) = 0;
  /// `text` replaces the notice shown; an empty text removes it.
  virtual void showNotice(const std::string& text, const std::string& action) = 0;
  /// The size that the view would have without scroll bars.
  virtual Size sizeWithoutBars() const { return {horizontal_.view(), vertical_.view()}; }

 private:
  /// During its lifetime a write of `Zoom` keeps the pixel under the pointer in place.
  class ZoomingAtPointer {
   public:
    explicit ZoomingAtPointer(bool& flag) : flag_(flag) { flag_ = true; }
    ZoomingAtPointer(const ZoomingAtPointer&) = delete;
    ZoomingAtPointer& operator=(const ZoomingAtPointer&) = delete;
    ~ZoomingAtPointer() { flag_ = false; }

   private:
    bool& flag_;
  };

  // PictureOwner
  EditablePicture& picture() override { return *picture_; }
  void putPicture(PictureState state, const std::string& undoName) override;

  // GestureHost
  const ViewAxis& horizontal() const override { return horizontal_; }
  const ViewAxis& vertical() const override { return vertical_; }
  EditablePicture& gesturePicture() override { return *picture_; }
  Colour drawColor() const override { return settings_->drawColor; }
  std::int32_t penWidth() const override { return settings_->penWidth; }
  bool outlined() const override { return settings_->fillMode == kFillNone; }
  const Selection& selection() const override { return selection_; }
  void select(const Rectangle& rectangle) override;
  void selectEnded() override;
  void selectCanceled(const Selection& before) override;
  void putSelection(const Selection& selection) override { setSelection(selection); }
  void pan(double x, double y, bool withPanTool) override;
  void panEnded(bool withPanTool) override;
  void pictureDrawn(const Rectangle& area) override;
  void invalidateView(const Rectangle& area) override;

  void pictureChanged(const PictureChange& change);
  void keepPlace();
  void reportPointerPixel();
  void measure();
  void invalidateAll() { invalidate({0, 0, horizontal_.view(), vertical_.view()}); }
  bool moveTo(double x, double y);
  void scrollAndNotify(double x, double y);
  void turnZoomWheel(float notches);

  void setSelection(const Selection& selection);
  void writeSelection(const Selection& selection);
  void invalidateSelection();
  std::int32_t handleReach() const;
  Rectangle inView(const Rectangle& pictureArea) const;
  bool nudgeSelection(ViewKey key, std::int32_t shift);
  bool scrollByKey(ViewKey key);
  SelectionPart selectionPartAt(PointD at) const;
  void paintSelection(const PaintBuffer& buffer, const Rectangle& area) const;

  bool isOverPicture(PointD at) const;
  std::unique_ptr<Gesture> newGesture(std::int32_t button, PointD at);
  void followPointer(PointD at, std::int32_t shift);
  void dragGesture();
  void cancelGesture();
  void setAutoScroll(bool on);
  void updateCursor();
  ViewCursor cursorAt(PointD at) const;

  ClipboardPort& clipboard_;
  std::shared_ptr<EditablePicture> picture_;
  std::shared_ptr<ImgXObject> imgX_;
  ViewAxis horizontal_;
  ViewAxis vertical_;
  Painter painter_;
  Bitmap background_;

  Selection selection_;
  std::int32_t marchPhase_ = 0;

  std::int32_t tool_ = kViewToolNone;
  std::int32_t mousePointer_ = kPointerDefault;
  std::int32_t mousePointerStyle_ = 0;
  bool doubleBuffer_ = false;
  bool imageBorder_ = false;
  bool autoRedrawSelection_ = true;
  ViewCursor cursor_ = ViewCursor::arrow;
  double deviceScale_ = 1.0;

  std::unique_ptr<Gesture> gesture_;
  std::int32_t gestureButton_ = 0;
  std::int32_t pressedButton_ = 0;  ///< the button pressed last
  PointD pressedAt_;
  PointD pointer_;
  bool pointerInside_ = false;  ///< the pointer is over the view or captured by it
  std::optional<Point> reportedPixel_;
  std::int32_t shift_ = 0;
  bool dragged_ = false;
  bool pressedAgain_ = false;  ///< the second press of a double click
  bool autoScrolling_ = false;
  bool zoomsAtPointer_ = false;  ///< zooming keeps the pixel under the pointer in place, not the center
  float wheelRest_ = 0;          ///< fraction of a notch towards the next `WheelZoom`

  std::string notice_;
  std::string noticeAction_;
  std::string emptyHint_;
};

}  // namespace kestrel::engine
