#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPainter>
#include <QString>
#include <QWidget>

#include "PictureCache.h"
#include "platform/thumbnailview/Arrangement.h"
#include "platform/thumbnailview/Items.h"

namespace kestrel::qt {

/// The state of an item that the view does not know.
struct ItemLook {
  bool hovered = false;
  bool faded = false;      ///< cut: it will be moved when it is pasted
  bool showFocus = false;  ///< the view has the keyboard
};

/// Paints thumbnails in device pixels, in the colors and the font of a widget.
class ThumbnailPainter {
 public:
  /// Takes the colors, the font and the scale of a widget. Call after each of their changes.
  void adopt(const QWidget& widget);

  /// The height of a line of the names, in device pixels: that of the font, and of the fonts that had to help
  /// out for the names that were painted.
  int lineHeight() const;
  double scale() const { return scale_; }
  QColor ground() const { return ground_; }

  /// Call before the first item of a frame.
  void beginFrame(const QSize& viewport) { pictures_.beginFrame(viewport); }
  /// Whether a picture of this frame was painted fast and rough, since the time of the frame was used up: it
  /// must be painted again.
  bool isRough() const { return pictures_.ranOutOfTime(); }

  void paintItem(QPainter& painter, const thumbnails::ItemPlace& place, const thumbnails::ItemFacts& facts,
                 const thumbnails::PaintedPicture& picture, const ItemLook& look);
  /// The large picture of an item in its box. `name` is empty where the item's cell shows its name.
  void paintLarge(QPainter& painter, const QRect& box, const QRect& name, const thumbnails::ItemFacts& facts,
                  const thumbnails::PaintedPicture& picture, bool faded);
  /// The ground of a film strip's row.
  void paintStrip(QPainter& painter, const QRect& strip) const;
  void paintMessage(QPainter& painter, const QRect& viewport, const QString& message) const;
  void paintBand(QPainter& painter, const QRect& band) const;
  /// The frame of a view above which files can be dropped.
  void paintDropFrame(QPainter& painter, const QRect& viewport) const;

 private:
  int length(double logical) const;
  void paintCell(QPainter& painter, const QRect& cell, bool selected, const ItemLook& look,
                 bool focused) const;
  void paintPicture(QPainter& painter, const QRect& box, const thumbnails::ItemFacts& facts,
                    const thumbnails::PaintedPicture& picture);
  void paintSign(QPainter& painter, const QRect& box, const QColor& text, const QColor& ground) const;
  void paintName(QPainter& painter, const QRect& place, const QString& name, bool selected);

  double scale_ = 1;
  QFont font_;
  double ascent_ = 0, descent_ = 0;  ///< of a line of the names
  QColor ground_, text_, quiet_, outline_, placeholder_, hover_;
  QColor selection_, selectedGround_, selectedText_, stripGround_;
  QIcon brokenSign_;
  PictureCache pictures_;
};

}  // namespace kestrel::qt
