#include "TestPictures.h"
#include "engine/codecs/CodecTable.h"

namespace kestrel::engine {
namespace {

/// A small file of a writable format with all the metadata that the format can hold.
std::vector<std::uint8_t> sampleFile(const Codec& codec) {
  Metadata metadata;
  metadata.resolutionX = metadata.resolutionY = 96;
  metadata.exif = test::cameraBlock(6, 40);
  metadata.xmp.assign(50, ' ');
  metadata.iptc = test::Builder().u8({0x1C, 2, 5, 0, 1, 'x'}).bytes;
  return encode(test::noise(13, 11, false), metadata, codec.format);
}

/// Decoding must return a picture or raise an error with a text.
void decodeSafely(const Codec& codec, Bytes data) {
  try {
    const Decoded decoded = codec.decode(data);
    EXPECT_FALSE(decoded.bitmap.empty());
  } catch (const RuntimeError& error) {
    EXPECT_TRUE(error.Number() == 481 || error.Number() == 7) << error.Number() << " " << error.Description();
    EXPECT_FALSE(error.Description().empty());
    EXPECT_EQ(error.Description().back(), '.') << error.Description();
  }
}

TEST(Malformed, AFileTruncatedAnywhereGivesAPictureOrAnError) {
  for (const Codec& codec : codecTable()) {
    if (codec.encode == nullptr) continue;
    const auto whole = sampleFile(codec);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      SCOPED_TRACE(std::string(codec.name) + " of " + std::to_string(size) + " bytes");
      // An exact copy, so that the address sanitizer catches reads beyond the end.
      const std::vector<std::uint8_t> part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      decodeSafely(codec, part);
    }
  }
}

TEST(Malformed, AFileWithAnyBytesChangedGivesAPictureOrAnError) {
  std::mt19937 random(2026);
  for (const Codec& codec : codecTable()) {
    if (codec.encode == nullptr) continue;
    const auto whole = sampleFile(codec);
    for (int round = 0; round < 1000; ++round) {
      SCOPED_TRACE(std::string(codec.name) + " in round " + std::to_string(round));
      auto changed = whole;
      const std::size_t count = 1 + random() % 4;
      // Half of the changes fall on the headers, where the sizes are.
      const std::size_t range =
          random() % 2 == 0 ? changed.size() : std::min<std::size_t>(changed.size(), 64);
      for (std::size_t i = 0; i < count; ++i) changed[random() % range] = static_cast<std::uint8_t>(random());
      decodeSafely(codec, changed);
    }
  }
}

TEST(Malformed, RandomBytesAreRefused) {
  std::mt19937 random(5);
  for (int round = 0; round < 500; ++round) {
    std::vector<std::uint8_t> noise(random() % 200);
    for (auto& byte : noise) byte = static_cast<std::uint8_t>(random());
    for (const Codec& codec : codecTable()) {
      if (codec.probe(noise)) decodeSafely(codec, noise);
    }
  }
}

}  // namespace
}  // namespace kestrel::engine
