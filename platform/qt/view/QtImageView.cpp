#include "QtImageView.h"

#include <utility>

#include "Cursors.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kMarchMilliseconds = 120;
constexpr int kAutoScrollMilliseconds = 30;

}  // namespace

QtImageView::QtImageView(ImageSurface& surface, ControlId id, engine::ClipboardPort& clipboard)
    : WidgetControl(surface, std::move(id), clipboard), surface_(&surface) {
  march_.setInterval(kMarchMilliseconds);
  autoScroll_.setInterval(kAutoScrollMilliseconds);
  QObject::connect(&march_, &QTimer::timeout, &march_, [this] { guarded([this] { step(); }); });
  QObject::connect(&autoScroll_, &QTimer::timeout, &autoScroll_,
                   [this] { guarded([this] { timer(engine::ViewTimer::autoScroll); }); });
  QObject::connect(&surface.canvas(), &ViewCanvas::painted, receiver(), [this] { painted(); });
  keepTranslated(surface, *receiver(), [this] {
    if (!notice_.empty()) showNotice(notice_, noticeAction_);
  });
  surface.setView(this);
}

QtImageView::~QtImageView() {
  if (surface_) surface_->setView(nullptr);
}

void QtImageView::invalidate(const Rectangle& area) {
  if (surface_) surface_->canvas().invalidate(QRect(area.Left, area.Top, area.Width, area.Height));
}

void QtImageView::repaint() {
  if (!surface_) return;
  surface_->canvas().invalidateAll();
  if (surface_->canvas().isVisible()) surface_->canvas().repaint();
}

void QtImageView::showCursor(engine::ViewCursor cursor) {
  if (surface_) surface_->canvas().setCursor(cursorOf(cursor));
}

void QtImageView::scrollRangesChanged() {
  if (surface_) surface_->updateBars();
}

void QtImageView::setTimer(engine::ViewTimer which, bool on) {
  if (which == engine::ViewTimer::autoScroll) return on ? autoScroll_.start() : autoScroll_.stop();
  marching_ = on;  // started by the painting of the ants
  if (!on) march_.stop();
}

/// A view that is hidden, minimized or covered is not painted: its ants halt after one step until it is.
void QtImageView::step() {
  if (!std::exchange(painted_, false)) return march_.stop();
  timer(engine::ViewTimer::march);
}

void QtImageView::painted() {
  painted_ = true;
  if (marching_ && !march_.isActive()) march_.start();
}

void QtImageView::showNotice(const std::string& text, const std::string& action) {
  notice_ = text;
  noticeAction_ = action;
  if (surface_) surface_->showNotice(translated(text), withoutAccessKey(translated(action)));
}

Size QtImageView::sizeWithoutBars() const {
  if (!surface_) return {};
  const QSize size = surface_->deviceSizeWithoutBars();
  return {size.width(), size.height()};
}

}  // namespace kestrel::qt
