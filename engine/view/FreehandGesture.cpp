#include "FreehandGesture.h"

#include "engine/imgx/Conversions.h"

namespace kestrel::engine {
namespace {

Rectangle boundsOf(const Bitmap& bitmap) { return {0, 0, bitmap.width(), bitmap.height()}; }

}  // namespace

FreehandGesture::FreehandGesture(GestureHost& host, PointD at)
    : host_(host),
      painting_(host.gesturePicture()),
      stroke_(pixelOf(host.drawColor()), host.penWidth(), boundsOf(host.gesturePicture().bitmap())) {
  draw(stroke_.add(host_.toPicture(pixelCentre(at))));
}

void FreehandGesture::drag(PointD at, std::int32_t /*shift*/) {
  draw(stroke_.add(host_.toPicture(pixelCentre(at))));
}

void FreehandGesture::end(bool /*dragged*/) {
  draw(stroke_.finish());
  painting_.commit("Freehand");
}

void FreehandGesture::cancel() { painting_.rollBack(); }

void FreehandGesture::draw(std::span<const Rectangle> areas) {
  // Something else may have changed the picture meanwhile, and so have ended the stroke.
  if (painting_.ended() || areas.empty()) return;
  painting_.touch(areas);
  host_.pictureDrawn(stroke_.paint(painting_.pixels()));
}

}  // namespace kestrel::engine
