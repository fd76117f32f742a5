#include <png.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "LibPngReader.h"
#include "Png.h"
#include "PngChunks.h"
#include "PngReader.h"
#include "PngText.h"
#include "PngThumbnail.h"
#include "engine/codecs/common/ColorProfile.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/codecs/common/Orientation.h"
#include "engine/codecs/common/Resolution.h"
#include "engine/codecs/metadata/Exif.h"

namespace kestrel::engine::png {
namespace {

/// Deflate's highest compression ratio: 1032 bytes from 1.
constexpr std::int64_t kBitsPerByte = 1032 * 8;

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

Metadata metadataOf(const LibPngReader& reader) {
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

/// Converts to sRGB by the profile, else by gAMA and cHRM. A file with neither is taken as sRGB.
void convertColors(const LibPngReader& reader, Decoded& decoded) {
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

/// The stored sample format. Raises RuntimeError 481 if the file is too small for the size that it claims.
Decoded describe(const LibPngReader& reader, std::size_t fileSize) {
  const std::int64_t bitsPerPixel =
      std::int64_t{reader.bitDepth()} * png_get_channels(reader.png(), reader.info());
  checkClaimedSize(reader.width(), reader.height(), fileSize, kBitsPerByte / bitsPerPixel);
  Decoded decoded;
  decoded.stored.bitsPerSample = reader.bitDepth();
  decoded.stored.hasAlpha = (reader.colorType() & PNG_COLOR_MASK_ALPHA) != 0 || reader.hasTransparency();
  return decoded;
}

void finish(const LibPngReader& reader, Decoded& decoded) {
  decoded.metadata = metadataOf(reader);
  convertColors(reader, decoded);
  applyOrientation(decoded, exifOrientation(decoded.metadata.exif));
  normalizeCameraData(decoded.metadata);
}

std::array<Pixel, 256> paletteOf(const LibPngReader& reader) {
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

/// The layout for `readPixels`; nullopt for the rarer layouts, which libpng decodes.
std::optional<PixelLayout> layoutOf(const LibPngReader& reader) {
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

/// A file for libpng without the pixels; metadata chunks that follow them are moved before them.
std::vector<std::uint8_t> headOf(const Chunks& chunks) {
  std::vector<std::uint8_t> head(chunks.before.begin(), chunks.before.end());
  for (const Bytes chunk : chunks.textsAfter) head.insert(head.end(), chunk.begin(), chunk.end());
  addChunk(head, "IDAT", {});
  return head;
}

/// Fast path for files without errors in the usual layouts; nullopt for all others.
std::optional<Decoded> decodeWhole(const Chunks& chunks, std::size_t fileSize) {
  const std::vector<std::uint8_t> head = headOf(chunks);
  LibPngReader reader(head);
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

/// Decodes by libpng, as many rows as a damaged file yields.
Decoded decodeDamagedOrUnusual(Bytes data) {
  LibPngReader reader(data);
  if (!reader.readHeader()) reader.fail();
  Decoded decoded = describe(reader, data.size());
  const auto width = static_cast<std::int32_t>(reader.width());
  const auto height = static_cast<std::int32_t>(reader.height());
  // Pixels of passes that are missing from an interlaced picture stay transparent.
  decoded.bitmap = reader.interlaced() ? Bitmap::filled(width, height) : Bitmap::uninitialized(width, height);
  const std::int32_t rows = reader.readRows(decoded.bitmap.writable());
  if (rows < height) {
    keepRows(decoded, rows);
  } else if (reader.damaged()) {
    decoded.notice = partsMissingNotice();
  }
  reader.readEnd();
  finish(reader, decoded);
  return decoded;
}

}  // namespace

bool probe(Bytes data) {
  constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  return data.size() >= kSignature.size() && std::equal(kSignature.begin(), kSignature.end(), data.begin());
}

Decoded decode(Bytes data) {
  if (const auto chunks = findChunks(data)) {
    if (auto decoded = decodeWhole(*chunks, data.size())) return *std::move(decoded);
  }
  return decodeDamagedOrUnusual(data);
}

std::optional<Facts> readFacts(Bytes data) {
  if (!probe(data)) return std::nullopt;
  const auto chunks = findChunks(data);
  if (!chunks) return std::nullopt;
  const std::vector<std::uint8_t> head = headOf(*chunks);
  LibPngReader reader(head);
  if (!reader.readHeader()) return std::nullopt;
  Facts facts;
  facts.width = static_cast<std::int32_t>(reader.width());
  facts.height = static_cast<std::int32_t>(reader.height());
  facts.texts = metadataOf(reader).texts;
  return facts;
}

}  // namespace kestrel::engine::png
