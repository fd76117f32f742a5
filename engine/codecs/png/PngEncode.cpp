#include <png.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Png.h"
#include "PngChunks.h"
#include "PngErrors.h"
#include "PngText.h"
#include "PngThumbnail.h"
#include "PngWriter.h"
#include "base/RuntimeError.h"
#include "engine/codecs/common/Resolution.h"
#include "engine/pixels/Opaque.h"

namespace kestrel::engine::png {
namespace {

/// libpng's encoder into memory, for the chunks before the pixels.
class LibPngWriter {
 public:
  LibPngWriter() {
    encoder_.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &errors_, Errors::raise, Errors::ignore);
    if (png() != nullptr) encoder_.info = png_create_info_struct(png());
    if (info() == nullptr) throw RuntimeError(err::kOutOfMemory, "There is not enough memory to save.");
    png_set_write_fn(
        png(), this,
        [](png_structp png, png_bytep data, std::size_t count) {
          auto* const self = static_cast<LibPngWriter*>(png_get_io_ptr(png));
          if (!self->append({data, count})) png_error(png, "there is not enough memory");
        },
        nullptr);
  }
  LibPngWriter(const LibPngWriter&) = delete;
  LibPngWriter& operator=(const LibPngWriter&) = delete;

  png_structp png() const { return encoder_.png; }
  png_infop info() const { return encoder_.info; }

  template <typename Step>
  void guarded(const Step& step) {
    if (!errors_.guarded(step)) {
      throw RuntimeError(err::kInvalidCall,
                         "The picture cannot be saved as PNG: " + std::string(errors_.text.data()) + ".");
    }
  }

  std::vector<std::uint8_t> finish() { return std::move(bytes_); }

 private:
  /// libpng's two objects. The second may be missing when memory runs out.
  struct Encoder {
    Encoder() = default;
    ~Encoder() { png_destroy_write_struct(&png, &info); }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    png_structp png = nullptr;
    png_infop info = nullptr;
  };

  /// Returns false instead of throwing: libpng is C.
  bool append(Bytes data) noexcept {
    try {
      bytes_.insert(bytes_.end(), data.begin(), data.end());
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }

  Errors errors_;
  Encoder encoder_;
  std::vector<std::uint8_t> bytes_;
};

/// The entry refers to the strings of `text`.
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

void writeMetadata(LibPngWriter& writer, const Metadata& metadata, std::vector<KeyedText>& texts) {
  writer.guarded([&] {
    const png_structp png = writer.png();
    const png_infop info = writer.info();
    if (metadata.resolutionX > 0 && metadata.resolutionY > 0) {
      png_set_pHYs(png, info, static_cast<png_uint_32>(std::lround(metadata.resolutionX * kInchesPerMeter)),
                   static_cast<png_uint_32>(std::lround(metadata.resolutionY * kInchesPerMeter)),
                   PNG_RESOLUTION_METER);
    }
    if (!metadata.iccProfile.empty()) {
      // A profile with errors must not prevent saving.
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

/// Signature and all chunks before the pixels.
std::vector<std::uint8_t> writeHead(const ConstPixels& pixels, bool opaque, const Metadata& metadata) {
  std::vector<KeyedText> texts = writeTexts(metadata);
  LibPngWriter writer;
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

std::vector<std::uint8_t> writeFile(const ConstPixels& pixels, bool opaque, const Metadata& metadata) {
  std::vector<std::uint8_t> file = writeHead(pixels, opaque, metadata);
  addPixels(file, pixels, !opaque);
  addChunk(file, "IEND", {});
  return file;
}

}  // namespace

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata, const EncodeOptions&) {
  return writeFile(bitmap.pixels(), isOpaque(bitmap.pixels()), metadata);
}

std::vector<std::uint8_t> encodeWithAlpha(const Bitmap& bitmap, const std::vector<KeyedText>& texts) {
  Metadata metadata;
  metadata.texts = texts;
  return writeFile(bitmap.pixels(), false, metadata);
}

}  // namespace kestrel::engine::png
