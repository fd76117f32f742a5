#include "PngWriter.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "Deflate.h"
#include "PngChunks.h"
#include "PngFilter.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine::png {
namespace {

/// Filtered bytes per band: large enough to lose little compression between bands, small enough for the
/// cache.
constexpr std::size_t kBandBytes = std::size_t{1} << 20;
/// Header of a zlib stream (RFC 1950): 32 KB window, fastest compression.
constexpr std::array<std::uint8_t, 2> kStreamStart{0x78, 0x01};

/// Adler-32, the checksum of zlib streams, combinable from checksums of parts.
struct Adler {
  std::uint32_t value = 1;
  std::size_t size = 0;

  static Adler of(Bytes data) { return {isal_adler32(1, data.data(), data.size()), data.size()}; }

  void append(const Adler& next) {
    constexpr std::uint64_t kModulus = 65521;
    const std::uint64_t low = value & 0xFFFF, high = value >> 16;
    // The low sum before, minus the initial 1 of the next part, is added to the high sum once per byte of
    // that part.
    const std::uint64_t sums = high + (next.value >> 16) + next.size % kModulus * (low + kModulus - 1);
    value = static_cast<std::uint32_t>(sums % kModulus << 16 |
                                       (low + (next.value & 0xFFFF) + kModulus - 1) % kModulus);
    size += next.size;
  }
};

/// Filtered rows, each preceded by its filter type.
class FilteredRows {
 public:
  FilteredRows(const ConstPixels& pixels, bool withAlpha)
      : pixels_(pixels),
        bytesPerPixel_(withAlpha ? 4 : 3),
        rowBytes_(static_cast<std::size_t>(pixels.width) * bytesPerPixel_),
        row_(kRowMargin + rowBytes_ + kRowBlock),
        above_(row_.size()) {}

  /// Filters the rows first to last - 1; the result is valid until the next call.
  Bytes make(std::int32_t first, std::int32_t last) {
    const std::size_t size = static_cast<std::size_t>(last - first) * (rowBytes_ + 1);
    filtered_.resize(size + kRowBlock);
    if (first > 0) {
      load(first - 1, row_);
    } else {
      std::ranges::fill(row_, std::uint8_t{0});
    }
    std::uint8_t* to = filtered_.data();
    for (std::int32_t y = first; y < last; ++y, to += rowBytes_ + 1) {
      row_.swap(above_);
      load(y, row_);
      const std::uint8_t* const row = row_.data() + kRowMargin;
      const std::uint8_t* const above = above_.data() + kRowMargin;
      const Filter filter = bestFilter(row, above, rowBytes_, bytesPerPixel_);
      to[0] = static_cast<std::uint8_t>(filter);
      filterRow(filter, row, above, rowBytes_, bytesPerPixel_, to + 1);
    }
    return {filtered_.data(), size};
  }

 private:
  void load(std::int32_t y, std::vector<std::uint8_t>& row) const {
    std::uint8_t* const to = row.data() + kRowMargin;
    if (bytesPerPixel_ == 3) {
      packRgb(pixels_.row(y), pixels_.width, to);
      std::memset(to + rowBytes_, 0, kRowBlock);
    } else {
      std::memcpy(to, pixels_.row(y), rowBytes_);
    }
  }

  ConstPixels pixels_;
  std::size_t bytesPerPixel_, rowBytes_;
  std::vector<std::uint8_t> row_, above_, filtered_;
};

struct Band {
  std::vector<std::uint8_t> packed;
  Adler checksum;
};

}  // namespace

void addPixels(std::vector<std::uint8_t>& file, const ConstPixels& pixels, bool withAlpha) {
  const std::size_t rowBytes = static_cast<std::size_t>(pixels.width) * (withAlpha ? 4 : 3) + 1;
  const auto rowsFor = [&](std::size_t bytes) {
    return static_cast<std::int32_t>(
        std::min((bytes + rowBytes - 1) / rowBytes, static_cast<std::size_t>(pixels.height)));
  };
  const std::int32_t bandRows = rowsFor(kBandBytes), historyRows = rowsFor(DeflateBlocks::kFarthestMatch);
  const std::int32_t bandCount = (pixels.height - 1) / bandRows + 1;
  std::vector<Band> bands(static_cast<std::size_t>(bandCount));
  forRows(bandCount, 1, [&](std::int32_t first, std::int32_t last) {
    FilteredRows rows(pixels, withAlpha);
    Deflate deflate;
    for (std::int32_t i = first; i < last; ++i) {
      const std::int32_t top = i * bandRows, bottom = std::min(pixels.height, top + bandRows);
      const std::int32_t history = std::min(top, historyRows);
      const Bytes filtered = rows.make(top - history, bottom);
      const std::size_t before = static_cast<std::size_t>(history) * rowBytes;
      bands[static_cast<std::size_t>(i)] = {deflate.pack(filtered, before, i == bandCount - 1),
                                            Adler::of(filtered.subspan(before))};
    }
  });

  Adler checksum;
  std::size_t size = 0;
  for (const Band& band : bands) {
    checksum.append(band.checksum);
    size += band.packed.size() + kChunkOverhead;
  }
  auto& start = bands.front().packed;
  start.insert(start.begin(), kStreamStart.begin(), kStreamStart.end());
  for (int shift = 24; shift >= 0; shift -= 8)
    bands.back().packed.push_back(static_cast<std::uint8_t>(checksum.value >> shift));
  file.reserve(file.size() + size + 64);
  for (Band& band : bands) {
    addChunk(file, "IDAT", band.packed);
    std::vector<std::uint8_t>().swap(band.packed);
  }
}

}  // namespace kestrel::engine::png
