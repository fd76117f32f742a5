#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QStyle>
#include <QToolTip>
#include <QWheelEvent>
#include <cmath>
#include <optional>
#include <utility>

#include "FileTraffic.h"
#include "ThumbnailArea.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Keys.h"
#include "platform/qt/core/Text.h"
#include "platform/thumbnailview/ThumbnailViewModel.h"

namespace kestrel::qt {
namespace {

constexpr double kNotch = 120;  // the toolkit's angle per wheel notch
/// Logical pixels that a line of a wheel's notch scrolls: three of them are most of a row of thumbnails.
constexpr double kWheelLine = 40;

std::optional<thumbnails::Key> viewKeyOf(const QKeyEvent& event) {
  using thumbnails::Key;
  if (event.matches(QKeySequence::SelectAll)) return Key::kSelectAll;
  switch (event.key()) {
    case Qt::Key_Left:
      return Key::kLeft;
    case Qt::Key_Right:
      return Key::kRight;
    case Qt::Key_Up:
      return Key::kUp;
    case Qt::Key_Down:
      return Key::kDown;
    case Qt::Key_Home:
      return Key::kHome;
    case Qt::Key_End:
      return Key::kEnd;
    case Qt::Key_PageUp:
      return Key::kPageUp;
    case Qt::Key_PageDown:
      return Key::kPageDown;
    case Qt::Key_Space:
      return Key::kSpace;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return Key::kEnter;
    case Qt::Key_Delete:
      return Key::kDelete;
    case Qt::Key_Escape:
      return Key::kEscape;
    default:
      return std::nullopt;
  }
}

bool isClipboardKey(const QKeyEvent& event) {
  // The toolkit cuts by Shift+Delete, too; file managers delete by it.
  if (event.key() == Qt::Key_Delete) return false;
  return event.matches(QKeySequence::Copy) || event.matches(QKeySequence::Cut) ||
         event.matches(QKeySequence::Paste);
}

/// Whether the key types a character, which leads to a name.
bool typesCharacter(const QKeyEvent& event) {
  const bool command = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  return !command && !event.text().isEmpty() && event.text().front().isPrint();
}

}  // namespace

void ThumbnailArea::mousePressEvent(QMouseEvent* event) {
  glide_.stop();
  QToolTip::hideText();
  dragWanted_ = false;
  const std::int32_t button = buttonMaskOf(event->button());
  if (!view_ || button == 0) return;
  guarded([&] { view_->pointerDown(button, shiftMaskOf(event->modifiers()), toView(event->position())); });
}

void ThumbnailArea::mouseDoubleClickEvent(QMouseEvent* event) {
  const std::int32_t button = buttonMaskOf(event->button());
  if (!view_ || button == 0) return;
  guarded(
      [&] { view_->pointerDoubleClick(button, shiftMaskOf(event->modifiers()), toView(event->position())); });
}

void ThumbnailArea::mouseMoveEvent(QMouseEvent* event) {
  if (!view_) return;
  if (event->buttons() == Qt::NoButton) return hover(event->position().toPoint());
  if (!(event->buttons() & Qt::LeftButton)) return;
  guarded([&] { view_->pointerMove(shiftMaskOf(event->modifiers()), toView(event->position())); });
  if (std::exchange(dragWanted_, false) && files_) {
    hoverItem(-1);
    files_->drag();
  }
}

void ThumbnailArea::mouseReleaseEvent(QMouseEvent* event) {
  const std::int32_t button = buttonMaskOf(event->button());
  if (!view_ || button == 0) return;
  const QPointer<ThumbnailArea> self(this);  // a handler may destroy it
  const QPoint position = event->position().toPoint();
  guarded([&] { view_->pointerUp(button, shiftMaskOf(event->modifiers()), toView(event->position())); });
  if (self) hover(position);
}

void ThumbnailArea::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (!view_) return;
  QToolTip::hideText();
  const double scale = painter_.scale();
  const bool sideways = view_->arrangement().scrollsSideways();
  // A film strip follows a wheel that turns either way.
  const auto along = [sideways](const QPoint& delta) {
    return sideways && std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
  };
  if (view_->arrangement().view() == kViewSingle) {
    wheelRest_ -= along(event->angleDelta()) / kNotch;
    const int steps = static_cast<int>(wheelRest_);
    wheelRest_ -= steps;
    for (int step = 0; step < std::abs(steps) && view_; ++step) {
      guarded([&] { view_->key(steps > 0 ? thumbnails::Key::kRight : thumbnails::Key::kLeft, 0); });
    }
    return;
  }
  const bool byTouchpad = !event->pixelDelta().isNull() && event->phase() != Qt::NoScrollPhase;
  if (byTouchpad) return glide_.add(-along(event->pixelDelta()) * scale, false);
  const double lines = along(event->angleDelta()) / kNotch * QApplication::wheelScrollLines();
  const bool animated = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
  glide_.add(-lines * kWheelLine * scale, animated);
}

bool ThumbnailArea::claimsKey(const QKeyEvent& event) const {
  if (!view_) return false;
  const auto key = viewKeyOf(event);
  // Escape belongs to the view only while it ends a rubber band.
  if (key == thumbnails::Key::kEscape) return view_->rubberBand().Width > 0;
  return key || isClipboardKey(event) || typesCharacter(event);
}

bool ThumbnailArea::useClipboardKey(const QKeyEvent& event) {
  if (!files_ || !isClipboardKey(event)) return false;
  if (event.matches(QKeySequence::Copy)) {
    files_->copy();
  } else if (event.matches(QKeySequence::Cut)) {
    files_->cut();
  } else {
    files_->paste();
  }
  return true;
}

void ThumbnailArea::keyPressEvent(QKeyEvent* event) {
  event->ignore();
  if (!view_) return;
  glide_.stop();
  bool used = false;
  const std::int32_t modifiers = shiftMaskOf(event->modifiers());
  guarded([&] {
    if (isContextMenuKey(*event)) {
      used = view_->contextKey();
    } else if (useClipboardKey(*event)) {
      used = true;
    } else if (const auto key = viewKeyOf(*event)) {
      used = view_->key(*key, modifiers);
    } else if (typesCharacter(*event)) {
      used = view_->type(fromQt(event->text()));
    }
  });
  event->setAccepted(used);
}

QVariant ThumbnailArea::inputMethodQuery(Qt::InputMethodQuery query) const {
  const std::int32_t item = view_ ? view_->focusItem() : -1;
  if (query != Qt::ImCursorRectangle || item < 0) return QAbstractScrollArea::inputMethodQuery(query);
  const bool alone = view_->arrangement().view() == kViewSingle;
  const QRect place = fromView(alone ? view_->largePicture().target : view_->placeOf(item).picture);
  return place.translated(viewport()->pos());
}

void ThumbnailArea::contextMenuEvent(QContextMenuEvent* event) {
  // Not every platform sends this event for the key, so the key itself opens the menu.
  event->accept();
  if (!view_ || event->reason() == QContextMenuEvent::Keyboard) return;
  guarded([&] { view_->contextClick(toView(event->pos())); });
}

void ThumbnailArea::dragEnterEvent(QDragEnterEvent* event) {
  event->ignore();
  if (!files_) return;
  files_->dragEntered(*event);
  dragMoveEvent(event);
}

void ThumbnailArea::dragMoveEvent(QDragMoveEvent* event) {
  const Qt::DropAction action = files_ ? files_->dropAction(*event) : Qt::IgnoreAction;
  setDropping(action != Qt::IgnoreAction);
  event->setDropAction(action);
  event->setAccepted(action != Qt::IgnoreAction);
}

void ThumbnailArea::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
  setDropping(false);
  if (files_) files_->dragLeft();
}

void ThumbnailArea::dropEvent(QDropEvent* event) {
  event->ignore();
  setDropping(false);
  if (files_) files_->drop(*event);
}

}  // namespace kestrel::qt
