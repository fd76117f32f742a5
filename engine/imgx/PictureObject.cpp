#include "PictureObject.h"

#include <cstring>
#include <utility>

#include "Conversions.h"
#include "ImagePart.h"

namespace kestrel::engine {
namespace {

Bitmap copyOf(const PixelRows& rows) {
  Bitmap result = Bitmap::uninitialized(rows.Width, rows.Height);
  const Pixels pixels = result.writable();
  for (std::int32_t y = 0; y < rows.Height; ++y) {
    std::memcpy(pixels.row(y), rows.Data + static_cast<std::size_t>(y) * rows.Stride,
                4 * static_cast<std::size_t>(rows.Width));
  }
  return result;
}

}  // namespace

PictureObject::PictureObject(Bitmap bitmap) : state_{std::move(bitmap)} {}

PictureObject::PictureObject(PictureState state) : state_(std::move(state)) {}

PixelRows PictureObject::Pixels() const { return rowsOf(bitmap()); }

Bitmap bitmapOf(const Picture& picture) {
  if (const auto* const own = dynamic_cast<const PictureObject*>(&picture)) return own->bitmap();
  return copyOf(picture.Pixels());
}

PictureState stateOf(const Picture& picture) {
  if (const auto* const own = dynamic_cast<const PictureObject*>(&picture)) return own->state();
  return {copyOf(picture.Pixels())};
}

Bitmap bitmapOf(const kestrel::Image& image) {
  if (const auto* const own = dynamic_cast<const ImagePart*>(&image)) return own->bitmap();
  return copyOf(image.Pixels());
}

}  // namespace kestrel::engine
