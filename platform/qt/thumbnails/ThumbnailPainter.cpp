#include "ThumbnailPainter.h"

#include <QFontMetricsF>
#include <QPalette>
#include <QTextLayout>
#include <QTextLine>
#include <QTextOption>
#include <algorithm>
#include <cmath>

#include "ThumbnailTexts.h"
#include "platform/qt/core/SvgIcon.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

// Lengths in logical pixels.
constexpr double kCorner = 5;
constexpr double kFocusLine = 2;
constexpr double kBandLine = 1;
constexpr double kSignSide = 48;
constexpr double kCheckerSide = 8;
constexpr double kMessageMargin = 32;
constexpr double kNamePadding = 4;
constexpr double kNameCorner = 3;

// Shares of the text's color, or of the selection's, in a mix with the ground.
constexpr double kQuietShare = 0.72;
constexpr double kOutlineShare = 0.16;
constexpr double kPlaceholderShare = 0.06;
constexpr double kSelectedShare = 0.32;
constexpr double kHoverShare = 0.14;
constexpr double kStripShare = 0.05;
constexpr double kCheckerShares[] = {0.04, 0.14};

constexpr double kFadedOpacity = 0.4;
constexpr int kBandAlpha = 56;
/// A placeholder has the proportions of most photographs.
constexpr QSize kPlaceholderProportions(3, 2);

QRect rectOf(const Rectangle& area) { return {area.Left, area.Top, area.Width, area.Height}; }

QColor mixed(const QColor& front, const QColor& back, double share) {
  const auto mix = [share](int a, int b) {
    return static_cast<int>(std::lround(a * share + b * (1 - share)));
  };
  return QColor(mix(front.red(), back.red()), mix(front.green(), back.green()),
                mix(front.blue(), back.blue()));
}

/// The font at its size in device pixels.
QFont scaledFont(const QFont& font, double scale) {
  QFont scaled = font;
  if (font.pointSizeF() > 0) {
    scaled.setPointSizeF(font.pointSizeF() * scale);
  } else {
    scaled.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * scale)));
  }
  return scaled;
}

/// RAII: what is painted fades.
class Opacity {
 public:
  Opacity(QPainter& painter, bool faded) : painter_(painter) {
    if (faded) painter_.setOpacity(kFadedOpacity);
  }
  Opacity(const Opacity&) = delete;
  Opacity& operator=(const Opacity&) = delete;
  ~Opacity() { painter_.setOpacity(1); }

 private:
  QPainter& painter_;
};

}  // namespace

int ThumbnailPainter::length(double logical) const {
  return std::max(1, static_cast<int>(std::lround(logical * scale_)));
}

int ThumbnailPainter::lineHeight() const {
  return static_cast<int>(std::ceil(ascent_) + std::ceil(descent_));
}

void ThumbnailPainter::adopt(const QWidget& widget) {
  scale_ = widget.devicePixelRatioF();
  const QFont font = scaledFont(widget.font(), scale_);
  if (font != font_ || ascent_ == 0) {
    font_ = font;
    const QFontMetricsF metrics(font_);
    ascent_ = metrics.ascent();
    descent_ = metrics.descent();
  }

  const QPalette& palette = widget.palette();
  ground_ = palette.color(QPalette::Base);
  text_ = palette.color(QPalette::Text);
  selection_ = palette.color(QPalette::Highlight);
  selectedText_ = palette.color(QPalette::HighlightedText);
  quiet_ = mixed(text_, ground_, kQuietShare);
  outline_ = mixed(text_, ground_, kOutlineShare);
  placeholder_ = mixed(text_, ground_, kPlaceholderShare);
  selectedGround_ = mixed(selection_, ground_, kSelectedShare);
  stripGround_ = mixed(text_, ground_, kStripShare);
  hover_ = mixed(selection_, ground_, kHoverShare);
  if (brokenSign_.isNull()) brokenSign_ = svgIcon("broken-picture");
  pictures_.setCheckers({mixed(text_, ground_, kCheckerShares[0]), mixed(text_, ground_, kCheckerShares[1]),
                         length(kCheckerSide)});
}

void ThumbnailPainter::paintCell(QPainter& painter, const QRect& cell, bool selected, const ItemLook& look,
                                 bool focused) const {
  const bool outlined = focused && look.showFocus;
  if (!selected && !look.hovered && !outlined) return;
  painter.setRenderHint(QPainter::Antialiasing);
  const double corner = kCorner * scale_;
  if (selected || look.hovered) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(selected ? selectedGround_ : hover_);
    painter.drawRoundedRect(cell, corner, corner);
  }
  if (outlined) {
    const double width = length(kFocusLine);
    const double inset = width / 2;
    painter.setPen(QPen(selection_, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(cell).adjusted(inset, inset, -inset, -inset), corner - inset,
                            corner - inset);
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void ThumbnailPainter::paintSign(QPainter& painter, const QRect& box, const QColor& text,
                                 const QColor& ground) const {
  const int side = std::min({length(kSignSide), box.width(), box.height()});
  if (side < 1) return;
  QRect place(0, 0, side, side);
  place.moveCenter(box.center());
  const QPixmap sign = svgPixmap(brokenSign_, place.size(), text, ground, true);
  painter.drawPixmap(place.topLeft(), sign);
}

void ThumbnailPainter::paintPicture(QPainter& painter, const QRect& box, const thumbnails::ItemFacts& facts,
                                    const thumbnails::PaintedPicture& picture) {
  if (facts.state == thumbnails::ItemState::kBroken) {
    return paintSign(painter, box, text_, facts.selected ? selectedGround_ : ground_);
  }
  if (picture.bitmap.empty()) {
    QRect place(QPoint(), kPlaceholderProportions.scaled(box.size(), Qt::KeepAspectRatio));
    place.moveCenter(box.center());
    return painter.fillRect(place, placeholder_);
  }
  pictures_.paint(painter, picture);
  // A picture as bright as the ground needs an edge.
  painter.setPen(QPen(outline_, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(rectOf(picture.target).adjusted(-1, -1, 0, 0));
}

void ThumbnailPainter::paintName(QPainter& painter, const QRect& place, const QString& name, bool selected) {
  const int padding = length(kNamePadding);
  const QString shown = QFontMetrics(font_).elidedText(name, Qt::ElideMiddle, place.width() - 2 * padding);
  QTextLayout text(shown, font_);
  QTextOption oneLine;
  oneLine.setWrapMode(QTextOption::NoWrap);
  text.setTextOption(oneLine);
  text.beginLayout();
  const QTextLine line = text.createLine();
  text.endLayout();
  if (!line.isValid()) return;
  // Characters that the font lacks come from others, which may be taller.
  ascent_ = std::max(ascent_, line.ascent());
  descent_ = std::max(descent_, line.descent());
  const double width = line.naturalTextWidth();

  if (selected) {
    QRect ground(0, 0, std::min(place.width(), static_cast<int>(std::ceil(width)) + 2 * padding),
                 lineHeight());
    ground.moveCenter(place.center());
    const double corner = kNameCorner * scale_;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(selection_);
    painter.drawRoundedRect(ground, corner, corner);
    painter.setRenderHint(QPainter::Antialiasing, false);
  }
  painter.setPen(selected ? selectedText_ : text_);
  // On whole pixels, and all names of a row on one base line.
  const double left = std::floor(place.x() + (place.width() - width) / 2);
  const int base = place.y() + (place.height() - lineHeight()) / 2 + static_cast<int>(std::ceil(ascent_));
  text.draw(&painter, QPointF(left, base - line.ascent()));
}

void ThumbnailPainter::paintItem(QPainter& painter, const thumbnails::ItemPlace& place,
                                 const thumbnails::ItemFacts& facts,
                                 const thumbnails::PaintedPicture& picture, const ItemLook& look) {
  paintCell(painter, rectOf(place.cell), facts.selected, look, facts.focused);
  const Opacity opacity(painter, look.faded);
  paintPicture(painter, rectOf(place.picture), facts, picture);
  paintName(painter, rectOf(place.name), toQt(facts.label), facts.selected);
}

void ThumbnailPainter::paintLarge(QPainter& painter, const QRect& box, const QRect& name,
                                  const thumbnails::ItemFacts& facts,
                                  const thumbnails::PaintedPicture& picture, bool faded) {
  const Opacity opacity(painter, faded);
  if (!name.isEmpty()) paintName(painter, name, toQt(facts.label), false);
  if (facts.state != thumbnails::ItemState::kBroken) {
    if (!picture.bitmap.empty()) pictures_.paint(painter, picture);
    return;
  }
  // The sign above the middle, the reason below it.
  const int half = box.height() / 2;
  paintSign(painter, box.adjusted(0, 0, 0, -half), text_, ground_);
  const int margin = std::min(length(kMessageMargin), box.width() / 4);
  painter.setFont(font_);
  painter.setPen(quiet_);
  painter.drawText(box.adjusted(margin, half, -margin, 0), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                   reasonOf(facts));
}

void ThumbnailPainter::paintMessage(QPainter& painter, const QRect& viewport, const QString& message) const {
  const int margin = std::min(length(kMessageMargin), viewport.width() / 8);
  painter.setFont(font_);
  painter.setPen(quiet_);
  painter.drawText(viewport.adjusted(margin, margin, -margin, -margin), Qt::AlignCenter | Qt::TextWordWrap,
                   message);
}

void ThumbnailPainter::paintStrip(QPainter& painter, const QRect& strip) const {
  painter.fillRect(strip, stripGround_);
  painter.fillRect(strip.x(), strip.y(), strip.width(), length(kBandLine), outline_);
}

void ThumbnailPainter::paintBand(QPainter& painter, const QRect& band) const {
  QColor fill = selection_;
  fill.setAlpha(kBandAlpha);
  painter.fillRect(band, fill);
  const int width = length(kBandLine);
  painter.setPen(QPen(selection_, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF(band).adjusted(width / 2.0, width / 2.0, -width / 2.0, -width / 2.0));
}

void ThumbnailPainter::paintDropFrame(QPainter& painter, const QRect& viewport) const {
  const int width = length(kFocusLine);
  painter.setPen(QPen(selection_, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF(viewport).adjusted(width / 2.0, width / 2.0, -width / 2.0, -width / 2.0));
}

}  // namespace kestrel::qt
