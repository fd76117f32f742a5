#include "FramedPng.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "engine/codecs/png/PngChunks.h"

namespace kestrel::fuzz {
namespace {

using engine::Bytes;
using engine::png::addChunk;

using File = std::vector<std::uint8_t>;

struct Kind {
  std::uint8_t type = 0, depth = 8;
  std::size_t samples = 1;
};

/// All color types with all their bit depths (PNG, table 11.1).
constexpr std::array<Kind, 15> kKinds{{{2, 8, 3},
                                       {6, 8, 4},
                                       {0, 8, 1},
                                       {4, 8, 2},
                                       {3, 8, 1},
                                       {2, 16, 3},
                                       {6, 16, 4},
                                       {0, 16, 1},
                                       {4, 16, 2},
                                       {0, 1, 1},
                                       {0, 2, 1},
                                       {0, 4, 1},
                                       {3, 1, 1},
                                       {3, 2, 1},
                                       {3, 4, 1}}};

enum Flag : std::uint8_t {
  kInterlaced = 1,
  kTransparency = 2,
  kAnyFilter = 4,      ///< filter types as the input has them, legal or not
  kAnyStream = 8,      ///< the input itself is the zlib stream
  kChunksBefore = 16,  ///< the input's own chunks before the pixels
  kChunksAfter = 32,   ///< and after them
  kTooShort = 64,      ///< rows are missing
  kSurplus = 128       ///< more than the rows
};

/// Takes the input apart; 0 where it is used up.
class Input {
 public:
  explicit Input(Bytes bytes) : rest_(bytes) {}

  std::uint8_t u8() {
    if (rest_.empty()) return 0;
    const std::uint8_t value = rest_.front();
    rest_ = rest_.subspan(1);
    return value;
  }
  Bytes take(std::size_t count) {
    const Bytes taken = rest_.first(std::min(count, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }
  Bytes rest() const { return rest_; }

 private:
  Bytes rest_;
};

struct Picture {
  Kind kind;
  std::size_t width = 1, height = 1;
  std::uint8_t flags = 0;

  bool has(Flag flag) const { return (flags & flag) != 0; }
  std::size_t rowBytes(std::size_t pixels) const { return (pixels * kind.samples * kind.depth + 7) / 8; }
};

/// Byte counts of the filtered rows in the order of the stream.
std::vector<std::size_t> rowsOf(const Picture& picture) {
  struct Pass {
    std::size_t x, y, stepX, stepY;
  };
  constexpr std::array<Pass, 7> kAdam7{
      {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4}, {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}};
  if (!picture.has(kInterlaced)) return std::vector(picture.height, picture.rowBytes(picture.width));
  std::vector<std::size_t> rows;
  for (const Pass& pass : kAdam7) {
    if (picture.width <= pass.x) continue;
    const std::size_t columns = (picture.width - pass.x + pass.stepX - 1) / pass.stepX;
    for (std::size_t y = pass.y; y < picture.height; y += pass.stepY)
      rows.push_back(picture.rowBytes(columns));
  }
  return rows;
}

/// The filtered rows, made of `bytes` over and over.
File filteredRows(const Picture& picture, Bytes bytes) {
  File rows;
  std::size_t at = 0;
  const auto next = [&] { return bytes.empty() ? std::uint8_t{0} : bytes[at++ % bytes.size()]; };
  for (const std::size_t count : rowsOf(picture)) {
    const std::uint8_t filter = next();
    rows.push_back(picture.has(kAnyFilter) ? filter : static_cast<std::uint8_t>(filter % 5));
    for (std::size_t i = 0; i < count; ++i) rows.push_back(next());
  }
  if (picture.has(kTooShort)) rows.resize(rows.size() - std::min<std::size_t>(rows.size(), 1 + next()));
  if (picture.has(kSurplus)) rows.resize(rows.size() + 1 + next());
  return rows;
}

/// A zlib stream; the lowest bits of `choice` are the level, the next ones the strategy.
File deflated(const File& data, unsigned choice) {
  constexpr std::array kLevels{0, 1, 6, 9};
  constexpr std::array kStrategies{Z_DEFAULT_STRATEGY, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED};
  z_stream stream{};
  deflateInit2(&stream, kLevels[choice % 4], Z_DEFLATED, 15, 8, kStrategies[choice / 4 % 4]);
  File result(deflateBound(&stream, data.size()));
  stream.next_in = const_cast<std::uint8_t*>(data.data());
  stream.avail_in = static_cast<unsigned>(data.size());
  stream.next_out = result.data();
  stream.avail_out = static_cast<unsigned>(result.size());
  deflate(&stream, Z_FINISH);
  result.resize(stream.total_out);
  deflateEnd(&stream);
  return result;
}

void addHeader(File& file, const Picture& picture) {
  const auto low = [](std::size_t value) { return static_cast<std::uint8_t>(value); };
  addChunk(file, "IHDR",
           File{0, 0, 0, low(picture.width), 0, 0, 0, low(picture.height), picture.kind.depth,
                picture.kind.type, 0, 0, low(picture.has(kInterlaced) ? 1 : 0)});
}

void addPalette(File& file, const Picture& picture, Input& input) {
  const std::size_t colors = 1 + input.u8() % (std::size_t{1} << picture.kind.depth);
  File palette(3 * colors);
  std::ranges::copy(input.take(palette.size()), palette.begin());
  addChunk(file, "PLTE", palette);
  if (picture.has(kTransparency)) addChunk(file, "tRNS", input.take(1 + input.u8() % colors));
}

/// The color that is transparent: two bytes for each sample.
void addTransparentColor(File& file, const Picture& picture, Input& input) {
  File color(2 * picture.kind.samples);
  std::ranges::copy(input.take(color.size()), color.begin());
  if (picture.kind.depth <= 8) {
    for (std::size_t i = 0; i < color.size(); i += 2) color[i] = 0;
  }
  if (picture.kind.depth < 8)
    color[1] = static_cast<std::uint8_t>(color[1] & ((1 << picture.kind.depth) - 1));
  addChunk(file, "tRNS", color);
}

/// Chunks of the input's choice with its bytes; the zlib streams in some of them are valid.
void addChunks(File& file, Input& input) {
  constexpr std::array<std::string_view, 12> kNames{"gAMA", "cHRM", "sRGB", "iCCP", "pHYs", "tEXt",
                                                    "zTXt", "iTXt", "eXIf", "bKGD", "tIME", "prVt"};
  constexpr std::array<std::string_view, 6> kKeys{"Comment",
                                                  "XML:com.adobe.xmp",
                                                  "Raw profile type exif",
                                                  "Raw profile type iptc",
                                                  "Raw profile type APP1",
                                                  "Title"};
  for (std::size_t count = 1 + input.u8() % 4; count > 0; --count) {
    const std::string_view name = kNames[input.u8() % kNames.size()];
    const std::size_t size = input.u8();
    const Bytes bytes = input.take(size);
    File content(bytes.begin(), bytes.end());
    if (name == "zTXt" || name == "iCCP") {
      const File packed = deflated(content, 2);
      content.assign({'k', 0, 0});
      content.insert(content.end(), packed.begin(), packed.end());
    } else if (name == "tEXt" || name == "iTXt") {
      const std::string_view key = kKeys[input.u8() % kKeys.size()];
      File keyed(key.begin(), key.end());
      keyed.resize(keyed.size() + (name == "iTXt" ? 5 : 1));
      content.insert(content.begin(), keyed.begin(), keyed.end());
    }
    addChunk(file, name, content);
  }
}

/// The stream in chunks of `piece` bytes; in one where it is 0.
void addPixels(File& file, Bytes stream, std::size_t piece) {
  if (piece == 0) return addChunk(file, "IDAT", stream);
  while (!stream.empty()) {
    const std::size_t count = std::min(piece, stream.size());
    addChunk(file, "IDAT", stream.first(count));
    stream = stream.subspan(count);
  }
}

}  // namespace

File framedPng(Bytes bytes) {
  Input input(bytes);
  Picture picture;
  picture.kind = kKinds[input.u8() % kKinds.size()];
  picture.width = 1 + input.u8() % 48U;
  picture.height = 1 + input.u8() % 24U;
  picture.flags = input.u8();
  const unsigned packing = input.u8();
  const std::size_t piece = input.u8();

  File file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  addHeader(file, picture);
  if (picture.has(kChunksBefore)) addChunks(file, input);
  if (picture.kind.type == 3) {
    addPalette(file, picture, input);
  } else if (picture.has(kTransparency) && picture.kind.type < 4) {
    addTransparentColor(file, picture, input);
  }
  File after;
  if (picture.has(kChunksAfter)) addChunks(after, input);
  const Bytes rest = input.rest();
  const File stream = picture.has(kAnyStream) ? File(rest.begin(), rest.end())
                                              : deflated(filteredRows(picture, rest), packing);
  addPixels(file, stream, piece);
  file.insert(file.end(), after.begin(), after.end());
  addChunk(file, "IEND", {});
  return file;
}

}  // namespace kestrel::fuzz
