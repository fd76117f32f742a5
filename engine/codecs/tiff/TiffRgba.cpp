#include "TiffRgba.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "TiffFinish.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::tiff {
namespace {

/// The library's decoder of a directory. Raises RuntimeError 481 for a file that it cannot read.
class RgbaImage {
 public:
  explicit RgbaImage(TIFF* tiff) {
    char reason[1024] = "";
    if (TIFFRGBAImageOK(tiff, reason) == 0 || TIFFRGBAImageBegin(&image_, tiff, 1, reason) == 0) {
      refusePicture("The TIFF file cannot be read: " + std::string(reason) + ".");
    }
  }
  ~RgbaImage() { TIFFRGBAImageEnd(&image_); }
  RgbaImage(const RgbaImage&) = delete;
  RgbaImage& operator=(const RgbaImage&) = delete;

  TIFFRGBAImage& operator*() { return image_; }

 private:
  TIFFRGBAImage image_{};
};

/// Decodes the next rows; returns how many of them are good. The library decodes no more rows of a strip than
/// requested, so for a damaged strip the search halves the number of rows.
std::int32_t rowsThatCanBeRead(TIFFRGBAImage& image, std::vector<std::uint32_t>& raster, std::int32_t width,
                               std::int32_t rows) {
  const auto reads = [&](std::int32_t count) {
    return TIFFRGBAImageGet(&image, raster.data(), static_cast<std::uint32_t>(width),
                            static_cast<std::uint32_t>(count)) != 0;
  };
  if (reads(rows)) return rows;
  std::int32_t good = 0, bad = rows;
  while (bad - good > 1) {
    const std::int32_t middle = good + (bad - good) / 2;
    (reads(middle) ? good : bad) = middle;
  }
  return good > 0 && reads(good) ? good : 0;
}

}  // namespace

void readByLibrary(TIFF* tiff, const Layout& layout, Decoded& decoded) {
  RgbaImage decoder(tiff);
  TIFFRGBAImage& image = *decoder;
  image.req_orientation = image.orientation;
  const Pixels pixels = decoded.bitmap.writable();
  const std::int32_t band = TIFFIsTiled(tiff) != 0
                                ? static_cast<std::int32_t>(std::min<std::uint32_t>(
                                      field<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, 1), 4096))
                                : static_cast<std::int32_t>(std::min<std::uint32_t>(
                                      field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, 1), 4096));
  const std::int32_t step = std::max(1, std::min(band, layout.height));
  std::vector<std::uint32_t> raster(static_cast<std::size_t>(step) * static_cast<std::size_t>(layout.width));
  std::int32_t y = 0;
  while (y < layout.height) {
    checkCanceled();
    const std::int32_t rows = std::min(step, layout.height - y);
    image.row_offset = y;
    image.col_offset = 0;
    const std::int32_t good = rowsThatCanBeRead(image, raster, layout.width, rows);
    for (std::int32_t row = 0; row < good; ++row) {
      std::memcpy(pixels.row(y + row),
                  raster.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(layout.width),
                  static_cast<std::size_t>(layout.width) * 4);
    }
    y += good;
    if (good < rows) break;
  }
  const bool hasAlpha = image.alpha != 0;
  if (y < layout.height) reportMissingRows(decoded, y);
  if (hasAlpha) unpremultiply(decoded.bitmap);
  convertToSrgb(decoded, PixelKind::rgb);
}

}  // namespace kestrel::engine::tiff
