#include "Snapshot.h"

#include <isa-l/crc.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "base/RuntimeError.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"
#include "engine/parallel/SingleThreaded.h"

namespace kestrel::engine {
namespace {

// The file: a signature, then sections of length, CRC and content. The first section is the head, each other
// one a band of rows as a PNG file. The head names the number of bands.
constexpr std::string_view kSignature = "KestrelSnapshot\x01";
constexpr std::size_t kSectionPrefix = 8;
static_assert(kSignature.size() + kSectionPrefix == kSnapshotPrefix);

/// Small enough to be canceled within a few hundredths of a second.
constexpr std::int64_t kPixelsPerBand = std::int64_t{1} << 20;
/// Names, notices and metadata; more is damage.
constexpr std::size_t kMostHeadBytes = std::size_t{256} << 20;

[[noreturn]] void refuseDamage() {
  throw RuntimeError(err::kInvalidPicture, "The file that keeps the picture for recovery is damaged.");
}

std::uint32_t checksum(Bytes data) { return crc32_gzip_refl(0, data.data(), data.size()); }

Bytes bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void add(ByteWriter& out, std::uint64_t value) {
  out.u32(value & 0xFFFFFFFFU);
  out.u32(value >> 32);
}
void add(ByteWriter& out, Bytes value) {
  out.u32(value.size());
  out.bytes(value);
}
void add(ByteWriter& out, std::string_view value) { add(out, bytesOf(value)); }

std::uint64_t take64(ByteReader& in) {
  const std::uint64_t low = in.u32();
  return low | std::uint64_t{in.u32()} << 32;
}
std::vector<std::uint8_t> takeBytes(ByteReader& in) {
  const Bytes bytes = in.take(in.u32());
  return {bytes.begin(), bytes.end()};
}
std::string takeText(ByteReader& in) {
  const Bytes bytes = in.take(in.u32());
  return {bytes.begin(), bytes.end()};
}

void addMetadata(ByteWriter& out, const Metadata& metadata) {
  add(out, std::bit_cast<std::uint64_t>(metadata.resolutionX));
  add(out, std::bit_cast<std::uint64_t>(metadata.resolutionY));
  add(out, Bytes(metadata.iccProfile));
  add(out, Bytes(metadata.exif));
  add(out, Bytes(metadata.xmp));
  add(out, Bytes(metadata.iptc));
  add(out, metadata.comment);
  out.u32(metadata.texts.size());
  for (const KeyedText& text : metadata.texts) {
    add(out, text.key);
    add(out, text.text);
    out.u8(text.international ? 1 : 0);
    add(out, text.language);
    add(out, text.translatedKey);
  }
}

Metadata takeMetadata(ByteReader& in) {
  Metadata metadata;
  metadata.resolutionX = std::bit_cast<double>(take64(in));
  metadata.resolutionY = std::bit_cast<double>(take64(in));
  metadata.iccProfile = takeBytes(in);
  metadata.exif = takeBytes(in);
  metadata.xmp = takeBytes(in);
  metadata.iptc = takeBytes(in);
  metadata.comment = takeText(in);
  for (std::uint32_t left = in.u32(); left > 0; --left) {
    KeyedText text;
    text.key = takeText(in);
    text.text = takeText(in);
    text.international = in.u8() != 0;
    text.language = takeText(in);
    text.translatedKey = takeText(in);
    metadata.texts.push_back(std::move(text));
  }
  return metadata;
}

/// The contents of the first section.
struct Head {
  SnapshotFacts facts;
  std::int32_t bandRows = 1;
  PictureState picture;  ///< without pixels
};

std::vector<std::uint8_t> packHead(const Snapshot& snapshot, std::int32_t bandRows) {
  const PictureState& picture = snapshot.picture;
  ByteWriter out;
  add(out, snapshot.filename);
  out.u32(static_cast<std::uint32_t>(picture.bitmap.width()));
  out.u32(static_cast<std::uint32_t>(picture.bitmap.height()));
  add(out, static_cast<std::uint64_t>(snapshot.seconds));
  out.u32(static_cast<std::uint32_t>(bandRows));
  out.u32(static_cast<std::uint32_t>(picture.format));
  out.u32(static_cast<std::uint32_t>(picture.pages));
  out.u8(picture.notice ? 1 : 0);
  if (picture.notice) add(out, *picture.notice);
  out.u8(picture.metadata ? 1 : 0);
  if (picture.metadata) addMetadata(out, *picture.metadata);
  return out.finish();
}

Head unpackHead(Bytes data) {
  ByteReader in(data);
  Head head;
  head.facts.filename = takeText(in);
  head.facts.width = in.i32();
  head.facts.height = in.i32();
  head.facts.seconds = static_cast<std::int64_t>(take64(in));
  head.bandRows = in.i32();
  head.picture.format = in.i32();
  head.picture.pages = in.i32();
  if (in.u8() != 0) head.picture.notice = std::make_shared<const std::string>(takeText(in));
  if (in.u8() != 0) head.picture.metadata = std::make_shared<const Metadata>(takeMetadata(in));
  if (head.bandRows < 1 || in.remaining() > 0) refuseDamage();
  return head;
}

std::vector<std::uint8_t> sectionOf(std::string_view before, Bytes content) {
  ByteWriter out;
  out.text(before);
  out.u32(content.size());
  out.u32(checksum(content));
  out.bytes(content);
  return out.finish();
}

Bytes takeSection(ByteReader& in) {
  const std::uint32_t size = in.u32();
  const std::uint32_t sum = in.u32();
  const Bytes content = in.take(size);
  if (checksum(content) != sum) refuseDamage();
  return content;
}

/// Reads the signature and the head.
Head takeHead(ByteReader& in) {
  if (!std::ranges::equal(in.take(kSignature.size()), bytesOf(kSignature))) refuseDamage();
  return unpackHead(takeSection(in));
}

std::int32_t bandRowsOf(const Bitmap& bitmap) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(kPixelsPerBand / std::max(bitmap.width(), 1), 1,
                                                            std::max(bitmap.height(), 1)));
}

Bitmap bandOf(const Bitmap& bitmap, std::int32_t first, std::int32_t rows) {
  Bitmap band = Bitmap::uninitialized(bitmap.width(), rows);
  const Pixels out = band.writable();
  const ConstPixels in = bitmap.pixels();
  for (std::int32_t y = 0; y < rows; ++y) {
    std::memcpy(out.row(y), in.row(first + y), static_cast<std::size_t>(in.width) * sizeof(Pixel));
  }
  return band;
}

void putBand(const Bitmap& band, const Pixels& picture, std::int32_t first, std::int32_t rows) {
  if (band.width() != picture.width || band.height() != rows) refuseDamage();
  for (std::int32_t y = 0; y < rows; ++y) {
    std::memcpy(picture.row(first + y), band.pixels().row(y),
                static_cast<std::size_t>(picture.width) * sizeof(Pixel));
  }
}

/// Runs `read`; any complaint about the data is one about the whole file.
template <typename Read>
auto refusingDamage(const Read& read) {
  try {
    return read();
  } catch (const RuntimeError& error) {
    if (error.Number() == err::kOutOfMemory) throw;
    refuseDamage();
  }
}

}  // namespace

std::optional<std::vector<std::vector<std::uint8_t>>> packSnapshot(const Snapshot& snapshot,
                                                                   std::size_t mostBytes,
                                                                   const std::function<bool()>& canceled) {
  const SingleThreaded alone;
  const Bitmap& bitmap = snapshot.picture.bitmap;
  const std::int32_t bandRows = bandRowsOf(bitmap);
  std::vector<std::vector<std::uint8_t>> blocks;
  std::size_t size = 0;
  const auto append = [&](std::vector<std::uint8_t> block) {
    size += block.size();
    if (size > mostBytes) {
      throw RuntimeError(err::kOutOfMemory,
                         "It needs more than " + std::to_string(mostBytes >> 20) + " MB on the disk.");
    }
    blocks.push_back(std::move(block));
  };
  append(sectionOf(kSignature, packHead(snapshot, bandRows)));
  for (std::int32_t first = 0; first < bitmap.height(); first += bandRows) {
    if (canceled()) return {};
    const std::int32_t rows = std::min(bandRows, bitmap.height() - first);
    append(sectionOf({}, encode(bandOf(bitmap, first, rows), {}, format::kPng)));
  }
  return blocks;
}

std::size_t factsSize(Bytes prefix) {
  if (prefix.size() < kSnapshotPrefix) return 0;
  ByteReader in(prefix);
  if (!std::ranges::equal(in.take(kSignature.size()), bytesOf(kSignature))) return 0;
  const std::size_t head = in.u32();
  return head > kMostHeadBytes ? 0 : kSnapshotPrefix + head;
}

SnapshotFacts readFacts(Bytes data) {
  return refusingDamage([&] {
    ByteReader in(data);
    return takeHead(in).facts;
  });
}

Snapshot unpackSnapshot(Bytes data) {
  return refusingDamage([&] {
    ByteReader in(data);
    Head head = takeHead(in);
    Snapshot snapshot{std::move(head.picture), std::move(head.facts.filename), head.facts.seconds};
    // A snapshot that was never damaged has a size that was possible when it was taken.
    Bitmap bitmap = Bitmap::uninitialized(head.facts.width, head.facts.height);
    const Pixels pixels = bitmap.writable();
    for (std::int32_t first = 0; first < pixels.height;) {
      const std::int32_t rows = std::min(head.bandRows, pixels.height - first);
      const Decoded band = decode(takeSection(in));
      if (!band.notice.empty()) refuseDamage();
      putBand(band.bitmap, pixels, first, rows);
      first += rows;
    }
    if (in.remaining() > 0) refuseDamage();
    snapshot.picture.bitmap = std::move(bitmap);
    return snapshot;
  });
}

}  // namespace kestrel::engine
