#include "SvgIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>

#include "Resources/Icons.h"
#include "Text.h"

namespace kestrel::qt {
namespace {

/// The accent may be fainter than the lines, which carry the shape.
constexpr double kAccentContrast = 2.0;

QColor mixed(const QColor& front, const QColor& back, double share) {
  const auto mix = [share](int a, int b) { return static_cast<int>(a * share + b * (1.0 - share)); };
  return QColor(mix(front.red(), back.red()), mix(front.green(), back.green()),
                mix(front.blue(), back.blue()));
}

/// Softer than the text, as far as it still contrasts with the ground.
QColor lineColor(const QColor& text, const QColor& ground, bool enabled) {
  const double least = enabled ? 3.0 : 1.5;
  double share = enabled ? 0.78 : 0.32;
  QColor color = mixed(text, ground, share);
  while (share < 1.0 && contrastOf(color, ground) < least) {
    share = std::min(1.0, share + 0.04);
    color = mixed(text, ground, share);
  }
  return color;
}

/// Relative luminance by WCAG 2.1, from 0 to 1.
double luminance(const QColor& color) {
  const auto linear = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// Arrows along the direction of reading.
bool followsReading(const QString& name) {
  constexpr std::array kNames{"Undo", "Redo", "Go-Back", "Go-Forward"};
  return std::any_of(kNames.begin(), kNames.end(),
                     [&](const char* known) { return name == QLatin1String(known); });
}

QPixmap rendered(const QString& name, const QSize& size, const QColor& text, const QColor& ground,
                 bool enabled) {
  const QColor lines = lineColor(text, ground, enabled);
  const QColor themed = QColor(resources::kIconAccent.data());
  const bool hasAccent = enabled && contrastOf(themed, ground) >= kAccentContrast;

  const bool mirrored = QGuiApplication::isRightToLeft() && followsReading(name);
  const QString key = QStringLiteral("kestrel:%1:%2x%3:%4:%5:%6")
                          .arg(name)
                          .arg(size.width())
                          .arg(size.height())
                          .arg(lines.rgba())
                          .arg(hasAccent)
                          .arg(mirrored);
  QPixmap pixmap;
  if (QPixmapCache::find(key, &pixmap)) return pixmap;

  const std::string_view source = resources::iconSvg(fromQt(name));
  QByteArray svg(source.data(), static_cast<qsizetype>(source.size()));
  svg.replace(resources::kIconNeutral.data(), lines.name().toLatin1());
  if (!hasAccent) svg.replace(resources::kIconAccent.data(), lines.name().toLatin1());
  pixmap = QPixmap(size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QSvgRenderer(svg).render(&painter, QRectF(QPointF(), QSizeF(size)));
  painter.end();
  if (mirrored) pixmap = pixmap.transformed(QTransform::fromScale(-1, 1));
  QPixmapCache::insert(key, pixmap);
  return pixmap;
}

/// Renders an SVG text in the current theme's colors.
class ThemedSvg final : public QIconEngine {
 public:
  explicit ThemedSvg(QString name) : name_(std::move(name)) {}

  QIconEngine* clone() const override { return new ThemedSvg(name_); }
  QString iconName() override { return name_; }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal ratio = painter->device()->devicePixelRatioF();
    painter->drawPixmap(rect, pixmap(rect.size() * ratio, mode, state));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
    const QPalette palette = QGuiApplication::palette();
    const bool selected = mode == QIcon::Selected;
    return rendered(name_, size, palette.color(selected ? QPalette::HighlightedText : QPalette::WindowText),
                    palette.color(selected ? QPalette::Highlight : QPalette::Window),
                    mode != QIcon::Disabled);
  }

 private:
  QString name_;
};

}  // namespace

QIcon svgIcon(std::string_view name) {
  if (resources::iconSvg(name).empty()) return {};
  return QIcon(new ThemedSvg(toQt(name)));
}

QPixmap svgPixmap(const QIcon& icon, const QSize& size, const QColor& text, const QColor& ground,
                  bool enabled) {
  const QString name = icon.name();
  if (resources::iconSvg(fromQt(name)).empty()) return {};
  return rendered(name, size, text, ground, enabled);
}

double contrastOf(const QColor& one, const QColor& other) {
  constexpr double kFlare = 0.05;
  const double a = luminance(one), b = luminance(other);
  return (std::max(a, b) + kFlare) / (std::min(a, b) + kFlare);
}

}  // namespace kestrel::qt
