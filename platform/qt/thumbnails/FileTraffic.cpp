#include "FileTraffic.h"

#include <QClipboard>
#include <QDrag>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <algorithm>
#include <utility>

#include "ThumbnailArea.h"
#include "platform/os/Paths.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/exchange/FileExchange.h"
#include "platform/thumbnailview/ThumbnailViewModel.h"

namespace kestrel::qt {
namespace {

// Of the picture under a drag, in logical pixels.
constexpr int kDragSide = 96;
constexpr int kBadgeSide = 24;

}  // namespace

FileTraffic::FileTraffic(thumbnails::ThumbnailViewModel& view, ThumbnailArea& area,
                         const SiteServices& services)
    : view_(view), area_(area), calls_(services.calls), receiver_(area, services) {
  connect(&receiver_, &FileReceiver::transferred, this, [this] { guarded([this] { view_.activated(); }); });
  connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &FileTraffic::clipboardChanged);
  clipboardChanged();
}

void FileTraffic::offer(bool move) {
  ExchangedFiles files{{}, move};
  for (const std::filesystem::path& path : view_.selectedPaths()) files.names.push_back(os::textOf(path));
  if (files.names.empty()) return;
  QGuiApplication::clipboard()->setMimeData(new FilesMimeData(std::move(files)));
}

void FileTraffic::clipboardChanged() {
  std::set<std::filesystem::path> cut;
  // Only this program's files: those of another one cannot be asked for without waiting for it.
  const auto* const own = qobject_cast<const FilesMimeData*>(QGuiApplication::clipboard()->mimeData());
  if (own && own->files().move) {
    for (const std::string& name : own->files().names) cut.insert(os::pathOf(name));
  }
  if (cut == cut_) return;
  cut_ = std::move(cut);
  area_.repaintItems();
}

std::filesystem::path FileTraffic::target() const {
  return view_.showsFolder() ? view_.folderPath() : std::filesystem::path();
}

void FileTraffic::paste() { receiver_.paste(target()); }

void FileTraffic::drag() {
  ExchangedFiles files;
  for (const std::filesystem::path& path : view_.selectedPaths()) files.names.push_back(os::textOf(path));
  if (files.names.empty()) return;
  const QPointer<FileTraffic> self(this);
  const OpenCalls::Call call(calls_);
  auto* const drag = new QDrag(area_.viewport());
  drag->setPixmap(dragPicture(files.names.size()));
  drag->setMimeData(new FilesMimeData(std::move(files)));
  // A target that moves files does so itself.
  drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
  if (self) guarded([this] { view_.activated(); });
}

QPixmap FileTraffic::dragPicture(std::size_t count) const {
  const std::int32_t item = view_.focusItem();
  const thumbnails::PaintedPicture shown = item < 0 ? thumbnails::PaintedPicture{} : view_.pictureOf(item);
  if (shown.bitmap.empty()) return {};
  const double scale = area_.devicePixelRatioF();
  const engine::ConstPixels pixels = shown.bitmap.pixels();
  const QSize side = QSize(kDragSide, kDragSide) * scale;
  QPixmap picture =
      QPixmap::fromImage(borrowedImage({pixels.data, pixels.stride, pixels.width, pixels.height})
                             .scaled(side, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  if (count > 1) {
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const int badge = std::min({static_cast<int>(kBadgeSide * scale), picture.width(), picture.height()});
    const QString text = QString::number(count);
    QFont font = area_.font();
    font.setPixelSize(std::max(1, badge / 2));
    font.setBold(true);
    painter.setFont(font);
    const int width = std::max(badge, QFontMetrics(font).horizontalAdvance(text) + badge / 2);
    const QRect place(picture.width() - std::min(width, picture.width()), picture.height() - badge, width,
                      badge);
    painter.setPen(Qt::NoPen);
    painter.setBrush(area_.palette().color(QPalette::Highlight));
    painter.drawRoundedRect(place, badge / 2.0, badge / 2.0);
    painter.setPen(area_.palette().color(QPalette::HighlightedText));
    painter.drawText(place, Qt::AlignCenter, text);
  }
  picture.setDevicePixelRatio(scale);
  return picture;
}

Qt::DropAction FileTraffic::dropAction(const QDropEvent& event) {
  return receiver_.dropAction(event, target());
}

void FileTraffic::drop(QDropEvent& event) { receiver_.drop(event, target()); }

}  // namespace kestrel::qt
