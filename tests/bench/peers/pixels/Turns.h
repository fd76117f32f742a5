#pragma once

#include <pixman.h>

#include <memory>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// A quarter turn by pixman into a kept buffer: 1 or 3 quarters clockwise.
class PixmanTurn {
 public:
  PixmanTurn(const engine::Bitmap& picture, int quarters);
  void run();
  const engine::Bitmap& result() const { return out_; }

 private:
  using Image = std::unique_ptr<pixman_image_t, decltype(&pixman_image_unref)>;
  static Image imageOf(const engine::ConstPixels& pixels);

  engine::Bitmap in_, out_;
  Image from_, to_;
};

/// The same by libyuv.
class YuvTurn {
 public:
  YuvTurn(const engine::Bitmap& picture, int quarters);
  void run();
  const engine::Bitmap& result() const { return out_; }

 private:
  engine::Bitmap in_, out_;
  int quarters_;
};

}  // namespace kestrel::bench
