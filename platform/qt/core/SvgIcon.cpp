#include "SvgIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include "Resources/Icons.h"
#include "Text.h"

namespace kestrel::qt {
namespace {

QColor mixed(const QColor& front, const QColor& back, double share) {
  const auto mix = [share](int a, int b) { return static_cast<int>(a * share + b * (1.0 - share)); };
  return QColor(mix(front.red(), back.red()), mix(front.green(), back.green()),
                mix(front.blue(), back.blue()));
}

/// Renders an SVG text in the current theme's colors.
class ThemedSvg final : public QIconEngine {
 public:
  ThemedSvg(QString name, QByteArray svg) : name_(std::move(name)), svg_(std::move(svg)) {}

  QIconEngine* clone() const override { return new ThemedSvg(name_, svg_); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal ratio = painter->device()->devicePixelRatioF();
    painter->drawPixmap(rect, pixmap(rect.size() * ratio, mode, state));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
    const QPalette palette = QGuiApplication::palette();
    const QColor text = palette.color(QPalette::WindowText);
    const QColor face = palette.color(QPalette::Window);
    const bool disabled = mode == QIcon::Disabled;
    const QColor neutral = mixed(text, face, disabled ? 0.32 : 0.78);

    const QString key = QStringLiteral("kestrel:%1:%2x%3:%4:%5")
                            .arg(name_)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(neutral.rgba())
                            .arg(disabled);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;

    QByteArray svg = svg_;
    svg.replace(resources::kIconNeutral.data(), neutral.name().toLatin1());
    if (disabled) svg.replace(resources::kIconAccent.data(), neutral.name().toLatin1());
    pixmap = QPixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(svg).render(&painter, QRectF(QPointF(), QSizeF(size)));
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
  }

 private:
  QString name_;
  QByteArray svg_;
};

}  // namespace

QIcon svgIcon(std::string_view name) {
  const std::string_view svg = resources::iconSvg(name);
  if (svg.empty()) return {};
  return QIcon(new ThemedSvg(toQt(name), QByteArray(svg.data(), static_cast<qsizetype>(svg.size()))));
}

}  // namespace kestrel::qt
