#include "DecodeErrors.h"

#include <cstring>
#include <string>

#include "base/RuntimeError.h"
#include "engine/pixels/Memory.h"

namespace kestrel::engine {

void refusePicture(std::string_view sentence) {
  throw RuntimeError(err::kInvalidPicture, std::string(sentence));
}

void checkClaimedSize(std::int64_t width, std::int64_t height, std::size_t fileSize,
                      std::int64_t pixelsPerByte) {
  const std::string size = std::to_string(width) + " x " + std::to_string(height) + " pixels";
  if (width < 1 || height < 1) refusePicture("The file is damaged: it claims " + size + ".");
  if (width > Bitmap::kMaxSide || height > Bitmap::kMaxSide || width * height > Bitmap::kMaxPixels) {
    throw RuntimeError(err::kOutOfMemory,
                       "The picture is too large: the file claims " + size +
                           ", and at most 1000000 along a side and 2 gigapixels in all are possible.");
  }
  if (width * height / (8 * pixelsPerByte) > static_cast<std::int64_t>(fileSize)) {
    refusePicture("The file is damaged: it claims " + size + " but has only " + std::to_string(fileSize) +
                  " bytes.");
  }
  const std::size_t bytes = static_cast<std::size_t>(width * height) * sizeof(Pixel);
  if (bytes > machineMemory() / 4) {
    throw RuntimeError(err::kOutOfMemory, "The picture is too large: the file claims " + size +
                                              ", which need " + std::to_string(bytes >> 20) +
                                              " MB, more than a quarter of this machine's memory.");
  }
}

std::string damageNotice(std::string_view problem) {
  return "The file is damaged or truncated: " + std::string(problem) + ".";
}

std::string partsMissingNotice() { return damageNotice("parts of the picture could not be read"); }

std::string rowsReadNotice(std::int64_t rows, std::int64_t height) {
  return damageNotice("only " + std::to_string(rows) + " of " + std::to_string(height) +
                      " rows could be read");
}

void keepRows(Decoded& decoded, std::int32_t rows) {
  if (rows < 1) refusePicture("The file is damaged: it ends before the first row of the picture.");
  const std::int32_t height = decoded.bitmap.height();
  const Pixels pixels = decoded.bitmap.writable();
  for (std::int32_t y = rows; y < height; ++y) {
    std::memset(pixels.row(y), 0, static_cast<std::size_t>(pixels.width) * sizeof(Pixel));
  }
  decoded.notice = rowsReadNotice(rows, height);
}

}  // namespace kestrel::engine
