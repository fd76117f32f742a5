#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "engine/codecs/CodecTable.h"

// Writes the inputs that the fuzzers start from: small pictures in every writable format, with and without
// metadata.

namespace {

using namespace kestrel::engine;

Bitmap picture(std::int32_t width, std::int32_t height, bool opaque) {
  Bitmap bitmap = Bitmap::uninitialized(width, height);
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      std::uint8_t* const p = pixels.row(y) + 4 * x;
      p[0] = static_cast<std::uint8_t>(x * 40);
      p[1] = static_cast<std::uint8_t>(y * 30);
      p[2] = static_cast<std::uint8_t>(x * y * 7);
      p[3] = opaque ? std::uint8_t{255} : static_cast<std::uint8_t>(x * 25 + y);
    }
  }
  return bitmap;
}

/// An EXIF block with an orientation, little-endian.
std::vector<std::uint8_t> exif() {
  return {'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0, 0x12, 1, 3, 0, 1, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0, 0};
}

std::string_view folderOf(const Codec& codec) { return FormatOf(codec.format)->Extensions[0]; }

void write(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

/// A Photo CD pack truncated after its first rows, since the format is not writable.
std::vector<std::uint8_t> photoCd() {
  std::vector<std::uint8_t> bytes(0x2000 + 4 * 576, std::uint8_t{120});
  const std::string mark = "PCD_IPI";
  std::copy(mark.begin(), mark.end(), bytes.begin() + 0x800);
  return bytes;
}

/// Descriptions of PNG files (FramedPng.h): each color type and bit depth, plain, and interlaced with
/// transparency.
void writeDescribedPngs(const std::filesystem::path& folder) {
  constexpr std::uint8_t kKinds = 15, kInterlacedTransparent = 3, kChunksBefore = 16, kChunksAfter = 32,
                         kTooShort = 64, kSurplus = 128;
  const auto add = [&](const std::string& name, std::vector<std::uint8_t> input) {
    for (int i = 0; i < 31; ++i) input.push_back(static_cast<std::uint8_t>(i * 37 + i * i));
    write(folder / name, input);
  };
  for (std::uint8_t kind = 0; kind < kKinds; ++kind) {
    const std::string name = "described" + std::to_string(kind);
    add(name, {kind, 12, 9, 0, 2, 0});
    add(name + "_adam7", {kind, 10, 10, kInterlacedTransparent, 6, 9});
  }
  add("described_short", {0, 12, 9, kTooShort, 1, 0});
  add("described_surplus", {1, 12, 9, kSurplus, 0, 20});
  // Gamma and resolution before the pixels; a comment, EXIF and a text in UTF-8 after them.
  add("described_chunks", {2,   12,  9,   kChunksBefore | kChunksAfter,
                           2,   0,   1,   0,
                           4,   0,   0,   0x70,
                           0,   4,   9,   0,
                           0,   11,  19,  0,
                           0,   11,  19,  1,
                           2,   5,   2,   'h',
                           'i', 0,   8,   8,
                           'I', 'I', 42,  0,
                           8,   0,   0,   0,
                           7,   3,   'x', 'y',
                           'z', 5});
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: fuzz_corpus FOLDER\n");
    return 2;
  }
  try {
    const std::filesystem::path folder = argv[1];
    Metadata metadata;
    metadata.resolutionX = metadata.resolutionY = 96;
    metadata.exif = exif();
    metadata.xmp = {'<', 'x', '/', '>'};
    metadata.iptc = {0x1C, 2, 5, 0, 1, 'x'};
    for (const Codec& codec : codecTable()) {
      if (codec.encode == nullptr) continue;
      const auto at = folder / folderOf(codec);
      write(at / "opaque", encode(picture(9, 7, true), {}, codec.format));
      write(at / "transparent", encode(picture(7, 9, false), metadata, codec.format));
      write(at / "one_pixel", encode(picture(1, 1, true), {}, codec.format));
    }
    writeDescribedPngs(folder / "png");
    write(folder / "pcd" / "cut", photoCd());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
