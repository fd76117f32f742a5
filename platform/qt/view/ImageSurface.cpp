#include "ImageSurface.h"

#include <QApplication>
#include <QSignalBlocker>

#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

/// Limit of layout rounds: showing one bar may require the other; more rounds change nothing.
constexpr int kRounds = 3;

void apply(QScrollBar& bar, const engine::ScrollRange& range) {
  const QSignalBlocker silent(bar);
  bar.setRange(0, range.maximum);
  bar.setPageStep(range.page);
  bar.setSingleStep(range.step);
  bar.setValue(range.position);
}

/// Device pixels of the content along one axis; at most `page` if all are visible.
int content(const engine::ScrollRange& range) { return range.maximum == 0 ? 0 : range.maximum + range.page; }

}  // namespace

ImageSurface::ImageSurface(QWidget* parent)
    : QWidget(parent),
      canvas_(new ViewCanvas(this)),
      horizontal_(new QScrollBar(Qt::Horizontal, this)),
      vertical_(new QScrollBar(Qt::Vertical, this)),
      notice_(new NoticeStrip(this)) {
  setFocusProxy(canvas_);
  setAutoFillBackground(true);  // the corner between the bars
  keepTranslated(*this, *this, [this] {
    horizontal_->setAccessibleName(translated("Scroll the picture horizontally"));
    vertical_->setAccessibleName(translated("Scroll the picture vertically"));
  });
  // Pictures have the same direction in all languages.
  canvas_->setLayoutDirection(Qt::LeftToRight);
  horizontal_->setLayoutDirection(Qt::LeftToRight);
  horizontal_->hide();
  vertical_->hide();
  for (QScrollBar* bar : {horizontal_, vertical_}) {
    bar->setCursor(Qt::ArrowCursor);
    bar->setContextMenuPolicy(Qt::NoContextMenu);
    connect(bar, &QScrollBar::valueChanged, this, &ImageSurface::scrolled);
  }
  connect(notice_, &NoticeStrip::closed, this, [this] {
    if (view_) guarded([this] { view_->closeNotice(); });
  });
  connect(notice_, &NoticeStrip::buttonPressed, this, [this] {
    if (view_) guarded([this] { view_->NoticeAction(); });
  });
}

void ImageSurface::setView(engine::View* view) {
  view_ = view;
  canvas_->setView(view);
  if (view_) updateBars();
}

void ImageSurface::moveEvent(QMoveEvent* /*event*/) { canvas_->moved(); }

QSize ImageSurface::deviceSizeWithoutBars() const {
  const double factor = devicePixelRatioF();
  return {static_cast<int>(width() * factor), static_cast<int>(heightBelowNotice() * factor)};
}

void ImageSurface::resizeEvent(QResizeEvent* /*event*/) {
  layOut();
  updateBars();
}

bool ImageSurface::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) {  // the height of the notice changed
    layOut();
    updateBars();
  }
  return QWidget::event(event);
}

void ImageSurface::showNotice(const QString& text, const QString& button) {
  if (text.isEmpty() && notice_->isAncestorOf(QApplication::focusWidget())) canvas_->setFocus();
  notice_->showText(text, button);
  layOut();
  updateBars();
}

int ImageSurface::heightBelowNotice() const {
  return notice_->isHidden() ? height() : height() - notice_->height();
}

void ImageSurface::layOut() {
  // The notice covers at most half of the window.
  if (!notice_->isHidden()) notice_->setGeometry(0, 0, width(), notice_->heightAt(width(), height() / 2));
  const int top = height() - heightBelowNotice();
  const int right = shown_.vertical ? vertical_->sizeHint().width() : 0;
  const int below = shown_.horizontal ? horizontal_->sizeHint().height() : 0;
  const int high = heightBelowNotice() - below;
  horizontal_->setVisible(shown_.horizontal);
  vertical_->setVisible(shown_.vertical);
  horizontal_->setGeometry(0, top + high, width() - right, below);
  vertical_->setGeometry(width() - right, top, right, high);
  canvas_->setGeometry(0, top, width() - right, high);
}

ImageSurface::BarsShown ImageSurface::barsNeeded() const {
  const double factor = devicePixelRatioF();
  const int wide = content(view_->horizontalScroll());
  const int high = content(view_->verticalScroll());
  const int room = heightBelowNotice();
  const auto exceeds = [factor](int pixels, int size) { return pixels > size * factor; };
  BarsShown needed{exceeds(wide, width()), exceeds(high, room)};
  if (needed.horizontal) needed.vertical = exceeds(high, room - horizontal_->sizeHint().height());
  if (needed.vertical) needed.horizontal = exceeds(wide, width() - vertical_->sizeHint().width());
  return needed;
}

void ImageSurface::updateBars() {
  if (!view_ || updating_) return;
  updating_ = true;
  for (int round = 0; round < kRounds; ++round) {
    const BarsShown needed = barsNeeded();
    if (needed == shown_) break;
    shown_ = needed;
    layOut();  // resizes the view, which changes the ranges
  }
  apply(*horizontal_, view_->horizontalScroll());
  apply(*vertical_, view_->verticalScroll());
  updating_ = false;
}

void ImageSurface::scrolled() {
  if (view_) guarded([this] { view_->scrollTo(horizontal_->value(), vertical_->value()); });
}

}  // namespace kestrel::qt
