#include "Turns.h"

#include <libyuv/rotate_argb.h>

#include <stdexcept>

#include "Pictures.h"

namespace kestrel::bench {

PixmanTurn::PixmanTurn(const engine::Bitmap& picture, int quarters)
    : in_(picture),
      out_(keptBuffer(picture.height(), picture.width())),
      from_(imageOf(in_.pixels())),
      to_(imageOf(out_.pixels())) {
  // The transform maps pixels of the result to the source.
  const bool right = quarters == 1;
  pixman_transform_t turn;
  pixman_transform_init_rotate(&turn, 0, right ? -pixman_fixed_1 : pixman_fixed_1);
  const pixman_fixed_t x = right ? 0 : pixman_int_to_fixed(picture.width());
  const pixman_fixed_t y = right ? pixman_int_to_fixed(picture.height()) : 0;
  if (!pixman_transform_translate(&turn, nullptr, x, y) || !pixman_image_set_transform(from_.get(), &turn))
    throw std::runtime_error("pixman refuses the turn.");
}

PixmanTurn::Image PixmanTurn::imageOf(const engine::ConstPixels& pixels) {
  // pixman's fast paths need this byte order, which does not matter for a rotation.
  auto* const bits = reinterpret_cast<std::uint32_t*>(const_cast<std::uint8_t*>(pixels.data));
  Image image(pixman_image_create_bits_no_clear(PIXMAN_a8r8g8b8, pixels.width, pixels.height, bits,
                                                static_cast<int>(pixels.stride)),
              pixman_image_unref);
  if (!image) throw std::runtime_error("pixman has no memory.");
  return image;
}

void PixmanTurn::run() {
  pixman_image_composite32(PIXMAN_OP_SRC, from_.get(), nullptr, to_.get(), 0, 0, 0, 0, 0, 0, out_.width(),
                           out_.height());
}

YuvTurn::YuvTurn(const engine::Bitmap& picture, int quarters)
    : in_(picture), out_(keptBuffer(picture.height(), picture.width())), quarters_(quarters) {}

void YuvTurn::run() {
  const engine::ConstPixels in = in_.pixels();
  const engine::Pixels out = out_.writable();
  libyuv::ARGBRotate(in.data, static_cast<int>(in.stride), out.data, static_cast<int>(out.stride), in.width,
                     in.height, quarters_ == 1 ? libyuv::kRotate90 : libyuv::kRotate270);
}

}  // namespace kestrel::bench
