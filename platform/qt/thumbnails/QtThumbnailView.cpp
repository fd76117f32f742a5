#include "QtThumbnailView.h"

#include <QDir>
#include <QPointer>

#include "FileTraffic.h"
#include "PostedCalls.h"
#include "ThumbnailArea.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/FolderDialog.h"
#include "platform/thumbnailcache/ThumbnailCache.h"

namespace kestrel::qt {
namespace {

constexpr int kAutoScrollMilliseconds = 16;

thumbnails::Services servicesOf(const PostedCalls& calls) {
  thumbnails::Services services;
  services.post = calls.post();
  services.separator = fromQt(QDir::separator());
  services.store = thumbnails::sharedThumbnailCache();
  return services;
}

}  // namespace

QtThumbnailView::QtThumbnailView(ThumbnailArea& area, ControlId id, const SiteServices& services)
    : QtThumbnailView(area, std::move(id), services, std::make_unique<PostedCalls>()) {}

QtThumbnailView::QtThumbnailView(ThumbnailArea& area, ControlId id, const SiteServices& services,
                                 std::unique_ptr<PostedCalls> calls)
    : WidgetControl(area, std::move(id), servicesOf(*calls)),
      area_(area),
      openCalls_(services.calls),
      posted_(std::move(calls)),
      files_(std::make_unique<FileTraffic>(*this, area, services)) {
  autoScroll_.setInterval(kAutoScrollMilliseconds);
  autoScroll_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&autoScroll_, &QTimer::timeout, &autoScroll_,
                   [this] { guarded([this] { autoScrollTick(); }); });
  area_.setView(this, files_.get());
}

QtThumbnailView::~QtThumbnailView() { area_.setView(nullptr, nullptr); }

std::string QtThumbnailView::BrowseForFolder(const std::string& prompt, const std::string& title,
                                             const std::string& start) {
  const std::string first = !start.empty() ? start : !chosenFolder_.empty() ? chosenFolder_ : Folder();
  const QPointer<ThumbnailArea> shown(&area_);
  std::string chosen = askForFolder(hWnd(), prompt, title, first, openCalls_);
  if (shown && shown->view() == this && !chosen.empty()) chosenFolder_ = chosen;
  return chosen;
}

void QtThumbnailView::invalidate(const Rectangle& area) { area_.invalidate(area); }

void QtThumbnailView::scrollChanged() { area_.scrollChanged(); }

void QtThumbnailView::autoScroll(bool on) { on ? autoScroll_.start() : autoScroll_.stop(); }

void QtThumbnailView::beginDrag() { area_.dragWanted(); }

void QtThumbnailView::itemsChanged() { area_.itemsChanged(); }

void QtThumbnailView::selectionChanged() { area_.selectionChanged(); }

void QtThumbnailView::focusItemChanged() { area_.focusItemChanged(); }

}  // namespace kestrel::qt
