#include "ViewCanvas.h"

#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>
#include <optional>
#include <utility>

#include "PictureAccessibility.h"
#include "engine/view/View.h"
#include "platform/qt/core/DevicePixels.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Keys.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {
namespace {

/// Gray of contrast 4.5:1 to the view's white surroundings, which are the same in all themes.
constexpr QColor kHintColor(0x76, 0x76, 0x76);
constexpr int kHintMargin = 16;
constexpr float kNotch = 120.0F;  // the toolkit's angle per wheel notch

std::optional<engine::ViewKey> viewKeyOf(int key) {
  switch (key) {
    case Qt::Key_Left:
      return engine::ViewKey::left;
    case Qt::Key_Right:
      return engine::ViewKey::right;
    case Qt::Key_Up:
      return engine::ViewKey::up;
    case Qt::Key_Down:
      return engine::ViewKey::down;
    case Qt::Key_PageUp:
      return engine::ViewKey::pageUp;
    case Qt::Key_PageDown:
      return engine::ViewKey::pageDown;
    case Qt::Key_Home:
      return engine::ViewKey::home;
    case Qt::Key_End:
      return engine::ViewKey::end;
    case Qt::Key_Escape:
      return engine::ViewKey::escape;
    default:
      return std::nullopt;
  }
}

}  // namespace

ViewCanvas::ViewCanvas(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  useAccessiblePictures();
  keepTranslated(*this, *this, [this] {
    setAccessibleName(translated("Picture"));
    update();  // the hint
  });
}

void ViewCanvas::setView(engine::View* view) {
  view_ = view;
  deviceSize_ = {};
  measure();
}

QPointF ViewCanvas::toView(const QPointF& position) const { return toDevicePixels(*this, position); }

QPointF ViewCanvas::screenToView(const QPoint& screen) const {
  return toView(mapFromGlobal(pointer_.toPoint() == screen ? pointer_ : QPointF(screen)));
}

QPointF ViewCanvas::pointerInView(const QPointF& position) {
  pointer_ = mapToGlobal(position);
  return toView(position);
}

QVariant ViewCanvas::inputMethodQuery(Qt::InputMethodQuery query) const {
  if (query != Qt::ImCursorRectangle || !view_ || !view_->SelectionVisible()) {
    return QWidget::inputMethodQuery(query);
  }
  const double zoom = view_->Zoom();
  const QRectF selection((view_->SelectionLeft() - view_->ScrollLeft()) * zoom,
                         (view_->SelectionTop() - view_->ScrollTop()) * zoom, view_->SelectionWidth() * zoom,
                         view_->SelectionHeight() * zoom);
  return fromDevicePixels(*this, selection.normalized().toAlignedRect()) & rect();
}

void ViewCanvas::measure() {
  if (!view_) return;
  const QSize size = deviceSizeOf(*this);
  if (size == deviceSize_ && factor_ == devicePixelRatioF()) return;
  deviceSize_ = size;
  factor_ = devicePixelRatioF();
  buffer_ = QImage(size, QImage::Format_RGB32);
  invalidateAll();
  view_->deviceScale(factor_);
  guarded([this] { view_->resize(deviceSize_.width(), deviceSize_.height()); });
}

void ViewCanvas::invalidate(const QRect& deviceArea) {
  dirty_ += deviceArea;
  const double factor = devicePixelRatioF();
  const QRectF logical(deviceArea.x() / factor, deviceArea.y() / factor, deviceArea.width() / factor,
                       deviceArea.height() / factor);
  update(logical.toAlignedRect().adjusted(-1, -1, 1, 1));
}

void ViewCanvas::invalidateAll() {
  dirty_ = QRect(QPoint(), deviceSize_);
  update();
}

void ViewCanvas::paintDirty() {
  if (!view_) {
    buffer_.fill(palette().color(QPalette::Dark));
    return;
  }
  const engine::PaintBuffer target{buffer_.bits(), static_cast<std::size_t>(buffer_.bytesPerLine()),
                                   buffer_.width(), buffer_.height(), engine::ChannelOrder::bgra};
  const QRegion dirty = std::exchange(dirty_, {}) & QRect(QPoint(), deviceSize_);
  for (const QRect& part : dirty) {
    guarded([&] { view_->paint(target, {part.x(), part.y(), part.width(), part.height()}); });
  }
}

void ViewCanvas::paintEvent(QPaintEvent* /*event*/) {
  measure();
  if (buffer_.isNull()) return;
  paintDirty();

  QPainter painter(this);
  useDevicePixels(painter);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.drawImage(0, 0, buffer_);
  paintHint(painter);
  Q_EMIT painted();
}

void ViewCanvas::paintHint(QPainter& painter) const {
  const QString hint = view_ ? translated(view_->shownHint()) : QString();
  if (hint.isEmpty()) return;
  painter.resetTransform();
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter.setPen(kHintColor);
  painter.drawText(rect().adjusted(kHintMargin, kHintMargin, -kHintMargin, -kHintMargin),
                   Qt::AlignCenter | Qt::TextWordWrap, hint);
}

bool ViewCanvas::event(QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride) return QWidget::event(event);
  // The arrow keys belong to the picture, not to the way from field to field; Escape only while it ends a
  // drag.
  const auto key = viewKeyOf(static_cast<QKeyEvent*>(event)->key());
  const bool claims = key && (key != engine::ViewKey::escape || (view_ && view_->isDragging()));
  event->setAccepted(claims);
  return claims;
}

void ViewCanvas::resizeEvent(QResizeEvent* /*event*/) { measure(); }

void ViewCanvas::moveEvent(QMoveEvent* /*event*/) { moved(); }

void ViewCanvas::moved() {
  measure();
  if (!view_) return;
  const QPointF at = toView(mapFromGlobal(pointer_));
  guarded([&] { view_->pointerShifted(static_cast<float>(at.x()), static_cast<float>(at.y())); });
}

void ViewCanvas::press(const QMouseEvent& event, bool again) {
  const QPointF at = pointerInView(event.position());
  const std::int32_t button = buttonMaskOf(event.button());
  if (!view_ || button == 0) return;
  guarded([&] {
    view_->pointerDown(button, shiftMaskOf(event.modifiers()), static_cast<float>(at.x()),
                       static_cast<float>(at.y()), again);
  });
}

void ViewCanvas::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = pointerInView(event->position());
  if (!view_) return;
  guarded([&] {
    view_->pointerMove(buttonMaskOf(event->buttons()), shiftMaskOf(event->modifiers()),
                       static_cast<float>(at.x()), static_cast<float>(at.y()));
  });
}

void ViewCanvas::mouseReleaseEvent(QMouseEvent* event) {
  const QPointF at = pointerInView(event->position());
  const std::int32_t button = buttonMaskOf(event->button());
  if (!view_ || button == 0) return;
  guarded([&] {
    view_->pointerUp(button, shiftMaskOf(event->modifiers()), static_cast<float>(at.x()),
                     static_cast<float>(at.y()));
  });
}

void ViewCanvas::enterEvent(QEnterEvent* event) {
  const QPointF at = pointerInView(event->position());
  if (!view_) return;
  guarded([&] { view_->pointerEnter(static_cast<float>(at.x()), static_cast<float>(at.y())); });
}

void ViewCanvas::leaveEvent(QEvent* /*event*/) {
  if (view_) guarded([this] { view_->pointerLeave(); });
}

void ViewCanvas::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (!view_) return;
  const std::int32_t shift = shiftMaskOf(event->modifiers());
  const bool byTouchpad = !event->pixelDelta().isNull() && event->phase() != Qt::NoScrollPhase;
  const QPointF at = pointerInView(event->position());
  guarded([&] {
    if (byTouchpad && !(shift & kCtrlMask)) {
      const QPointF moved = QPointF(event->pixelDelta()) * devicePixelRatioF();
      view_->scrollBy(static_cast<float>(moved.x()), static_cast<float>(moved.y()));
    } else {
      const QPoint turned = event->angleDelta();
      view_->wheel(static_cast<float>(turned.x()) / kNotch, static_cast<float>(turned.y()) / kNotch, shift,
                   static_cast<float>(at.x()), static_cast<float>(at.y()));
    }
  });
}

void ViewCanvas::keyPressEvent(QKeyEvent* event) {
  if (view_ && isContextMenuKey(*event)) {
    guarded([this] { view_->ContextMenu(); });
    return;
  }
  const auto key = viewKeyOf(event->key());
  bool used = false;
  if (view_ && key) guarded([&] { used = view_->keyDown(*key, shiftMaskOf(event->modifiers())); });
  event->setAccepted(used);
  // One press of Escape ends the drag and a pending paste or crop.
  if (used && key == engine::ViewKey::escape) SiteWidget::forwardKey(*this, *event);
}

void ViewCanvas::contextMenuEvent(QContextMenuEvent* event) {
  // Not every platform sends this event for the key, so the key itself opens the menu.
  event->setAccepted(event->reason() == QContextMenuEvent::Keyboard);
}

}  // namespace kestrel::qt
