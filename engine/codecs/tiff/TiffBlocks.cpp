#include "TiffBlocks.h"

#include <algorithm>
#include <cstddef>

#include "TiffStream.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::tiff {

Blocks::Blocks(TIFF* tiff, Bytes file, const Layout& layout) : tiff_(tiff), file_(file) {
  tiled_ = TIFFIsTiled(tiff) != 0;
  if (tiled_) {
    width_ = field<std::uint32_t>(tiff, TIFFTAG_TILEWIDTH, 0);
    height_ = field<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, 0);
    checkClaimedSize(width_, height_, file.size(), maxPixelsPerByte(layout));
    rowBytes_ = TIFFTileRowSize(tiff);
  } else {
    width_ = static_cast<std::uint32_t>(layout.width);
    const auto rows = field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, UINT32_MAX);
    height_ = std::min(rows, static_cast<std::uint32_t>(layout.height));
    rowBytes_ = TIFFScanlineSize(tiff);
  }
  constexpr std::uint64_t kLargest = std::uint64_t{1} << 30;
  if (width_ == 0 || height_ == 0 || rowBytes_ <= 0 ||
      static_cast<std::uint64_t>(rowBytes_) > kLargest / height_) {
    refusePicture("The TIFF file is damaged: the size of its strips or tiles is invalid.");
  }
  const std::uint64_t samplesInRow = std::uint64_t{width_} * (layout.planar ? 1U : layout.samples);
  if (static_cast<std::uint64_t>(rowBytes_) * 8 < samplesInRow * layout.sample.bits) {
    refusePicture("The TIFF file cannot be read: its samples are stored in an unusual way.");
  }
  buffer_.resize(static_cast<std::size_t>(rowBytes_) * height_);
}

std::int64_t Blocks::read(std::int64_t x, std::int64_t y, std::uint16_t plane, std::int64_t rows) {
  checkCanceled();
  const auto column = static_cast<std::uint32_t>(x), line = static_cast<std::uint32_t>(y);
  const std::uint32_t number =
      tiled_ ? TIFFComputeTile(tiff_, column, line, 0, plane) : TIFFComputeStrip(tiff_, line, plane);
  const tmsize_t wanted = rowBytes_ * (tiled_ ? height() : rows);
  const tmsize_t got = tiled_ ? TIFFReadEncodedTile(tiff_, number, buffer_.data(), wanted)
                              : TIFFReadEncodedStrip(tiff_, number, buffer_.data(), wanted);
  return got >= wanted ? rows : std::min(rows, salvage(number));
}

/// Number of rows of a damaged block that can be decoded from the part of it that the file has. The library
/// reports success or failure only, so the search halves the number of rows. For some compressions it makes
/// up missing rows and reports a warning: a warning counts as failure.
std::int64_t Blocks::salvage(std::uint32_t number) {
  const std::uint64_t offset = TIFFGetStrileOffset(tiff_, number);
  if (offset >= file_.size()) return 0;
  // Larger than any packed block; a file may claim the same bytes for many blocks.
  const std::uint64_t useful = 8 * buffer_.size() + (1U << 16);
  const std::uint64_t size =
      std::min<std::uint64_t>({TIFFGetStrileByteCount(tiff_, number), file_.size() - offset, useful});
  if (size == 0) return 0;
  std::vector<std::uint8_t> packed(file_.begin() + static_cast<std::ptrdiff_t>(offset),
                                   file_.begin() + static_cast<std::ptrdiff_t>(offset + size));
  const auto* const stream = static_cast<const TiffStream*>(TIFFClientdata(tiff_));
  const auto decodes = [&](std::int64_t rows) {
    const int before = stream->diagnostics();
    return TIFFReadFromUserBuffer(tiff_, number, packed.data(), static_cast<tmsize_t>(packed.size()),
                                  buffer_.data(), rowBytes_ * rows) == 1 &&
           stream->diagnostics() == before;
  };
  std::int64_t good = 0, bad = height() + 1;
  while (bad - good > 1) {
    checkCanceled();
    const std::int64_t middle = good + (bad - good) / 2;
    (decodes(middle) ? good : bad) = middle;
  }
  if (good > 0) decodes(good);
  return good;
}

}  // namespace kestrel::engine::tiff
