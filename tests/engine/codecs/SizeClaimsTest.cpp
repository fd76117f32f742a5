#include <cmath>

#include "TestPictures.h"
#include "engine/codecs/CodecTable.h"
#include "engine/pixels/Memory.h"

// The size that a file claims is checked before memory is allocated.

namespace kestrel::engine {
namespace {

using test::Builder;
using test::errorOf;

using File = std::vector<std::uint8_t>;

void putNumber(File& file, std::size_t at, std::uint32_t value, std::size_t size, bool bigEndian) {
  for (std::size_t i = 0; i < size; ++i) {
    const std::size_t shift = 8 * (bigEndian ? size - 1 - i : i);
    file.at(at + i) = static_cast<std::uint8_t>(value >> shift);
  }
}

/// CRC-32 (ISO 3309) of PNG chunks and TLA parts.
std::uint32_t checksum(const File& file, std::size_t first, std::size_t last) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (std::size_t i = first; i < last; ++i) {
    sum ^= file[i];
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320U : sum >> 1;
  }
  return ~sum;
}

/// A file of the format that claims this size but holds almost no pixels.
File claim(std::int32_t format, std::uint32_t width, std::uint32_t height) {
  File file =
      format == format::kWbmp || format == format::kTif ? File{} : encode(test::gradient(8, 8), {}, format);
  const auto little = [&](std::size_t at, std::uint32_t value, std::size_t size) {
    putNumber(file, at, value, size, false);
  };
  const auto big = [&](std::size_t at, std::uint32_t value, std::size_t size) {
    putNumber(file, at, value, size, true);
  };
  switch (format) {
    case format::kJpg: {
      std::size_t frame = 2;
      while (file.at(frame + 1) != 0xC0)
        frame += 2U + static_cast<std::size_t>(file.at(frame + 2) << 8 | file.at(frame + 3));
      big(frame + 5, height, 2), big(frame + 7, width, 2);
      break;
    }
    case format::kPng:
      big(16, width, 4), big(20, height, 4), big(29, checksum(file, 12, 29), 4);
      break;
    case format::kTif: {
      Builder b;
      b.text("II").le16(42).le32(8).le16(8);
      const auto entry = [&](std::uint32_t tag, std::uint32_t value) {
        b.le16(tag).le16(4).le32(1).le32(value);
      };
      entry(256, width), entry(257, height), entry(258, 8), entry(259, 1), entry(262, 1);
      entry(273, 110), entry(278, height), entry(279, 100);
      file = b.le32(0).fill(100).bytes;
      break;
    }
    case format::kPcx:
      little(8, width - 1, 2), little(10, height - 1, 2), little(66, width + width % 2, 2);
      break;
    case format::kTga:
      little(12, width, 2), little(14, height, 2);
      break;
    case format::kBmp:
      little(18, width, 4), little(22, height, 4);
      break;
    case format::kWmf: {
      // In units of 1/96 inch; the checksum of the header comes last.
      little(10, width, 2), little(12, height, 2);
      std::uint32_t sum = 0;
      for (std::size_t at = 0; at < 20; at += 2)
        sum ^= static_cast<std::uint32_t>(file[at] | file[at + 1] << 8);
      little(20, sum, 2);
      break;
    }
    case format::kEmf:
      // The bounds in pixels, the frame in hundredths of a millimeter at 96 pixels per inch.
      little(16, width - 1, 4), little(20, height - 1, 4);
      little(32, static_cast<std::uint32_t>(width * 26.4583), 4),
          little(36, static_cast<std::uint32_t>(height * 26.4583), 4);
      break;
    case format::kPsd:
      big(14, height, 4), big(18, width, 4);
      break;
    case format::kWbmp: {
      Builder b;
      b.u8({0, 0});
      for (const std::uint32_t side : {width, height}) {
        for (int shift = 21; shift >= 0; shift -= 7) {
          b.u8({static_cast<int>((side >> shift & 0x7F) | (shift > 0 ? 0x80U : 0U))});
        }
      }
      file = b.fill(100).bytes;
      break;
    }
    case format::kGif: {
      std::size_t frame = 13 + (std::size_t{6} << (file[10] & 7));
      while (file.at(frame) != 0x2C) ++frame;
      little(6, width, 2), little(8, height, 2), little(frame + 5, width, 2), little(frame + 7, height, 2);
      break;
    }
    case format::kTla:
      little(20, width, 4), little(24, height, 4), little(16, checksum(file, 20, 40), 4);
      break;
    default:
      ADD_FAILURE() << "format " << format;
  }
  return file;
}

/// The formats that store a size. Photo CD has fixed sizes.
std::vector<const Codec*> sizedFormats() {
  std::vector<const Codec*> result;
  for (const Codec& codec : codecTable()) {
    if (codec.format != format::kPcd) result.push_back(&codec);
  }
  return result;
}

/// The sized formats without the metafiles, which can be opened at any size.
std::vector<const Codec*> pixelFormats() {
  std::vector<const Codec*> result = sizedFormats();
  std::erase_if(result, [](const Codec* codec) {
    return codec->format == format::kEmf || codec->format == format::kWmf;
  });
  return result;
}

TEST(SizeClaims, ATrueSizeIsAccepted) {
  for (const Codec* codec : sizedFormats()) {
    if (codec->format == format::kTif || codec->format == format::kWbmp) continue;
    const Decoded decoded = codec->decode(claim(codec->format, 8, 8));
    EXPECT_EQ(decoded.bitmap.width(), 8) << codec->name;
    EXPECT_EQ(decoded.bitmap.height(), 8) << codec->name;
    EXPECT_EQ(decoded.notice, "") << codec->name;
  }
}

TEST(SizeClaims, MoreThan2GigapixelsAreRefusedWithAReason) {
  for (const Codec* codec : pixelFormats()) {
    std::string reason;
    EXPECT_EQ(errorOf([&] { codec->decode(claim(codec->format, 60'000, 50'000)); }, &reason), 7)
        << codec->name;
    EXPECT_NE(reason.find("too large"), std::string::npos) << codec->name << ": " << reason;
    EXPECT_NE(reason.find("2 gigapixels"), std::string::npos) << codec->name << ": " << reason;
  }
}

TEST(SizeClaims, AFileTooShortForItsClaimedSizeIsRefused) {
  for (const Codec* codec : pixelFormats()) {
    std::string reason;
    EXPECT_EQ(errorOf([&] { codec->decode(claim(codec->format, 32'000, 32'000)); }, &reason), 481)
        << codec->name;
    EXPECT_NE(reason.find("claims"), std::string::npos) << codec->name << ": " << reason;
  }
}

TEST(SizeClaims, AMetafileThatClaimsTooLargeASizeOpensSmaller) {
  for (const std::int32_t format : {format::kEmf, format::kWmf}) {
    const Decoded decoded = codecOf(format)->decode(claim(format, 32'000, 16'000));
    EXPECT_EQ(decoded.bitmap.width(), 7071) << format;
    EXPECT_EQ(decoded.bitmap.height(), 3536) << format;
    EXPECT_NE(decoded.notice.find("too large"), std::string::npos) << decoded.notice;
  }
}

TEST(SizeClaims, MoreThanAQuarterOfTheMemoryIsRefusedWithAReason) {
  const auto pixels = static_cast<std::int64_t>(machineMemory() / 4 / sizeof(Pixel));
  // The largest 16-bit side exceeds the limit of any bitmap.
  const auto side =
      std::min(60'000U, static_cast<std::uint32_t>(std::sqrt(static_cast<double>(pixels))) + 100);
  for (const Codec* codec : pixelFormats()) {
    // These formats pack few pixels per byte: the file would have to be as large as the memory.
    if (codec->format == format::kWbmp || codec->format == format::kTif) continue;
    File file = claim(codec->format, side, side);
    file.resize(file.size() + static_cast<std::size_t>(pixels / 128));
    std::string reason;
    EXPECT_EQ(errorOf([&] { codec->decode(file); }, &reason), 7) << codec->name;
    const bool beyondAll = std::int64_t{side} * side > Bitmap::kMaxPixels;
    EXPECT_NE(reason.find(beyondAll ? "2 gigapixels" : "a quarter of this machine's memory"),
              std::string::npos)
        << codec->name << ": " << reason;
  }
}

}  // namespace
}  // namespace kestrel::engine
