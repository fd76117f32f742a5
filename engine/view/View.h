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

/// The toolkit-free half of the image view: everything but a window.
///
/// A platform derives from it. It adds the members of `Control`, hands over what the user does, shows what
/// `paint` paints, and answers the hooks at the end. All positions and sizes are device pixels of the view,
/// whose top left corner is (0, 0); a buffer is the whole view. Everything happens on the calling thread.
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
  void DoubleBuffer(bool value) override { doubleBuffer_ = value; }
  void BackgroundImage(const kestrel::Image* value) override;
  std::int32_t MousePointer() const override { return mousePointer_; }
  void MousePointer(std::int32_t value) override;
  void ImageBorder(bool value) override;
  void MousePointerStyle(std::int32_t value) override { mousePointerStyle_ = value; }
  void AutoRedrawSelection(bool value) override { autoRedrawSelection_ = value; }
  void SelectionStyle(std::int32_t value) override;
  std::string Notice() const override { return notice_; }
  void Notice(const std::string& text, const std::string& action) override;

  /// Bytes that the undo stack holds.
  std::size_t undoMemory() const { return picture_->undoMemory(); }

  // What a platform hands over.

  /// The view's size has changed.
  void resize(std::int32_t width, std::int32_t height);
  /// Device pixels per unit of the desktop: how large handles are and what still counts as a click.
  void deviceScale(double value) { deviceScale_ = value; }

  /// Paints the part `area` of the view. Raises what a handler of `DoubleBufferPaintAfter` raises.
  void paint(const PaintBuffer& buffer, const Rectangle& area);

  /// `button` and `shift` are made of the masks in Types.h; of a move, the buttons that are held. The middle
  /// button pans with any tool, and raises neither `MouseDown` nor `MouseUp` nor `Click`.
  void pointerDown(std::int32_t button, std::int32_t shift, float x, float y);
  void pointerMove(std::int32_t button, std::int32_t shift, float x, float y);
  void pointerUp(std::int32_t button, std::int32_t shift, float x, float y);
  /// The pointer has left the view, or the window system has taken it away.
  void pointerLeave();
  /// Turns of the wheel in notches, or parts of them, positive upwards and leftwards. Upright ones scroll,
  /// with Shift sideways, and with Ctrl raise `WheelZoom` for each full notch.
  void wheel(float notchesX, float notchesY, std::int32_t shift, float x, float y);
  /// A touchpad's scrolling: the picture moves by so much to the right and down.
  void scrollBy(float x, float y);
  /// False if the key means nothing to the view at this moment.
  bool keyDown(ViewKey key, std::int32_t shift);
  /// Whether a drag is under way, which Escape would end.
  bool isDragging() const { return gesture_ != nullptr; }
  /// The user has closed the notice.
  void closeNotice() { Notice({}, {}); }
  /// To be called while the timer is on.
  void timer(ViewTimer which);

  ScrollRange horizontalScroll() const { return horizontal_.range(); }
  ScrollRange verticalScroll() const { return vertical_.range(); }
  /// The scroll bars stand at these positions.
  void scrollTo(std::int32_t x, std::int32_t y);

 protected:
  // The hooks. None of them may paint or raise errors, except `repaint`.

  /// A part of the view has to be painted, soon.
  virtual void invalidate(const Rectangle& area) = 0;
  /// Paints the whole view now, if it can be seen.
  virtual void repaint() = 0;
  virtual void showCursor(ViewCursor cursor) = 0;
  /// `horizontalScroll` and `verticalScroll` have changed.
  virtual void scrollRangesChanged() = 0;
  virtual void setTimer(ViewTimer which, bool on) = 0;
  /// `text` takes the place of the notice that was shown; an empty one takes it away.
  virtual void showNotice(const std::string& text, const std::string& action) = 0;

 private:
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
  void selectCancelled(const Selection& before) override;
  void putSelection(const Selection& selection) override { setSelection(selection); }
  void pan(double x, double y, bool withPanTool) override;
  void panEnded(bool withPanTool) override;
  void pictureDrawn(const Rectangle& area) override;
  void invalidateView(const Rectangle& area) override;

  void pictureChanged(const PictureChange& change);
  void measure();
  void invalidateAll() { invalidate({0, 0, horizontal_.view(), vertical_.view()}); }
  bool moveTo(double x, double y);
  void scrollAndTell(double x, double y);
  void turnZoomWheel(float notches, PointD at);

  void setSelection(const Selection& selection);
  void writeSelection(const Selection& selection);
  void invalidateSelection();
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
  std::int32_t pressedButton_ = 0;  ///< the one that was pressed last
  PointD pressedAt_;
  PointD pointer_;
  bool pointerInside_ = false;  ///< the pointer is over the view, or held by it
  std::int32_t shift_ = 0;
  bool dragged_ = false;
  bool autoScrolling_ = false;
  bool wheeling_ = false;  ///< zooming keeps the pixel under the pointer, not the middle
  float wheelRest_ = 0;    ///< part of a notch towards the next `WheelZoom`

  std::string notice_;
  std::string noticeAction_;
};

}  // namespace kestrel::engine
