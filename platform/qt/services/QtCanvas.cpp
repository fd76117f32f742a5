#include "QtCanvas.h"

#include <QPainter>

#include "base/RuntimeError.h"
#include "platform/qt/core/Pictures.h"

namespace kestrel::qt {

QtCanvas::QtCanvas(std::int32_t width, std::int32_t height) {
  if (width <= 0 || height <= 0) {
    throw RuntimeError(err::kInvalidCall, "A canvas needs at least one pixel each way.");
  }
  image_ = QImage(width, height, QImage::Format_RGBA8888);
  if (image_.isNull()) throw RuntimeError(err::kOutOfMemory, "There is not enough memory for the canvas.");
  image_.fill(Qt::white);
}

void QtCanvas::FillRectangle(const Rectangle& rectangle, OLE_COLOR color) {
  QPainter(&image_).fillRect(rectangle.Left, rectangle.Top, rectangle.Width, rectangle.Height,
                             toColor(color));
}

PicturePtr QtCanvas::Picture() const { return std::make_shared<ImagePicture>(image_); }

}  // namespace kestrel::qt
