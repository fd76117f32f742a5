#include "Metafile.h"

#include <algorithm>
#include <cmath>

#include "base/RuntimeError.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/pixels/Opaque.h"

namespace kestrel::engine::metafile {

DrawingSize sizeToPlay(double naturalWidth, double naturalHeight, std::size_t fileSize) {
  constexpr double kMostOfDrawing = 100e6, kBitmapPixelsPerByte = 4, kDrawingPixelsPerByte = 524'288;
  // Reduced drawings get a size that is useful on a screen and fast to draw.
  constexpr double kUseful = 25e6, kLongestSide = 32000;
  const auto bytes = static_cast<double>(fileSize);
  const double most = std::min(kMostOfDrawing + kBitmapPixelsPerByte * bytes, kDrawingPixelsPerByte * bytes);
  DrawingSize size{0, 0, naturalWidth, naturalHeight, 1};
  const auto smallerIf = [&size](bool tooLarge, double scale) {
    if (tooLarge) size.scale = std::min(size.scale, scale);
  };
  const double area = naturalWidth * naturalHeight, longest = std::max(naturalWidth, naturalHeight);
  smallerIf(area > most, std::sqrt(std::min(kUseful, most) / area));
  smallerIf(longest > kLongestSide, kLongestSide / longest);
  const double least = size.scale < 1 ? 1 : 0;  // a very thin drawing keeps one row
  const auto pixels = [&](double natural) {
    return static_cast<std::int32_t>(std::max(least, std::round(natural * size.scale)));
  };
  size.width = pixels(naturalWidth);
  size.height = pixels(naturalHeight);
  constexpr std::int64_t kPixelsPerByte = 65536;
  checkClaimedSize(size.width, size.height, fileSize, kPixelsPerByte);
  return size;
}

namespace {

std::string pixelsOf(double width, double height) {
  return std::to_string(std::llround(width)) + " x " + std::to_string(std::llround(height)) + " pixels";
}

std::string noticeOf(const Drawing& drawing, const Work& work) {
  if (!drawing.complete) return damageNotice("parts of the drawing could not be read");
  if (work.exhausted) return "The drawing takes too long to be drawn whole: parts of it are missing.";
  const DrawingSize& size = drawing.size;
  if (size.scale == 1) return {};
  return "The drawing is too large at its natural size of " +
         pixelsOf(size.naturalWidth, size.naturalHeight) + ": it was opened at " +
         pixelsOf(size.width, size.height) + ".";
}

}  // namespace

Decoded decodedFrom(Drawing drawing, const Work& work) {
  Decoded decoded;
  decoded.notice = noticeOf(drawing, work);
  decoded.bitmap = std::move(drawing.bitmap);
  decoded.stored.hasAlpha = !isOpaque(decoded.bitmap.pixels());
  decoded.metadata.resolutionX = decoded.metadata.resolutionY = kPixelsPerInch * drawing.size.scale;
  return decoded;
}

}  // namespace kestrel::engine::metafile
