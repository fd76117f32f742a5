// Paints every icon of a folder at all its sizes and on all its backgrounds, for inspection:
// kestrel-icon-sheet FOLDER OUT.png

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <cstdio>

#include "IconPainter.h"
#include "base/RuntimeError.h"

namespace {

constexpr int kSizes[] = {16, 24, 32};
constexpr int kColumns = 4;
constexpr int kCellWidth = 330;
constexpr int kCellHeight = 44;

struct Theme {
  QColor ground;
  QColor stroke;
};

void paintCell(QPainter& painter, const QPoint& corner, const QByteArray& svg, const QString& name) {
  const Theme themes[] = {{QColor("#f4f4f4"), QColor("#3c434b")}, {QColor("#2b2f33"), QColor("#d4d9de")}};
  int x = corner.x();
  for (const Theme& theme : themes) {
    painter.fillRect(x, corner.y(), 102, kCellHeight, theme.ground);
    x += 6;
    for (const int size : kSizes) {
      const QImage icon = kestrel::tools::paintIcon(svg, size, theme.stroke);
      painter.drawImage(x, corner.y() + (kCellHeight - size) / 2, icon);
      x += size + 8;
    }
  }
  painter.setPen(Qt::black);
  painter.drawText(QRect(x + 6, corner.y(), kCellWidth, kCellHeight), Qt::AlignVCenter, name);
}

int paintSheet(const QString& folder, const QString& target) {
  const QStringList names = QDir(folder).entryList({"*.svg"}, QDir::Files, QDir::Name);
  const int rows = static_cast<int>((names.size() + kColumns - 1) / kColumns);
  QImage sheet(kColumns * kCellWidth, rows * kCellHeight, QImage::Format_RGB32);
  sheet.fill(Qt::white);
  QPainter painter(&sheet);
  for (int i = 0; i < names.size(); ++i) {
    QFile file(folder + '/' + names[i]);
    if (!file.open(QIODevice::ReadOnly)) {
      std::fprintf(stderr, "%s cannot be read.\n", qPrintable(file.fileName()));
      return 1;
    }
    paintCell(painter, QPoint(i % kColumns * kCellWidth, i / kColumns * kCellHeight), file.readAll(),
              names[i]);
  }
  painter.end();
  if (sheet.save(target)) return 0;
  std::fprintf(stderr, "%s cannot be written.\n", qPrintable(target));
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "Usage: kestrel-icon-sheet FOLDER OUT.png\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  try {
    return paintSheet(argv[1], argv[2]);
  } catch (const kestrel::RuntimeError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
