#include "FileTraffic.h"

#include <QClipboard>
#include <QDrag>
#include <QDropEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <system_error>
#include <utility>

#include "FileExchange.h"
#include "ThumbnailArea.h"
#include "platform/os/Paths.h"
#include "platform/qt/core/Blocking.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Pictures.h"
#include "platform/thumbnailview/ThumbnailViewModel.h"

namespace kestrel::qt {
namespace {

// Of the picture under a drag, in logical pixels.
constexpr int kDragSide = 96;
constexpr int kBadgeSide = 24;

bool isFolder(const std::filesystem::path& one, const std::filesystem::path& other) {
  if (one == other) return true;
  std::error_code failed;
  return std::filesystem::equivalent(one, other, failed) && !failed;
}

}  // namespace

FileTraffic::FileTraffic(thumbnails::ThumbnailViewModel& view, ThumbnailArea& area,
                         const SiteServices& services)
    : view_(view), area_(area), services_(services) {
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

std::vector<std::string> FileTraffic::fromElsewhere(std::vector<std::string> names) const {
  const std::filesystem::path folder = view_.folderPath();
  // Nearly always all files come from one folder.
  std::filesystem::path last;
  bool lastIsOwn = false;
  std::erase_if(names, [&](const std::string& name) {
    std::filesystem::path parent = os::pathOf(name).parent_path();
    if (parent != last) {
      lastIsOwn = isFolder(parent, folder);
      last = std::move(parent);
    }
    return lastIsOwn;
  });
  return names;
}

bool FileTraffic::transfer(const std::vector<std::string>& names, bool move) {
  const std::filesystem::path folder = view_.folderPath();
  if (names.empty() || !view_.showsFolder()) return true;
  const QPointer<FileTraffic> self(this);
  const WindowHandle owner = handleOf(&area_);
  const std::string buffer = nameBuffer(names);
  bool done = false;
  guarded([&] {
    const OpenCalls::Call call(services_.calls);
    done = move ? services_.files.MoveFiles(buffer, os::textOf(folder), 0, owner)
                : services_.files.CopyFiles(buffer, os::textOf(folder), 0, owner);
  });
  if (self) guarded([this] { view_.activated(); });
  return done;
}

void FileTraffic::paste() {
  const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
  if (!data || !holdsFiles(*data) || !view_.showsFolder()) return;
  const ExchangedFiles files = filesOf(*data);
  if (!files.move) {
    transfer(files.names, false);
    return;
  }
  // A file that stays where it is has been pasted. Moved files must not be pasted again.
  if (!transfer(fromElsewhere(files.names), true)) return;
  // The user may have copied something else in the meantime.
  const QMimeData* const now = QGuiApplication::clipboard()->mimeData();
  if (now && filesOf(*now).names == files.names) QGuiApplication::clipboard()->clear();
}

void FileTraffic::drag() {
  ExchangedFiles files;
  for (const std::filesystem::path& path : view_.selectedPaths()) files.names.push_back(os::textOf(path));
  if (files.names.empty()) return;
  const QPointer<FileTraffic> self(this);
  const OpenCalls::Call call(services_.calls);
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

void FileTraffic::dragEntered(const QDropEvent& event) {
  dragged_.clear();
  const QMimeData* const data = event.mimeData();
  if (!data || !holdsFiles(*data) || !view_.showsFolder()) return;
  // Asked for once: the source may be another program.
  dragged_ = fromElsewhere(filesOf(*data).names);
}

Qt::DropAction FileTraffic::dropAction(const QDropEvent& event) const {
  if (dragged_.empty() || isBlockedByDialog(area_)) return Qt::IgnoreAction;
  const Qt::DropActions possible = event.possibleActions();
  const bool canMove = possible & Qt::MoveAction;
  // Where the source expects a link, copying leaves the file to it as well.
  const bool canCopy = possible & (Qt::CopyAction | Qt::LinkAction);
  const bool move = canMove && ((event.modifiers() & Qt::ShiftModifier) || !canCopy);
  if (!move && !canCopy) return Qt::IgnoreAction;
  return move ? Qt::MoveAction : possible & Qt::CopyAction ? Qt::CopyAction : Qt::LinkAction;
}

void FileTraffic::drop(QDropEvent& event) {
  const Qt::DropAction action = dropAction(event);
  if (action == Qt::IgnoreAction) return event.ignore();
  const bool move = action == Qt::MoveAction;
  // The source must not delete what this view moves.
  event.setDropAction(move ? Qt::TargetMoveAction : action);
  event.accept();
  area_.activateWindow();  // a question may follow
  // The source of the drag waits for the end of this event.
  QTimer::singleShot(0, this, [this, names = std::exchange(dragged_, {}), move] { transfer(names, move); });
}

}  // namespace kestrel::qt
