#include "ApplicationIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <iterator>

#include "Resources/EmbeddedFiles.h"

namespace kestrel::qt {
namespace {

constexpr int kSizes[] = {16, 24, 32, 48, 64, 128, 256};

}  // namespace

QIcon applicationIcon() {
  const auto bytes = resources::embeddedFile("application.svg");
  QSvgRenderer drawing(QByteArray(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes)));
  QIcon icon;
  for (const int size : kSizes) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawing.render(&painter);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace kestrel::qt
