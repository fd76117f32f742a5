#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Jpeg.h"
#include "JpegDcThumbnail.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Flatten.h"
#include "engine/codecs/common/Orientation.h"
#include "engine/codecs/metadata/Exif.h"
#include "engine/codecs/metadata/JpegMarkers.h"
#include "engine/pixels/Opaque.h"

// After <cstdio>, which it needs and does not include.
#include <jerror.h>
#include <jpeglib.h>

namespace kestrel::engine::jpeg {
namespace {

/// Highest compression ratio: about one bit per 8 x 8 block.
constexpr std::int64_t kPixelsPerByte = 512;
/// Bounds the decode time: a progressive file needs some ten scans, a malicious one may have thousands of
/// empty ones.
constexpr int kMostScans = 500;
/// From this quality on chroma is not subsampled.
constexpr std::int32_t kFullColorQuality = 90;

/// Error callbacks. The library reports errors by longjmp, so functions that call it must not hold objects
/// with destructors.
struct Errors {
  jpeg_error_mgr base;
  std::jmp_buf jump;
  std::array<char, JMSG_LENGTH_MAX> text;
  bool damaged;

  void install(jpeg_common_struct* common) {
    common->err = jpeg_std_error(&base);
    base.error_exit = [](j_common_ptr self) {
      auto* const errors = reinterpret_cast<Errors*>(self->err);
      errors->base.format_message(self, errors->text.data());
      std::longjmp(errors->jump, 1);
    };
    base.emit_message = [](j_common_ptr self, int level) {
      auto* const errors = reinterpret_cast<Errors*>(self->err);
      if (level < 0 && isDataLoss(errors->base.msg_code)) errors->damaged = true;
    };
    base.output_message = [](j_common_ptr) {};
    text.fill('\0');
    damaged = false;
  }

  /// Whether a warning means lost picture data. The others are harmless deviations from the format.
  static bool isDataLoss(int code) {
    switch (code) {
      case JWRN_JPEG_EOF:
      case JWRN_HIT_MARKER:
      case JWRN_HUFF_BAD_CODE:
      case JWRN_MUST_RESYNC:
      case JWRN_BOGUS_PROGRESSION:
        return true;
      default:
        return false;
    }
  }
};

/// Source manager over memory. At the end of the data it feeds end markers. Inside a marker segment these
/// would be taken for its content: there it suspends the library until `feedEnd`.
struct Source {
  jpeg_source_mgr base;
  bool exhausted;
  bool hadRow;

  void install(jpeg_decompress_struct* info, Bytes data) {
    info->src = &base;
    base.next_input_byte = data.data();
    base.bytes_in_buffer = data.size();
    base.init_source = [](j_decompress_ptr) {};
    base.fill_input_buffer = [](j_decompress_ptr self) -> boolean {
      auto* const source = reinterpret_cast<Source*>(self->src);
      source->exhaust(*self);
      const bool withinMarker = self->unread_marker != 0 && self->input_scan_number > 0;
      if (!withinMarker) source->feedEnd();
      return withinMarker ? FALSE : TRUE;
    };
    base.skip_input_data = [](j_decompress_ptr self, long count) {
      auto* const source = reinterpret_cast<Source*>(self->src);
      if (count <= 0) return;
      if (static_cast<std::size_t>(count) > source->base.bytes_in_buffer) {
        source->exhaust(*self);
        source->feedEnd();
        return;
      }
      source->base.next_input_byte += count;
      source->base.bytes_in_buffer -= static_cast<std::size_t>(count);
    };
    base.resync_to_restart = jpeg_resync_to_restart;
    base.term_source = [](j_decompress_ptr) {};
    exhausted = false;
    hadRow = false;
  }

  void feedEnd() {
    static constexpr JOCTET kEnd[] = {0xFF, JPEG_EOI};
    base.next_input_byte = kEnd;
    base.bytes_in_buffer = sizeof kEnd;
  }

  void exhaust(const jpeg_decompress_struct& info) {
    if (exhausted) return;
    exhausted = true;
    hadRow = info.input_iMCU_row > 0 || info.input_scan_number > 1 ||
             (info.total_iMCU_rows == 1 && info.input_scan_number == 1);
  }
};

struct ScanLimit {
  jpeg_progress_mgr base;

  void install(jpeg_decompress_struct* info) {
    base = {};
    base.progress_monitor = [](j_common_ptr self) {
      if (reinterpret_cast<j_decompress_ptr>(self)->input_scan_number > kMostScans) {
        ERREXIT(self, JERR_BAD_PROGRESSION);
      }
    };
    info->progress = &base;
  }
};

/// Decompressor for a file in memory.
class Reader {
 public:
  explicit Reader(Bytes data) {
    errors_.install(reinterpret_cast<j_common_ptr>(&info_));
    if (!guarded([this] { jpeg_create_decompress(&info_); })) fail();
    source_.install(&info_, data);
    scanLimit_.install(&info_);
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  ~Reader() { jpeg_destroy_decompress(&info_); }

  void readHeader() {
    const bool read = guarded([this] {
      for (const int marker : {1, 2, 13, kCommentMarker})
        jpeg_save_markers(&info_, JPEG_APP0 + marker, 0xFFFF);
      jpeg_read_header(&info_, TRUE);
    });
    if (!read) fail();
  }

  const jpeg_decompress_struct& info() const { return info_; }

  /// Sets the decoding scale to the smallest of 1, 1/2, 1/4 and 1/8 whose longest side is at least
  /// `longestSide`. (The library is slower at scales in between than at the next larger of these.)
  void reduceTo(std::int64_t longestSide) {
    const std::int64_t side = std::max(info_.image_width, info_.image_height);
    unsigned divisor = 1;
    while (divisor < 8 && (side + 2 * divisor - 1) / (2 * divisor) >= longestSide) divisor *= 2;
    info_.scale_num = 1;
    info_.scale_denom = divisor;
    if (!guarded([this] { jpeg_calc_output_dimensions(&info_); })) fail();
  }

  bool isCmyk() const { return info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK; }

  /// Decodes to rows of 4 bytes per pixel, RGBA or CMYK. Returns the number of rows decoded.
  std::int32_t readRows(const Pixels& pixels) {
    info_.out_color_space = isCmyk() ? JCS_CMYK : JCS_EXT_RGBA;
    rows_ = 0;
    const bool whole = guarded([this, &pixels] {
      if (!jpeg_start_decompress(&info_)) {
        // The file ends inside a marker segment between two scans: keep the result of the earlier scans.
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
  /// Calls the library; returns false after an error.
  template <typename Step>
  bool guarded(const Step& step) {
    if (setjmp(errors_.jump) != 0) return false;
    step();
    return true;
  }

  jpeg_decompress_struct info_{};
  Errors errors_{};
  Source source_{};
  ScanLimit scanLimit_{};
  std::int32_t rows_ = 0;
};

/// Destination manager that appends to a vector.
struct Target {
  jpeg_destination_mgr base;
  std::array<JOCTET, 16384> piece;
  std::vector<std::uint8_t> bytes;

  void install(jpeg_compress_struct* info) {
    info->dest = &base;
    base.init_destination = [](j_compress_ptr self) { reinterpret_cast<Target*>(self->dest)->startPiece(); };
    base.empty_output_buffer = [](j_compress_ptr self) -> boolean {
      auto* const target = reinterpret_cast<Target*>(self->dest);
      if (!target->append(target->piece.size())) ERREXIT1(self, JERR_OUT_OF_MEMORY, 0);
      target->startPiece();
      return TRUE;
    };
    base.term_destination = [](j_compress_ptr self) {
      auto* const target = reinterpret_cast<Target*>(self->dest);
      if (!target->append(target->piece.size() - target->base.free_in_buffer)) {
        ERREXIT1(self, JERR_OUT_OF_MEMORY, 0);
      }
    };
  }

 private:
  void startPiece() {
    base.next_output_byte = piece.data();
    base.free_in_buffer = piece.size();
  }

  /// No exception may propagate through the library.
  bool append(std::size_t count) noexcept {
    try {
      bytes.insert(bytes.end(), piece.data(), piece.data() + count);
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }
};

/// Compressor to memory.
class Writer {
 public:
  Writer() {
    errors_.install(reinterpret_cast<j_common_ptr>(&info_));
    guarded([this] { jpeg_create_compress(&info_); });
    target_.install(&info_);
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer() { jpeg_destroy_compress(&info_); }

  void start(std::int32_t width, std::int32_t height, const Metadata& metadata, std::int32_t quality) {
    // Typical size of a photograph; the vector grows if needed.
    target_.bytes.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) / 4);
    guarded([&] {
      info_.image_width = static_cast<JDIMENSION>(width);
      info_.image_height = static_cast<JDIMENSION>(height);
      info_.input_components = 4;
      info_.in_color_space = JCS_EXT_RGBX;
      jpeg_set_defaults(&info_);
      jpeg_set_quality(&info_, quality, TRUE);
      if (quality >= kFullColorQuality)
        info_.comp_info[0].h_samp_factor = info_.comp_info[0].v_samp_factor = 1;
      const double x = metadata.resolutionX, y = metadata.resolutionY;
      if (x >= 1 && y >= 1 && x <= 65535 && y <= 65535) {
        info_.density_unit = 1;
        info_.X_density = static_cast<UINT16>(x + 0.5);
        info_.Y_density = static_cast<UINT16>(y + 0.5);
      }
      jpeg_start_compress(&info_, TRUE);
    });
  }

  void marker(const Marker& marker) {
    guarded([&] {
      jpeg_write_marker(&info_, JPEG_APP0 + marker.number, marker.data.data(),
                        static_cast<unsigned>(marker.data.size()));
    });
  }

  /// A row of 4 bytes per pixel, the last one ignored.
  void row(const std::uint8_t* data) {
    guarded([&] {
      JSAMPROW row = const_cast<JSAMPROW>(data);
      jpeg_write_scanlines(&info_, &row, 1);
    });
  }

  std::vector<std::uint8_t> finish() {
    guarded([this] { jpeg_finish_compress(&info_); });
    return std::move(target_.bytes);
  }

 private:
  template <typename Step>
  void guarded(const Step& step) {
    if (setjmp(errors_.jump) != 0) {
      throw RuntimeError(err::kInvalidCall,
                         "The picture cannot be saved as JPEG: " + std::string(errors_.text.data()) + ".");
    }
    step();
  }

  jpeg_compress_struct info_{};
  Errors errors_{};
  Target target_{};
};

Metadata metadataOf(const jpeg_decompress_struct& info) {
  std::vector<MarkerView> markers;
  for (const jpeg_marker_struct* m = info.marker_list; m != nullptr; m = m->next) {
    markers.push_back({m->marker - JPEG_APP0, {m->data, m->data_length}});
  }
  Metadata metadata = readMarkers(markers);
  constexpr int kPerInch = 1, kPerCentimeter = 2;
  if (info.saw_JFIF_marker && (info.density_unit == kPerInch || info.density_unit == kPerCentimeter)) {
    const double scale = info.density_unit == kPerCentimeter ? 2.54 : 1;
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
  // Row numbers of a reduced picture would mean nothing to the user.
  if (cut ? info.scale_denom > 1 : reader.damaged()) {
    decoded.notice = "The file is damaged or truncated: parts of the picture could not be read.";
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
  // Some cameras write zero bytes between the segments, also before the first.
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
  normalizeCameraData(decoded.metadata);
  return decoded;
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options) {
  const ConstPixels pixels = bitmap.pixels();
  Writer writer;
  writer.start(pixels.width, pixels.height, metadata, options.jpegQuality);
  for (const Marker& marker : writeMarkers(metadata)) writer.marker(marker);

  std::vector<std::uint8_t> flat(static_cast<std::size_t>(pixels.width) * 4);
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    const std::uint8_t* const row = pixels.row(y);
    const bool opaque = isOpaqueRow(row, pixels.width);
    if (!opaque) flattenRowOnWhite(row, flat.data(), pixels.width, 4);
    writer.row(opaque ? row : flat.data());
  }
  return writer.finish();
}

}  // namespace kestrel::engine::jpeg
