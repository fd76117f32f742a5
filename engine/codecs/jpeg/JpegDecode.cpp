#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Jpeg.h"
#include "JpegDcThumbnail.h"
#include "JpegErrors.h"
#include "JpegLib.h"
#include "JpegSource.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Orientation.h"
#include "engine/codecs/common/Resolution.h"
#include "engine/codecs/metadata/Exif.h"
#include "engine/codecs/metadata/JpegMarkers.h"
#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::jpeg {
namespace {

/// The densest coding takes about a bit for an 8 x 8 block.
constexpr std::int64_t kPixelsPerByte = 512;

/// libjpeg's decoder over a file in memory.
class Reader {
 public:
  explicit Reader(Bytes data) {
    errors_.install(reinterpret_cast<j_common_ptr>(&info_));
    if (!errors_.guarded([this] { jpeg_create_decompress(&info_); })) fail();
    source_.install(&info_, data);
    scanLimit_.install(&info_);
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  ~Reader() { jpeg_destroy_decompress(&info_); }

  void readHeader() {
    const bool read = errors_.guarded([this] {
      for (const int marker : {1, 2, 13, kCommentMarker})
        jpeg_save_markers(&info_, JPEG_APP0 + marker, 0xFFFF);
      jpeg_read_header(&info_, TRUE);
    });
    if (!read) fail();
  }

  const jpeg_decompress_struct& info() const { return info_; }

  /// Scales the output to 1/2, 1/4 or 1/8, with the longest side still at least `longestSide` pixels.
  /// (libjpeg takes longer for the sizes between than for the next larger of these.)
  void reduceTo(std::int64_t longestSide) {
    const std::int64_t side = std::max(info_.image_width, info_.image_height);
    unsigned divisor = 1;
    while (divisor < 8 && (side + 2 * divisor - 1) / (2 * divisor) >= longestSide) divisor *= 2;
    info_.scale_num = 1;
    info_.scale_denom = divisor;
    if (!errors_.guarded([this] { jpeg_calc_output_dimensions(&info_); })) fail();
  }

  bool isCmyk() const { return info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK; }

  /// Decodes into rows of 4 bytes per pixel, RGBA or CMYK; returns the number of rows decoded.
  std::int32_t readRows(const Pixels& pixels) {
    info_.out_color_space = isCmyk() ? JCS_CMYK : JCS_EXT_RGBA;
    rows_ = 0;
    const bool whole = errors_.guarded([this, &pixels] {
      if (!jpeg_start_decompress(&info_)) {
        // The file ends within a marker between two scans: decode the scans before it.
        info_.unread_marker = 0;
        source_.feedEnd();
        jpeg_start_decompress(&info_);
      }
      while (info_.output_scanline < info_.output_height) {
        JSAMPROW row = pixels.row(static_cast<std::int32_t>(info_.output_scanline));
        jpeg_read_scanlines(&info_, &row, 1);
        rows_ = static_cast<std::int32_t>(info_.output_scanline);
      }
      jpeg_finish_decompress(&info_);
    });
    checkCanceled();
    if (source_.exhausted && !source_.hadRow) {
      refusePicture("The JPEG file is damaged: it ends before the first row of the picture.");
    }
    if (!whole && rows_ == 0) fail();
    return rows_;
  }

  bool damaged() const { return errors_.damaged || source_.exhausted; }

  [[noreturn]] void fail() const {
    refusePicture("The JPEG file is damaged: " + std::string(errors_.text.data()) + ".");
  }

 private:
  jpeg_decompress_struct info_{};
  Errors errors_{};
  Source source_{};
  ScanLimit scanLimit_{};
  std::int32_t rows_ = 0;
};

Metadata metadataOf(const jpeg_decompress_struct& info) {
  std::vector<MarkerView> markers;
  for (const jpeg_marker_struct* m = info.marker_list; m != nullptr; m = m->next) {
    markers.push_back({m->marker - JPEG_APP0, {m->data, m->data_length}});
  }
  Metadata metadata = readMarkers(markers);
  constexpr int kPerInch = 1, kPerCentimeter = 2;
  if (info.saw_JFIF_marker && (info.density_unit == kPerInch || info.density_unit == kPerCentimeter)) {
    const double scale = info.density_unit == kPerCentimeter ? kCentimetersPerInch : 1;
    metadata.resolutionX = info.X_density * scale;
    metadata.resolutionY = info.Y_density * scale;
  } else {
    readExifResolution(metadata.exif, metadata);
  }
  return metadata;
}

void readPixels(Reader& reader, Decoded& decoded) {
  const jpeg_decompress_struct& info = reader.info();
  decoded.bitmap = Bitmap::uninitialized(static_cast<std::int32_t>(info.output_width),
                                         static_cast<std::int32_t>(info.output_height));
  const std::int32_t rows = reader.readRows(decoded.bitmap.writable());
  const bool cut = rows < decoded.bitmap.height();
  if (cut) keepRows(decoded, rows);
  // A count of rows means nothing to the user where the picture is reduced.
  if (cut ? info.scale_denom > 1 : reader.damaged()) {
    decoded.notice = partsMissingNotice();
  }
}

/// Programs that write an Adobe marker store inverted CMYK: 255 for no ink.
void invert(Bitmap& bitmap) {
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    std::uint8_t* const row = pixels.row(y);
    for (std::int32_t x = 0; x < 4 * pixels.width; ++x) row[x] = static_cast<std::uint8_t>(~row[x]);
  }
}

}  // namespace

bool probe(Bytes data) {
  if (data.size() < 3 || data[0] != 0xFF || data[1] != 0xD8) return false;
  // Some cameras leave a few zero bytes between the segments, also before the first.
  constexpr std::size_t kMostZeros = 64;
  const Bytes start = data.subspan(2, std::min(data.size() - 2, kMostZeros + 1));
  const auto first = std::ranges::find_if(start, [](std::uint8_t byte) { return byte != 0; });
  return first != start.end() && *first == 0xFF;
}

Decoded decode(Bytes data) { return decodeReduced(data, Bitmap::kMaxSide); }

Decoded decodeReduced(Bytes data, std::int32_t longestSide) {
  Reader reader(data);
  reader.readHeader();
  const jpeg_decompress_struct& info = reader.info();
  checkClaimedSize(info.image_width, info.image_height, data.size(), kPixelsPerByte);
  reader.reduceTo(longestSide);

  Decoded decoded;
  decoded.metadata = metadataOf(info);
  std::optional<Bitmap> thumbnail;
  if (info.scale_denom == DCTSIZE) thumbnail = readDcThumbnail(info);
  if (thumbnail) {
    decoded.bitmap = std::move(*thumbnail);
  } else {
    readPixels(reader, decoded);
  }

  if (reader.isCmyk()) {
    if (info.saw_Adobe_marker) invert(decoded.bitmap);
    convertToSrgb(decoded, PixelKind::cmyk);
  } else {
    convertToSrgb(decoded, info.jpeg_color_space == JCS_GRAYSCALE ? PixelKind::gray : PixelKind::rgb);
  }
  applyOrientation(decoded, exifOrientation(decoded.metadata.exif));
  decoded.stored.width = static_cast<std::int32_t>(info.image_width);
  decoded.stored.height = static_cast<std::int32_t>(info.image_height);
  constexpr std::int32_t kFirstExchanging = 5;
  if (decoded.stored.orientation >= kFirstExchanging) std::swap(decoded.stored.width, decoded.stored.height);
  normalizeCameraData(decoded.metadata);
  return decoded;
}

}  // namespace kestrel::engine::jpeg
