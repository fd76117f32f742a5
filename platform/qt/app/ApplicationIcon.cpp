#include "ApplicationIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace kestrel::qt {
namespace {

// A framed picture: a sun above two hills, with a dashed selection rectangle at its corner.
constexpr char kDrawing[] = R"svg(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 64 64">
  <defs>
    <linearGradient id="sky" x1="0" y1="0" x2="0" y2="1">
      <stop offset="0" stop-color="#2b6cc4"/><stop offset="1" stop-color="#8cc7f2"/>
    </linearGradient>
    <clipPath id="picture"><rect x="7" y="11" width="50" height="42" rx="5"/></clipPath>
  </defs>
  <rect x="3" y="7" width="58" height="50" rx="9" fill="#f7f9fb" stroke="#4a525c" stroke-width="2"/>
  <g clip-path="url(#picture)">
    <rect x="7" y="11" width="50" height="42" fill="url(#sky)"/>
    <circle cx="43" cy="24" r="6" fill="#ffd75e"/>
    <path d="M7 53V41l14-13 13 14 7-6 16 13v4z" fill="#2f7d5b"/>
    <path d="M7 53V46l9-7 18 14z" fill="#1f5a41"/>
  </g>
  <rect x="30" y="33" width="23" height="16" fill="none" stroke="#ffffff" stroke-width="2.4"
        stroke-dasharray="4 3"/>
</svg>)svg";

constexpr int kSizes[] = {16, 24, 32, 48, 64, 128, 256};

}  // namespace

QIcon applicationIcon() {
  QSvgRenderer drawing{QByteArray(kDrawing)};
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
