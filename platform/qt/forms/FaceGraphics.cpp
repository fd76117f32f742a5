#include "FaceGraphics.h"

#include <QPainter>
#include <QRegion>
#include <algorithm>

#include "../Pictures.h"
#include "base/RuntimeError.h"

namespace kestrel::qt {

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
  if (ground_) painter.fillRect(target, QBrush(lentImage(ground_->Pixels())));
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter.drawImage(target, lentImage(picture.Pixels()),
                    QRect(source.Left, source.Top, source.Width, source.Height));
  Refresh();
}

void FaceGraphics::DrawBox(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                           OLE_COLOR color) {
  const double factor = window_.devicePixelRatioF();
  const int line = std::max(1, qRound(factor));
  const QPoint corner(qRound(left * factor), qRound(top * factor));
  const QPoint opposite(qRound((right + 1) * factor) - 1, qRound((bottom + 1) * factor) - 1);
  const QRegion box(QRect(corner, opposite));
  const QRegion inside(QRect(corner, opposite).adjusted(line, line, -line, -line));

  QPainter painter(&window_.face());
  // The difference to white is the opposite colour, and twice the opposite is the first again.
  const bool inverts = drawMode_ == kDrawInvert;
  if (inverts) painter.setCompositionMode(QPainter::CompositionMode_Difference);
  for (const QRect& part : box - inside) painter.fillRect(part, inverts ? QColor(Qt::white) : toColor(color));
  Refresh();
}

}  // namespace kestrel::qt
