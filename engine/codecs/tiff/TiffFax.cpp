#include "TiffFax.h"

#include <cstdint>
#include <limits>
#include <vector>

#include "TiffStream.h"

namespace kestrel::engine::tiff {
namespace {

struct Coding {
  std::uint16_t compression = COMPRESSION_NONE;
  std::uint32_t options = 0;  ///< Group 3 options: 1 for two-dimensional coding
};

bool isFax(std::uint16_t compression) {
  return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTFAX3 ||
         compression == COMPRESSION_CCITTFAX4;
}

void setCoding(TIFF* tiff, const Coding& coding) {
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, coding.compression);
  if (coding.compression == COMPRESSION_CCITTFAX3) TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, coding.options);
}

/// Number of errors and warnings of the library in the first strip or tile.
int diagnosticsOf(TIFF* tiff, std::vector<std::uint8_t>& buffer) {
  const auto* const stream = static_cast<const TiffStream*>(TIFFClientdata(tiff));
  const int before = stream->diagnostics();
  const auto size = static_cast<tmsize_t>(buffer.size());
  const tmsize_t got = TIFFIsTiled(tiff) != 0 ? TIFFReadEncodedTile(tiff, 0, buffer.data(), size)
                                              : TIFFReadEncodedStrip(tiff, 0, buffer.data(), size);
  return got < size ? std::numeric_limits<int>::max() : stream->diagnostics() - before;
}

}  // namespace

void correctFaxCoding(TIFF* tiff) {
  Coding best;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &best.compression);
  if (!isFax(best.compression)) return;
  if (best.compression == COMPRESSION_CCITTFAX3)
    TIFFGetFieldDefaulted(tiff, TIFFTAG_GROUP3OPTIONS, &best.options);
  constexpr tmsize_t kLargest = tmsize_t{1} << 30;
  const tmsize_t size = TIFFIsTiled(tiff) != 0 ? TIFFTileSize(tiff) : TIFFStripSize(tiff);
  if (size <= 0 || size > kLargest) return;
  std::vector<std::uint8_t> buffer(static_cast<std::size_t>(size));
  int fewest = diagnosticsOf(tiff, buffer);
  if (fewest == 0) return;
  for (const Coding& coding : {Coding{COMPRESSION_CCITTFAX4, 0}, Coding{COMPRESSION_CCITTFAX3, 0},
                               Coding{COMPRESSION_CCITTFAX3, 1}, Coding{COMPRESSION_CCITTRLE, 0}}) {
    setCoding(tiff, coding);
    const int diagnostics = diagnosticsOf(tiff, buffer);
    if (diagnostics >= fewest) continue;
    fewest = diagnostics;
    best = coding;
  }
  setCoding(tiff, best);
}

}  // namespace kestrel::engine::tiff
