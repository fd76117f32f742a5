#include "FaceGraphics.h"

#include <QPainter>

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
  QPainter painter(&window_.face());
  painter.drawImage(QRect(destination.Left, destination.Top, destination.Width, destination.Height),
                    lentImage(picture.Pixels()), QRect(source.Left, source.Top, source.Width, source.Height));
  Refresh();
}

void FaceGraphics::DrawBox(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                           OLE_COLOR color) {
  QPainter painter(&window_.face());
  if (drawMode_ == kDrawInvert) {
    // The difference to white is the opposite colour, and twice the opposite is the first again.
    painter.setCompositionMode(QPainter::CompositionMode_Difference);
    painter.setPen(Qt::white);
  } else {
    painter.setPen(toColor(color));
  }
  painter.drawRect(QRect(QPoint(left, top), QPoint(right - 1, bottom - 1)));
  Refresh();
}

}  // namespace kestrel::qt
