#include "FreehandGesture.h"

#include "engine/imgx/Conversions.h"

namespace kestrel::engine {
namespace {

Rectangle boundsOf(const Bitmap& bitmap) { return {0, 0, bitmap.width(), bitmap.height()}; }

}  // namespace

template <typename Advance>
void FreehandGesture::draw(const Advance& advance) {
  // Another change to the picture may have ended the painting meanwhile.
  if (painting_.ended()) return;
  try {
    painting_.touch(advance());
  } catch (...) {
    painting_.rollBack();  // the stroke has advanced into areas that are not saved for undo
    throw;
  }
  const Rectangle drawn = stroke_.paint(painting_.pixels());
  if (drawn.Width > 0) host_.pictureDrawn(drawn);
}

FreehandGesture::FreehandGesture(GestureHost& host, PointD at)
    : host_(host),
      painting_(host.gesturePicture()),
      stroke_(pixelOf(host.drawColor()), host.penWidth(), boundsOf(host.gesturePicture().bitmap())) {
  draw([&] { return stroke_.add(host_.toPicture(pixelCenter(at))); });
}

void FreehandGesture::drag(PointD at, std::int32_t /*shift*/) {
  draw([&] { return stroke_.add(host_.toPicture(pixelCenter(at))); });
}

void FreehandGesture::end(bool /*dragged*/) {
  draw([&] { return stroke_.finish(); });
  painting_.commit("Freehand");
}

void FreehandGesture::cancel() { painting_.rollBack(); }

}  // namespace kestrel::engine
