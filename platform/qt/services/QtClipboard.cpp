#include "QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "ClipboardPictures.h"

namespace kestrel::qt {

bool QtClipboard::GetFormat(std::int32_t format) {
  const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
  return format == kClipboardBitmap && data && holdsPicture(*data);
}

}  // namespace kestrel::qt
