#include "Metafile.h"

#include "Damage.h"
#include "base/RuntimeError.h"

namespace kestrel::engine::metafile {

void checkDrawingSize(std::int32_t width, std::int32_t height, std::size_t fileSize) {
  constexpr std::int64_t kPixelsPerByte = 65536;
  checkClaimedSize(width, height, fileSize, kPixelsPerByte);
  constexpr std::int64_t kMostOfDrawing = 100'000'000, kBitmapPixelsPerByte = 4;
  const auto bytes = static_cast<std::int64_t>(fileSize);
  if (std::int64_t{width} * height > kMostOfDrawing + kBitmapPixelsPerByte * bytes) {
    throw RuntimeError(err::kOutOfMemory, "The picture is too large: the file claims " +
                                              std::to_string(width) + " x " + std::to_string(height) +
                                              " pixels.");
  }
}

std::string noticeOf(const Drawing& drawing, const Work& work) {
  if (!drawing.complete)
    return "The file is damaged or was cut short: parts of the drawing could not be read.";
  if (work.exhausted) return "The drawing takes too long to be drawn whole: parts of it are missing.";
  return {};
}

}  // namespace kestrel::engine::metafile
