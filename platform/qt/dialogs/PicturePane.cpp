#include "PicturePane.h"

#include <QPainter>
#include <cstdint>
#include <system_error>

#include "engine/thumbnails/ThumbnailReader.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kSide = 220;
constexpr int kMargin = 10;
/// A reader that is destroyed waits for its decoder. This keeps the wait below half a second or so, and the
/// memory for a preview moderate.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} * 1024 * 1024;

}  // namespace

PicturePane::PicturePane(engine::ThumbnailReader& reader, QWidget* parent)
    : QWidget(parent), reader_(reader) {
  setObjectName(QStringLiteral("picturePane"));
  setAccessibleName(translated("Preview"));
  setMinimumWidth(kSide / 2);
}

PicturePane::~PicturePane() { reader_.cancel(); }

QSize PicturePane::sizeHint() const { return {kSide, kSide}; }

void PicturePane::showFile(const std::filesystem::path& name) {
  std::error_code error;
  const std::filesystem::path file =
      std::filesystem::is_regular_file(name, error) ? std::filesystem::absolute(name, error) : "";
  if (file == file_) return;
  file_ = file;
  reader_.cancel();
  show({}, {});
  if (file.empty()) return;
  if (std::filesystem::file_size(file, error) > kLargestFile && !error) {
    show({}, translated("The file is too large for a preview."));
    return;
  }
  const int side = qRound((kSide - 2 * kMargin) * devicePixelRatioF());
  reader_.read(file, side, [this, file](const engine::Thumbnail& thumbnail) {
    // On the reader's thread. The pane's end removes the call from its queue.
    QMetaObject::invokeMethod(
        this,
        [this, file, thumbnail] {
          if (file == file_) accept(thumbnail);
        },
        Qt::QueuedConnection);
  });
}

void PicturePane::accept(const engine::Thumbnail& thumbnail) {
  if (thumbnail.bitmap.empty()) {
    show({}, translated("There is no preview of this file."));
    setToolTip(toQt(thumbnail.notice).toHtmlEscaped());
    return;
  }
  const engine::ConstPixels pixels = thumbnail.bitmap.pixels();
  show(QImage(pixels.data, pixels.width, pixels.height, static_cast<qsizetype>(pixels.stride),
              QImage::Format_RGBA8888)
           .copy(),
       {});
}

void PicturePane::show(const QImage& picture, const QString& text) {
  picture_ = picture;
  text_ = text;
  setToolTip({});
  setAccessibleDescription(text);
  update();
}

void PicturePane::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRect room = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  if (picture_.isNull()) {
    painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
    painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, text_);
    return;
  }
  // Device pixels of the picture are those of the screen, unless the pane is too small.
  const QSizeF natural = QSizeF(picture_.size()) / devicePixelRatioF();
  const QSizeF shown = natural.width() > room.width() || natural.height() > room.height()
                           ? natural.scaled(room.size(), Qt::KeepAspectRatio)
                           : natural;
  QRectF place(QPointF(), shown);
  place.moveCenter(QRectF(room).center());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(place, picture_);
}

}  // namespace kestrel::qt
