// Pixels of pictures without a copy, and pictures of a host's pixels.

#include <cstring>
#include <memory>
#include <utility>

#include "Objects.h"
#include "Status.h"
#include "base/RuntimeError.h"
#include "engine/imgx/PictureObject.h"
#include "host/dispatch/Classes.h"
#include "host/dispatch/Errors.h"

namespace kestrel::c {
namespace {

/// Keeps a picture, which any thread may do.
class PixelLock final : public Item {
 public:
  explicit PixelLock(PicturePtr picture) : Item(nullptr), picture_(std::move(picture)) {}

 private:
  const PicturePtr picture_;
};

PicturePtr PictureOf(const dispatch::Reference& reference) {
  if (&reference.Class() != &dispatch::Describe<Picture>()) {
    throw RuntimeError(err::kTypeMismatch, "An object of class Picture is required.");
  }
  auto* const picture = static_cast<const Picture*>(reference.Target());
  return PicturePtr(reference.Owned(), picture);
}

engine::Bitmap BitmapOf(const kestrel_pixels& pixels) {
  constexpr std::size_t kBytes = sizeof(engine::Pixel);
  if (pixels.format != KESTREL_RGBA) RaiseInvalidCall("The only format of pixels is 5.");
  Require(pixels.data, "There are no pixels.");
  if (pixels.width < 1 || pixels.height < 1) RaiseInvalidCall("A picture has at least one pixel.");
  const std::size_t row = static_cast<std::size_t>(pixels.width) * kBytes;
  if (pixels.stride < row) RaiseInvalidCall("The rows overlap.");
  auto bitmap = engine::Bitmap::uninitialized(pixels.width, pixels.height);
  const engine::Pixels target = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::memcpy(target.row(y), pixels.data + static_cast<std::size_t>(y) * pixels.stride, row);
  }
  return bitmap;
}

}  // namespace
}  // namespace kestrel::c

using namespace kestrel::c;

kestrel_status kestrel_lock_pixels(kestrel_object* picture, kestrel_pixels* pixels,
                                   kestrel_pixel_lock** lock) {
  return Guarded([&] {
    Require(pixels, "There is no place for the pixels.");
    Require(lock, "There is no place for the lock.");
    const ObjectCall call(picture);
    const kestrel::PicturePtr kept = PictureOf(call.Target());
    const kestrel::PixelRows rows = kept->Pixels();
    auto* const made = reinterpret_cast<kestrel_pixel_lock*>(
        Handles::All().Add(HandleKind::kPixelLock, std::make_shared<PixelLock>(kept)));
    *pixels = {rows.Data, rows.Stride, rows.Width, rows.Height, KESTREL_RGBA, 0};
    *lock = made;
  });
}

kestrel_status kestrel_unlock_pixels(kestrel_pixel_lock* lock) {
  return Guarded([&] {
    if (lock) ReleaseHandle(HandleKind::kPixelLock, lock);
  });
}

kestrel_status kestrel_create_picture(const kestrel_pixels* pixels, kestrel_object** picture) {
  return Guarded([&] {
    Require(pixels, "There are no pixels.");
    Require(picture, "There is no place for the picture.");
    const ThreadCall call;
    // As the class of its description, from which the members that take a picture convert it.
    std::shared_ptr<kestrel::Picture> made =
        std::make_shared<kestrel::engine::PictureObject>(BitmapOf(*pixels));
    *picture = NewHandle(kestrel::dispatch::Reference::Owner(kestrel::dispatch::Describe<kestrel::Picture>(),
                                                             std::move(made)));
  });
}
