#pragma once

#include <QCache>
#include <QColor>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QSize>
#include <cstdint>

#include "platform/thumbnailview/Items.h"

namespace kestrel::qt {

/// The two colors of the checkered ground behind transparent pictures, and the side of its squares in device
/// pixels.
struct Checkers {
  QColor one, other;
  int side = 8;

  bool operator==(const Checkers&) const = default;
};

/// Pictures at the size and in the form in which they are painted. It keeps about as many as fill the
/// viewport twice, and makes new ones only for a part of a frame's time.
class PictureCache {
 public:
  void setCheckers(const Checkers& checkers);

  void beginFrame(const QSize& viewport);
  bool ranOutOfTime() const { return late_; }

  /// Paints the picture, which must not be empty, at its target.
  void paint(QPainter& painter, const thumbnails::PaintedPicture& picture);

 private:
  struct Key {
    std::uint64_t version;
    QSize size;
    friend bool operator==(const Key&, const Key&) = default;
    friend std::size_t qHash(const Key& key, std::size_t seed) {
      return qHashMulti(seed, key.version, key.size.width(), key.size.height());
    }
  };

  QImage made(const thumbnails::PaintedPicture& picture) const;
  QImage onCheckers(const QImage& picture) const;

  Checkers checkers_;
  QCache<Key, QImage> kept_;  ///< costs are KiB
  QElapsedTimer frame_;
  bool late_ = false;
};

}  // namespace kestrel::qt
