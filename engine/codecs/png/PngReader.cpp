#include "PngReader.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "PngUnfilter.h"
#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::png {
namespace {

/// Bytes decompressed at a time: they must still be in cache when they are unfiltered.
constexpr std::size_t kPieceBytes = std::size_t{1} << 17;

/// Decompressor for a zlib stream in pieces.
class Inflate {
 public:
  explicit Inflate(std::span<const Bytes> packed) : state_(std::make_unique<inflate_state>()), rest_(packed) {
    isal_inflate_init(state_.get());
    state_->crc_flag = ISAL_ZLIB;
  }

  /// Decompresses `count` bytes; returns false if the stream is invalid or ends early.
  bool read(std::uint8_t* target, std::size_t count) {
    state_->next_out = target;
    state_->avail_out = static_cast<std::uint32_t>(count);
    while (state_->avail_out > 0) {
      if (atEnd() || !step()) return false;
    }
    return true;
  }

  /// Returns true if the stream ends here, with a correct checksum.
  bool finish() {
    std::uint8_t surplus = 0;
    state_->next_out = &surplus;
    state_->avail_out = 1;
    while (!atEnd()) {
      if (!step() || state_->avail_out == 0) return false;
    }
    return true;
  }

 private:
  bool atEnd() const { return state_->block_state == ISAL_BLOCK_FINISH; }

  /// Continues with the current input or takes the next piece; returns false if there is no progress.
  bool step() {
    const std::uint32_t outBefore = state_->avail_out;
    const auto stateBefore = state_->block_state;
    if (isal_inflate(state_.get()) != ISAL_DECOMP_OK) return false;
    if (atEnd() || state_->avail_out == 0) return true;
    if (state_->avail_in > 0) return state_->avail_out < outBefore || state_->block_state != stateBefore;
    if (rest_.empty()) return false;
    state_->next_in = const_cast<std::uint8_t*>(rest_.front().data());
    state_->avail_in = static_cast<std::uint32_t>(rest_.front().size());
    rest_ = rest_.subspan(1);
    return true;
  }

  std::unique_ptr<inflate_state> state_;
  std::span<const Bytes> rest_;
};

std::uint8_t nearestByte(const std::uint8_t* sample) {
  const std::uint32_t value = std::uint32_t{sample[0]} << 8 | sample[1];
  return static_cast<std::uint8_t>((value * 255 + 32895) >> 16);
}

/// Expands `width` pixels of kSamples samples each, read by `sample(i)`, to RGBA.
template <std::size_t kSamples, typename Sample>
void expandSamples(std::int32_t width, std::uint8_t* rgba, const Sample& sample) {
  constexpr bool kGray = kSamples < 3;
  for (std::size_t x = 0, from = 0; x < static_cast<std::size_t>(width); ++x, from += kSamples, rgba += 4) {
    rgba[0] = sample(from);
    rgba[1] = kGray ? rgba[0] : sample(from + 1);
    rgba[2] = kGray ? rgba[0] : sample(from + 2);
    rgba[3] = kSamples % 2 == 0 ? sample(from + kSamples - 1) : std::uint8_t{255};
  }
}

template <std::size_t kSamples>
void expandRow(const std::uint8_t* row, std::size_t sampleBytes, std::int32_t width, std::uint8_t* rgba) {
  if (sampleBytes == 1) {
    expandSamples<kSamples>(width, rgba, [row](std::size_t i) { return row[i]; });
  } else {
    expandSamples<kSamples>(width, rgba, [row](std::size_t i) { return nearestByte(row + 2 * i); });
  }
}

void expandRow(const PixelLayout& layout, const std::uint8_t* row, std::int32_t width, std::uint8_t* rgba) {
  switch (layout.kind) {
    case PixelLayout::Kind::gray:
      return expandRow<1>(row, layout.sampleBytes, width, rgba);
    case PixelLayout::Kind::grayAlpha:
      return expandRow<2>(row, layout.sampleBytes, width, rgba);
    case PixelLayout::Kind::rgb:
      return expandRow<3>(row, layout.sampleBytes, width, rgba);
    case PixelLayout::Kind::rgba:
      return expandRow<4>(row, layout.sampleBytes, width, rgba);
    case PixelLayout::Kind::palette:
      for (std::int32_t x = 0; x < width; ++x)
        std::memcpy(rgba + std::ptrdiff_t{4} * x, &layout.palette[row[x]], sizeof(Pixel));
  }
}

}  // namespace

std::size_t PixelLayout::bytesPerPixel() const {
  const std::size_t samples = kind == Kind::rgba        ? 4
                              : kind == Kind::rgb       ? 3
                              : kind == Kind::grayAlpha ? 2
                                                        : 1;
  return samples * sampleBytes;
}

bool readPixels(std::span<const Bytes> packed, const PixelLayout& layout, const Pixels& pixels) {
  const std::size_t bytesPerPixel = layout.bytesPerPixel();
  const std::size_t rowBytes = static_cast<std::size_t>(pixels.width) * bytesPerPixel;
  // 8-bit RGB and RGBA are unfiltered directly into the bitmap, which also holds the row above.
  const bool direct = layout.sampleBytes == 1 && bytesPerPixel >= 3;
  const std::vector<std::uint8_t> zeros(std::max(rowBytes, static_cast<std::size_t>(pixels.width) * 4));
  const std::size_t rowsAtOnce = std::max<std::size_t>(1, kPieceBytes / (rowBytes + 1));
  // The last row of the piece before is kept in front of the next piece.
  std::vector<std::uint8_t> unpacked((rowsAtOnce + 1) * (rowBytes + 1) + 1);
  const std::uint8_t* above = zeros.data();

  Inflate inflate(packed);
  for (std::int32_t y = 0; y < pixels.height;) {
    const std::size_t rows = std::min(rowsAtOnce, static_cast<std::size_t>(pixels.height - y));
    std::uint8_t* row = unpacked.data() + rowBytes + 1;
    checkCanceled();
    if (!inflate.read(row, rows * (rowBytes + 1))) return false;
    for (std::size_t i = 0; i < rows; ++i, ++y, row += rowBytes + 1) {
      if (row[0] >= kFilters) return false;
      const auto filter = static_cast<Filter>(row[0]);
      if (direct) {
        unfilterPixels(filter, row + 1, above, pixels.width, bytesPerPixel, pixels.row(y));
        above = pixels.row(y);
      } else {
        unfilterBytes(filter, row + 1, above, rowBytes, bytesPerPixel);
        expandRow(layout, row + 1, pixels.width, pixels.row(y));
        above = row + 1;
      }
    }
    if (!direct) {
      std::memcpy(unpacked.data(), row - rowBytes - 1, rowBytes + 1);
      above = unpacked.data() + 1;
    }
  }
  return inflate.finish();
}

}  // namespace kestrel::engine::png
