#include "ThumbnailArea.h"

#include <QApplication>
#include <QCursor>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "FileTraffic.h"
#include "ThumbnailAccessibility.h"
#include "ThumbnailTexts.h"
#include "platform/qt/core/DevicePixels.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"
#include "platform/thumbnailview/ThumbnailViewModel.h"

namespace kestrel::qt {
namespace {

/// Clicks on an arrow of the scroll bar for one row, or item of the film strip.
constexpr int kLinesPerStep = 4;

QRect rectOf(const Rectangle& area) { return {area.Left, area.Top, area.Width, area.Height}; }

int clamped(std::int64_t value) {
  return static_cast<int>(std::clamp<std::int64_t>(value, 0, std::numeric_limits<int>::max()));
}

}  // namespace

ThumbnailArea::ThumbnailArea(QWidget* parent)
    : QAbstractScrollArea(parent), glide_([this](std::int64_t distance) {
        if (!view_) return false;
        const std::int64_t before = view_->scroll();
        guarded([&] { view_->scrollBy(distance); });
        return view_ && view_->scroll() != before;
      }) {
  useAccessibleThumbnails();
  setFocusPolicy(Qt::StrongFocus);
  setAcceptDrops(true);
  keepTranslated(*this, *this, [this] {
    setAccessibleName(translated("Thumbnails"));
    viewport()->update();  // the message
  });
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  viewport()->setMouseTracking(true);
  catchUpTimer_.setSingleShot(true);
  catchUpTimer_.setInterval(0);
  connect(&catchUpTimer_, &QTimer::timeout, this, &ThumbnailArea::catchUp);
  painter_.adopt(*this);
}

ThumbnailArea::~ThumbnailArea() = default;

void ThumbnailArea::setView(thumbnails::ThumbnailViewModel* view, FileTraffic* files) {
  view_ = view;
  files_ = files;
  hovered_ = -1;
  dragWanted_ = false;
  noted_ = {};
  metrics_ = {};
  glide_.stop();
  if (!view_) return;
  layOutView();
  repaintItems();
}

Point ThumbnailArea::toView(const QPointF& position) const {
  const QPointF device = toDevicePixels(*viewport(), position);
  return {static_cast<std::int32_t>(std::floor(device.x())),
          static_cast<std::int32_t>(std::floor(device.y()))};
}

QRect ThumbnailArea::fromView(const Rectangle& area) const {
  return fromDevicePixels(*viewport(), rectOf(area));
}

void ThumbnailArea::invalidate(const Rectangle& area) {
  viewport()->update(fromView(area).adjusted(-1, -1, 1, 1));
}

void ThumbnailArea::repaintItems() { viewport()->update(); }

void ThumbnailArea::note(bool Noted::*what) {
  noted_.*what = true;
  if (!catchUpTimer_.isActive()) catchUpTimer_.start();
}

void ThumbnailArea::scrollChanged() { note(&Noted::scroll); }
void ThumbnailArea::itemsChanged() { note(&Noted::items); }
void ThumbnailArea::selectionChanged() { note(&Noted::selection); }
void ThumbnailArea::focusItemChanged() { note(&Noted::focus); }

void ThumbnailArea::catchUp() {
  const Noted noted = std::exchange(noted_, {});
  if (!view_) return;
  if (noted.scroll || noted.items) {
    updateBars();
    hover(viewport()->mapFromGlobal(QCursor::pos()));
  }
  if (noted.items) reportItems(*this);
  if (noted.selection) reportSelection(*this);
  if (noted.focus) reportFocus(*this, view_->focusItem());
}

void ThumbnailArea::layOutView() {
  if (!view_) return;
  const QSize size = deviceSizeOf(*viewport());
  const Size viewportSize{size.width(), size.height()};
  thumbnails::Metrics metrics;
  metrics.scale = painter_.scale();
  metrics.lineHeight = painter_.lineHeight();
  metrics.dragDistance = qRound(QApplication::startDragDistance() * painter_.scale());
  if (metrics == metrics_ && viewportSize == view_->arrangement().viewport()) return;
  metrics_ = metrics;
  guarded([&] { view_->layOut(viewportSize, metrics); });
  if (view_) updateBars();
}

void ThumbnailArea::updateBars() {
  if (updatingBars_) return;
  updatingBars_ = true;
  const bool sideways = view_->arrangement().scrollsSideways();
  QScrollBar& used = sideways ? *horizontalScrollBar() : *verticalScrollBar();
  QScrollBar& other = sideways ? *verticalScrollBar() : *horizontalScrollBar();
  other.setRange(0, 0);
  // A bar that appears or vanishes resizes the viewport, which changes the range once more.
  for (int round = 0; round < 2; ++round) {
    const thumbnails::Arrangement& arrangement = view_->arrangement();
    used.setPageStep(clamped(arrangement.page()));
    used.setSingleStep(std::max(1, clamped(arrangement.pitch()) / kLinesPerStep));
    used.setRange(0, clamped(arrangement.scrollRange()));
    used.setValue(clamped(view_->scroll()));
  }
  updatingBars_ = false;
}

void ThumbnailArea::scrollContentsBy(int /*dx*/, int /*dy*/) {
  if (updatingBars_ || !view_) return;
  glide_.stop();
  const QScrollBar& used =
      view_->arrangement().scrollsSideways() ? *horizontalScrollBar() : *verticalScrollBar();
  guarded([&] { view_->scrollTo(used.value()); });
}

void ThumbnailArea::restyle() {
  painter_.adopt(*this);
  layOutView();
  repaintItems();
}

void ThumbnailArea::resizeEvent(QResizeEvent* /*event*/) { layOutView(); }

void ThumbnailArea::moveEvent(QMoveEvent* /*event*/) { layOutView(); }

void ThumbnailArea::hideEvent(QHideEvent* event) {
  QAbstractScrollArea::hideEvent(event);
  glide_.stop();
  hoverItem(-1);
  if (view_) guarded([this] { view_->pointerCancel(); });
}

void ThumbnailArea::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::EnabledChange:
      return restyle();
    case QEvent::ActivationChange:
      restyle();  // inactive windows have other colors
      if (view_ && isActiveWindow()) guarded([this] { view_->activated(); });
      return;
    default:
      return;
  }
}

void ThumbnailArea::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  repaintItems();
  if (view_) reportFocus(*this, view_->focusItem());
}

void ThumbnailArea::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  repaintItems();
}

bool ThumbnailArea::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const bool claims = claimsKey(*static_cast<QKeyEvent*>(event));
    event->setAccepted(claims);
    return claims;
  }
  if (event->type() == QEvent::WindowBlocked && view_) guarded([this] { view_->pointerCancel(); });
  return QAbstractScrollArea::event(event);
}

bool ThumbnailArea::viewportEvent(QEvent* event) {
  switch (event->type()) {
    case QEvent::ToolTip:
      showTip(*static_cast<QHelpEvent*>(event));
      return true;
    case QEvent::Leave:
      hoverItem(-1);
      break;
    default:
      break;
  }
  return QAbstractScrollArea::viewportEvent(event);
}

void ThumbnailArea::showTip(const QHelpEvent& event) {
  const std::int32_t item = view_ ? view_->hitTest(toView(event.pos())) : -1;
  if (item < 0) return QToolTip::hideText();
  // The tip of one item ends where the item does.
  const thumbnails::Arrangement& arrangement = view_->arrangement();
  const Point at = toView(event.pos());
  const bool inLarge = rectOf(arrangement.large()).contains(at.X, at.Y);
  const QRect place = fromView(inLarge ? arrangement.large() : view_->placeOf(item).cell);
  QToolTip::showText(event.globalPos(), tipOf(view_->factsOf(item)), viewport(), place);
}

void ThumbnailArea::hover(const QPoint& position) {
  const bool inside = view_ && viewport()->underMouse() && viewport()->rect().contains(position);
  hoverItem(inside ? view_->hitTest(toView(position)) : -1);
}

void ThumbnailArea::hoverItem(std::int32_t item) {
  const std::int32_t before = std::exchange(hovered_, item);
  if (!view_ || before == item) return;
  for (const std::int32_t changed : {before, item}) {
    if (view_->visibleItems().contains(changed)) invalidate(view_->placeOf(changed).cell);
  }
}

void ThumbnailArea::setDropping(bool value) {
  if (value == dropping_) return;
  dropping_ = value;
  repaintItems();
}

void ThumbnailArea::paintEvent(QPaintEvent* event) {
  if (painter_.scale() != devicePixelRatioF()) {
    restyle();
  } else {
    layOutView();
  }
  if (noted_.scroll && view_) updateBars();

  QPainter painter(viewport());
  painter.fillRect(event->rect(), painter_.ground());
  useDevicePixels(painter);
  if (!view_) return;
  const QRect all(QPoint(), deviceSizeOf(*viewport()));
  painter_.beginFrame(all.size());
  guarded([&] {
    const thumbnails::Arrangement& arrangement = view_->arrangement();
    if (arrangement.scrollsSideways()) painter_.paintStrip(painter, rectOf(arrangement.strip()));
    paintLargePicture(painter);
    paintItems(painter, event->region());
    if (const std::string message = view_->message(); !message.empty()) {
      painter_.paintMessage(painter, all, translated(message));
    }
    if (const Rectangle band = view_->rubberBand(); band.Width > 0 && band.Height > 0) {
      painter_.paintBand(painter, rectOf(band));
    }
  });
  if (dropping_) painter_.paintDropFrame(painter, all);
  // A name may need a taller line than those before: the next paint lays out anew.
  const bool taller = painter_.lineHeight() != metrics_.lineHeight;
  if (painter_.isRough() || taller) QTimer::singleShot(0, viewport(), [this] { repaintItems(); });
}

void ThumbnailArea::paintItems(QPainter& painter, const QRegion& exposed) {
  const thumbnails::ItemRange visible = view_->visibleItems();
  for (std::int32_t item = visible.first; item < visible.last; ++item) {
    const thumbnails::ItemPlace place = view_->placeOf(item);
    if (!exposed.intersects(fromView(place.cell))) continue;
    const bool faded = files_ && files_->anyCut() && files_->isCut(view_->pathOf(item));
    painter_.paintItem(painter, place, view_->factsOf(item), view_->pictureOf(item),
                       {item == hovered_, faded, hasFocus()});
  }
}

void ThumbnailArea::paintLargePicture(QPainter& painter) {
  const std::int32_t item = view_->largeItem();
  if (item < 0) return;
  const bool faded = files_ && files_->anyCut() && files_->isCut(view_->pathOf(item));
  const bool alone = view_->arrangement().view() == kViewSingle;
  painter_.paintLarge(painter, rectOf(view_->arrangement().large()),
                      alone ? rectOf(view_->placeOf(item).name) : QRect(), view_->factsOf(item),
                      view_->largePicture(), faded);
}

}  // namespace kestrel::qt
