#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "Png.h"
#include "PngChunks.h"
#include "PngReader.h"
#include "PngText.h"
#include "PngWriter.h"
#include "base/RuntimeError.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Orientation.h"
#include "engine/codecs/metadata/Exif.h"
#include "engine/pixels/Opaque.h"

namespace kestrel::engine::png {
namespace {

/// Highest compression ratio of Deflate, in bits per byte.
constexpr std::int64_t kBitsPerByte = 1032 * 8;
/// The library reads compressed data in pieces and discards an incomplete piece. Small pieces near the end
/// make it decode all rows of a truncated file.
constexpr std::size_t kLargePiece = 65536;
constexpr std::size_t kSmallPiece = 32;
constexpr std::size_t kNearEnd = 2 * kLargePiece;
/// Largest allocation the library may make, unless the file is larger; the longest rows need less. The
/// library would otherwise trust a chunk's length field.
constexpr std::size_t kLargestRequest = std::size_t{16} << 20;
constexpr double kInchesPerMeter = 1 / 0.0254;

/// Error callbacks. The library reports errors by longjmp, so functions that call it must not hold objects
/// with destructors.
struct Errors {
  std::jmp_buf jump;
  std::array<char, 200> text{};

  static void raise(png_structp png, png_const_charp message) {
    auto* const errors = static_cast<Errors*>(png_get_error_ptr(png));
    std::strncpy(errors->text.data(), message, errors->text.size() - 1);
    std::longjmp(errors->jump, 1);
  }
  static void ignore(png_structp, png_const_charp) {}

  template <typename Step>
  bool guarded(const Step& step) {
    if (setjmp(jump) != 0) return false;
    step();
    return true;
  }
};

class Reader {
 public:
  explicit Reader(Bytes data) : rest_(data), largestRequest_(std::max(kLargestRequest, 2 * data.size())) {
    png_ = png_create_read_struct_2(
        PNG_LIBPNG_VER_STRING, &errors_, Errors::raise, Errors::ignore, &largestRequest_,
        [](png_structp png, png_alloc_size_t size) {
          const auto most = *static_cast<const std::size_t*>(png_get_mem_ptr(png));
          return size <= most ? std::malloc(size) : nullptr;
        },
        nullptr);
    info_ = png_ != nullptr ? png_create_info_struct(png_) : nullptr;
    if (info_ == nullptr)
      throw RuntimeError(err::kOutOfMemory, "There is not enough memory for the picture.");
    png_set_read_fn(png_, this, [](png_structp png, png_bytep target, std::size_t count) {
      auto* const self = static_cast<Reader*>(png_get_io_ptr(png));
      if (count > self->rest_.size()) png_error(png, "the file ends too early");
      std::memcpy(target, self->rest_.data(), count);
      self->rest_ = self->rest_.subspan(count);
    });
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  ~Reader() { png_destroy_read_struct(&png_, info_ != nullptr ? &info_ : nullptr, nullptr); }

  /// Reads the chunks before the pixels; returns false on an error.
  bool readHeader() {
    return errors_.guarded([this] {
      png_set_user_limits(png_, Bitmap::kMaxSide, Bitmap::kMaxSide);
      png_read_info(png_, info_);
    });
  }

  /// Raises RuntimeError 481 with the library's error message.
  [[noreturn]] void fail() const {
    refusePicture("The PNG file is damaged: " + std::string(errors_.text.data()) + ".");
  }

  png_structp png() const { return png_; }
  png_infop info() const { return info_; }
  std::int64_t width() const { return png_get_image_width(png_, info_); }
  std::int64_t height() const { return png_get_image_height(png_, info_); }
  int bitDepth() const { return png_get_bit_depth(png_, info_); }
  int colorType() const { return png_get_color_type(png_, info_); }
  bool interlaced() const { return png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE; }
  bool hasTransparency() const { return png_get_valid(png_, info_, PNG_INFO_tRNS) != 0; }

  /// Decodes to RGBA rows and returns the number of rows with any decoded pixels.
  std::int32_t readRows(const Pixels& pixels) {
    rows_ = 0;
    const bool whole = errors_.guarded([this, &pixels] {
      png_set_expand(png_);
      png_set_scale_16(png_);
      png_set_gray_to_rgb(png_);
      png_set_filler(png_, 0xFF, PNG_FILLER_AFTER);
      const int passes = png_set_interlace_handling(png_);
      png_read_update_info(png_, info_);
      for (int pass = 0; pass < passes; ++pass) {
        for (std::int32_t y = 0; y < pixels.height; ++y) {
          png_set_compression_buffer_size(png_, rest_.size() > kNearEnd ? kLargePiece : kSmallPiece);
          png_read_row(png_, pixels.row(y), nullptr);
          rows_ = std::max(rows_, y + 1);
        }
      }
    });
    damaged_ = !whole;
    if (rows_ == 0) fail();
    return rows_;
  }

  bool damaged() const { return damaged_; }

  /// Metadata may follow the pixels. Errors after complete pixels are ignored.
  void readEnd() {
    if (!damaged_) errors_.guarded([this] { png_read_end(png_, info_); });
  }

 private:
  Errors errors_;
  Bytes rest_;
  std::size_t largestRequest_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::int32_t rows_ = 0;
  bool damaged_ = false;
};

class Writer {
 public:
  Writer() {
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, &errors_, Errors::raise, Errors::ignore);
    info_ = png_ != nullptr ? png_create_info_struct(png_) : nullptr;
    if (info_ == nullptr) throw RuntimeError(err::kOutOfMemory, "There is not enough memory to save.");
    png_set_write_fn(
        png_, this,
        [](png_structp png, png_bytep data, std::size_t count) {
          auto* const self = static_cast<Writer*>(png_get_io_ptr(png));
          if (!self->append({data, count})) png_error(png, "there is not enough memory");
        },
        nullptr);
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer() { png_destroy_write_struct(&png_, &info_); }

  png_structp png() const { return png_; }
  png_infop info() const { return info_; }

  template <typename Step>
  void guarded(const Step& step) {
    if (!errors_.guarded(step)) {
      throw RuntimeError(err::kInvalidCall,
                         "The picture cannot be saved as PNG: " + std::string(errors_.text.data()) + ".");
    }
  }

  std::vector<std::uint8_t> finish() { return std::move(bytes_); }

 private:
  /// No exception may propagate through the library.
  bool append(Bytes data) noexcept {
    try {
      bytes_.insert(bytes_.end(), data.begin(), data.end());
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  Errors errors_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::vector<std::uint8_t> bytes_;
};

KeyedText textOf(const png_text& entry) {
  const auto orEmpty = [](const char* text) { return std::string(text == nullptr ? "" : text); };
  KeyedText text;
  text.key = orEmpty(entry.key);
  if (entry.text != nullptr) text.text.assign(entry.text, std::max(entry.text_length, entry.itxt_length));
  text.international = entry.compression >= PNG_ITXT_COMPRESSION_NONE;
  text.language = orEmpty(entry.lang);
  text.translatedKey = orEmpty(entry.lang_key);
  return text;
}

Metadata metadataOf(const Reader& reader) {
  Metadata metadata;
  const png_structp png = reader.png();
  const png_infop info = reader.info();

  png_uint_32 x = 0, y = 0;
  int unit = PNG_RESOLUTION_UNKNOWN;
  if (png_get_pHYs(png, info, &x, &y, &unit) != 0 && unit == PNG_RESOLUTION_METER) {
    metadata.resolutionX = x / kInchesPerMeter;
    metadata.resolutionY = y / kInchesPerMeter;
  }
  png_charp name = nullptr;
  int method = 0;
  png_bytep profile = nullptr;
  png_uint_32 size = 0;
  if (png_get_iCCP(png, info, &name, &method, &profile, &size) != 0) {
    metadata.iccProfile.assign(profile, profile + size);
  }
  png_bytep exif = nullptr;
  if (png_get_eXIf_1(png, info, &size, &exif) != 0) metadata.exif.assign(exif, exif + size);

  png_textp texts = nullptr;
  const int count = png_get_text(png, info, &texts, nullptr);
  for (int i = 0; i < count; ++i) readText(textOf(texts[i]), metadata);
  return metadata;
}

/// Converts to sRGB from the profile, or from gamma and chromaticities. Without these sRGB is assumed.
void honorColors(const Reader& reader, Decoded& decoded) {
  const png_structp png = reader.png();
  const png_infop info = reader.info();
  if (!decoded.metadata.iccProfile.empty()) {
    const bool gray = (reader.colorType() & PNG_COLOR_MASK_COLOR) == 0;
    convertToSrgb(decoded, gray ? PixelKind::gray : PixelKind::rgb);
    return;
  }
  double fileGamma = 0;
  if (png_get_valid(png, info, PNG_INFO_sRGB) != 0 || png_get_gAMA(png, info, &fileGamma) == 0) return;
  if (!(fileGamma > 0.1 && fileGamma < 10)) return;
  Colorimetry colors;
  colors.gamma = 1 / fileGamma;
  png_get_cHRM(png, info, &colors.whiteX, &colors.whiteY, &colors.redX, &colors.redY, &colors.greenX,
               &colors.greenY, &colors.blueX, &colors.blueY);
  convertToSrgb(decoded, colors);
}

/// A png_text that points into `text`.
png_text entryOf(KeyedText& text) {
  constexpr std::size_t kWorthPacking = 1024;
  png_text entry{};
  if (text.international) {
    entry.compression = PNG_ITXT_COMPRESSION_NONE;
    entry.itxt_length = text.text.size();
  } else {
    entry.compression =
        text.text.size() > kWorthPacking ? PNG_TEXT_COMPRESSION_zTXt : PNG_TEXT_COMPRESSION_NONE;
    entry.text_length = text.text.size();
  }
  entry.key = text.key.data();
  entry.text = text.text.data();
  entry.lang = text.language.data();
  entry.lang_key = text.translatedKey.data();
  return entry;
}

void writeMetadata(Writer& writer, const Metadata& metadata, std::vector<KeyedText>& texts) {
  writer.guarded([&] {
    const png_structp png = writer.png();
    const png_infop info = writer.info();
    if (metadata.resolutionX > 0 && metadata.resolutionY > 0) {
      png_set_pHYs(png, info, static_cast<png_uint_32>(std::lround(metadata.resolutionX * kInchesPerMeter)),
                   static_cast<png_uint_32>(std::lround(metadata.resolutionY * kInchesPerMeter)),
                   PNG_RESOLUTION_METER);
    }
    if (!metadata.iccProfile.empty()) {
      // A profile that the library rejects must not prevent saving.
      png_set_benign_errors(png, 1);
      png_set_iCCP(png, info, "ICC profile", PNG_COMPRESSION_TYPE_BASE, metadata.iccProfile.data(),
                   static_cast<png_uint_32>(metadata.iccProfile.size()));
    }
    if (const auto& exif = metadata.exif; !exif.empty()) {
      png_set_eXIf_1(png, info, static_cast<png_uint_32>(exif.size()), const_cast<png_bytep>(exif.data()));
    }
    for (KeyedText& text : texts) {
      const png_text entry = entryOf(text);
      png_set_text(png, info, &entry, 1);
    }
  });
}

/// Properties of the stored picture. Refuses implausible sizes.
Decoded describe(const Reader& reader, std::size_t fileSize) {
  const std::int64_t bitsPerPixel =
      std::int64_t{reader.bitDepth()} * png_get_channels(reader.png(), reader.info());
  checkClaimedSize(reader.width(), reader.height(), fileSize, kBitsPerByte / bitsPerPixel);
  Decoded decoded;
  decoded.stored.bitsPerSample = reader.bitDepth();
  decoded.stored.hasAlpha = (reader.colorType() & PNG_COLOR_MASK_ALPHA) != 0 || reader.hasTransparency();
  return decoded;
}

void finish(const Reader& reader, Decoded& decoded) {
  decoded.metadata = metadataOf(reader);
  honorColors(reader, decoded);
  applyOrientation(decoded, exifOrientation(decoded.metadata.exif));
  normalizeCameraData(decoded.metadata);
}

std::array<Pixel, 256> paletteOf(const Reader& reader) {
  std::array<Pixel, 256> palette;
  palette.fill({0, 0, 0, 255});
  png_colorp colors = nullptr;
  int colorCount = 0;
  png_get_PLTE(reader.png(), reader.info(), &colors, &colorCount);
  for (std::size_t i = 0; i < static_cast<std::size_t>(colorCount); ++i)
    palette[i] = {colors[i].red, colors[i].green, colors[i].blue, 255};
  png_bytep alpha = nullptr;
  int alphaCount = 0;
  png_get_tRNS(reader.png(), reader.info(), &alpha, &alphaCount, nullptr);
  for (std::size_t i = 0; i < static_cast<std::size_t>(alphaCount); ++i) palette[i].a = alpha[i];
  return palette;
}

/// The pixel layout for `readPixels`; nothing for the rarer ones, which are left to the library.
std::optional<PixelLayout> layoutOf(const Reader& reader) {
  using Kind = PixelLayout::Kind;
  const int type = reader.colorType();
  const bool indexed = type == PNG_COLOR_TYPE_PALETTE;
  if (reader.bitDepth() < 8 || reader.interlaced() || (reader.hasTransparency() && !indexed)) {
    return std::nullopt;
  }
  PixelLayout layout;
  layout.kind = indexed                             ? Kind::palette
                : type == PNG_COLOR_TYPE_GRAY       ? Kind::gray
                : type == PNG_COLOR_TYPE_GRAY_ALPHA ? Kind::grayAlpha
                : type == PNG_COLOR_TYPE_RGB        ? Kind::rgb
                                                    : Kind::rgba;
  layout.sampleBytes = static_cast<std::size_t>(reader.bitDepth()) / 8;
  if (indexed) layout.palette = paletteOf(reader);
  return layout;
}

/// Fast path: valid files in the usual layouts. Nothing for other files.
std::optional<Decoded> decodeFast(const Chunks& chunks, std::size_t fileSize) {
  // The library reads the file without its pixels; text chunks after them are moved before.
  std::vector<std::uint8_t> head(chunks.before.begin(), chunks.before.end());
  for (const Bytes chunk : chunks.textsAfter) head.insert(head.end(), chunk.begin(), chunk.end());
  addChunk(head, "IDAT", {});
  Reader reader(head);
  if (!reader.readHeader()) return std::nullopt;
  const std::optional<PixelLayout> layout = layoutOf(reader);
  if (!layout) return std::nullopt;

  Decoded decoded = describe(reader, fileSize);
  decoded.bitmap = Bitmap::uninitialized(static_cast<std::int32_t>(reader.width()),
                                         static_cast<std::int32_t>(reader.height()));
  if (!readPixels(chunks.packed, *layout, decoded.bitmap.writable())) return std::nullopt;
  finish(reader, decoded);
  return decoded;
}

/// Decodes with the library, which recovers the intact part of a damaged file.
Decoded decodeWithLibrary(Bytes data) {
  Reader reader(data);
  if (!reader.readHeader()) reader.fail();
  Decoded decoded = describe(reader, data.size());
  const auto width = static_cast<std::int32_t>(reader.width());
  const auto height = static_cast<std::int32_t>(reader.height());
  // The first passes of an interlaced picture leave gaps; they stay transparent if later passes are missing.
  decoded.bitmap = reader.interlaced() ? Bitmap::filled(width, height) : Bitmap::uninitialized(width, height);
  const std::int32_t rows = reader.readRows(decoded.bitmap.writable());
  if (rows < height) {
    keepRows(decoded, rows);
  } else if (reader.damaged()) {
    decoded.notice = "The file is damaged or truncated: parts of the picture could not be read.";
  }
  reader.readEnd();
  finish(reader, decoded);
  return decoded;
}

/// Writes the signature and the chunks before the pixels.
std::vector<std::uint8_t> writeHead(const ConstPixels& pixels, bool opaque, const Metadata& metadata) {
  std::vector<KeyedText> texts = writeTexts(metadata);
  Writer writer;
  writer.guarded([&] {
    png_set_IHDR(writer.png(), writer.info(), static_cast<png_uint_32>(pixels.width),
                 static_cast<png_uint_32>(pixels.height), 8,
                 opaque ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  });
  writeMetadata(writer, metadata, texts);
  writer.guarded([&] { png_write_info(writer.png(), writer.info()); });
  return writer.finish();
}

}  // namespace

bool probe(Bytes data) {
  constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  return data.size() >= kSignature.size() && std::equal(kSignature.begin(), kSignature.end(), data.begin());
}

Decoded decode(Bytes data) {
  if (const auto chunks = findChunks(data)) {
    if (auto decoded = decodeFast(*chunks, data.size())) return *std::move(decoded);
  }
  return decodeWithLibrary(data);
}

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, const EncodeOptions&) {
  const ConstPixels pixels = bitmap.pixels();
  const bool opaque = isOpaque(bitmap.pixels());
  std::vector<std::uint8_t> file = writeHead(pixels, opaque, metadata);
  addPixels(file, pixels, !opaque);
  addChunk(file, "IEND", {});
  return file;
}

}  // namespace kestrel::engine::png
