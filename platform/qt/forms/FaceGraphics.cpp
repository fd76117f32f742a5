#include "FaceGraphics.h"

#include <QPainter>
#include <QRegion>
#include <algorithm>

#include "base/RuntimeError.h"
#include "platform/qt/core/Pictures.h"

namespace kestrel::qt {
namespace {

/// Coordinate limit: larger than any window, small enough for integer device pixels.
constexpr std::int32_t kMaxCoordinate = 1 << 24;

struct Span {
  int first, last;
};

/// The device pixels from one position to another, both included.
Span deviceSpan(std::int32_t one, std::int32_t other, double factor) {
  const std::int32_t least = std::clamp(std::min(one, other), -kMaxCoordinate, kMaxCoordinate);
  const std::int32_t most = std::clamp(std::max(one, other), -kMaxCoordinate, kMaxCoordinate);
  return {qRound(least * factor), qRound((most + 1) * factor) - 1};
}

}  // namespace

void FaceGraphics::Clear() {
  window_.face().fill(Qt::transparent);
  Refresh();
}

void FaceGraphics::DrawMode(std::int32_t value) {
  if (value != kDrawCopy && value != kDrawInvert) {
    throw RuntimeError(err::kInvalidPropertyValue, "The draw mode is neither 6 nor 13.");
  }
  drawMode_ = value;
}

void FaceGraphics::PaintPicture(const Picture& picture, const Rectangle& destination,
                                const Rectangle& source) {
  const QRect target(destination.Left, destination.Top, destination.Width, destination.Height);
  QPainter painter(&window_.face());
  painter.scale(window_.devicePixelRatioF(), window_.devicePixelRatioF());
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.fillRect(target, Qt::transparent);
  if (ground_) painter.fillRect(target, QBrush(borrowedImage(ground_->Pixels())));
  const QRect cut(source.Left, source.Top, source.Width, source.Height);
  // The toolkit interprets an empty rectangle as the whole picture.
  if (!target.isEmpty() && !cut.isEmpty()) {
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(target, borrowedImage(picture.Pixels()), cut);
  }
  Refresh();
}

void FaceGraphics::DrawBox(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                           OLE_COLOR color) {
  const double factor = window_.devicePixelRatioF();
  const int line = std::max(1, qRound(factor));
  const Span columns = deviceSpan(left, right, factor);
  const Span rows = deviceSpan(top, bottom, factor);
  const QRect box(QPoint(columns.first, rows.first), QPoint(columns.last, rows.last));
  const QRect inside = box.adjusted(line, line, -line, -line);
  const QRegion outline = QRegion(box) - QRegion(inside);

  QPainter painter(&window_.face());
  // The difference to white inverts a color; applied twice, it restores it.
  const bool inverts = drawMode_ == kDrawInvert;
  if (inverts) painter.setCompositionMode(QPainter::CompositionMode_Difference);
  for (const QRect& part : outline) painter.fillRect(part, inverts ? QColor(Qt::white) : toColor(color));
  Refresh();
}

}  // namespace kestrel::qt
