#include "engine/codecs/png/PngThumbnail.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../TestPictures.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/png/Png.h"
#include "engine/codecs/png/PngChunks.h"

namespace kestrel::engine {
namespace {

std::vector<KeyedText> twoTexts() {
  return {{"Thumb::URI", "file:///a.jpg", false, {}, {}}, {"X-Note", "caf\xC3\xA9", true, {}, {}}};
}

TEST(PngThumbnail, FactsAreThoseOfTheDecodedFile) {
  Metadata metadata;
  metadata.texts = twoTexts();
  const auto file = encode(test::gradient(40, 30), metadata, format::kPng);
  const auto facts = png::readFacts(file);
  ASSERT_TRUE(facts.has_value());
  EXPECT_EQ(facts->width, 40);
  EXPECT_EQ(facts->height, 30);
  ASSERT_EQ(facts->texts.size(), 2U);
  EXPECT_EQ(facts->texts[0].key, "Thumb::URI");
  EXPECT_EQ(facts->texts[0].text, "file:///a.jpg");
  EXPECT_EQ(facts->texts[1].text, "caf\xC3\xA9");
}

TEST(PngThumbnail, FactsIncludeTextsAfterThePixels) {
  auto file = encode(test::gradient(40, 30), {}, format::kPng);
  file.resize(file.size() - png::kChunkOverhead);
  const std::string text("Software\0other", 14);
  png::addChunk(file, "tEXt", {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  png::addChunk(file, "IEND", {});
  const auto facts = png::readFacts(file);
  ASSERT_TRUE(facts.has_value());
  ASSERT_EQ(facts->texts.size(), 1U);
  EXPECT_EQ(facts->texts[0].text, "other");
}

TEST(PngThumbnail, ThereAreNoFactsOfCutAndDamagedFiles) {
  const auto file = encode(test::gradient(40, 30), {}, format::kPng);
  ASSERT_TRUE(png::readFacts(file).has_value());
  for (std::size_t size = 0; size < file.size(); ++size)
    EXPECT_FALSE(png::readFacts(Bytes(file).first(size)).has_value()) << size;
  // Each byte belongs to the signature, or to a chunk with a checksum.
  for (std::size_t at = 0; at < file.size(); ++at) {
    std::vector<std::uint8_t> damaged = file;
    damaged[at] ^= 0x10;
    EXPECT_FALSE(png::readFacts(damaged).has_value()) << at;
  }
}

TEST(PngThumbnail, OpaquePicturesAreEncodedWithAlphaToo) {
  constexpr std::size_t kColorType = 25;
  constexpr std::uint8_t kRgb = 2, kRgba = 6;
  Bitmap opaque = Bitmap::filled(40, 30, {1, 2, 3, 255});
  EXPECT_EQ(encode(opaque, {}, format::kPng)[kColorType], kRgb);
  const auto file = png::encodeWithAlpha(opaque, twoTexts());
  EXPECT_EQ(file[kColorType], kRgba);
  const Decoded decoded = png::decode(file);
  EXPECT_TRUE(test::isPicture(decoded.bitmap, opaque));
  EXPECT_EQ(decoded.metadata.texts.size(), 2U);
  EXPECT_TRUE(decoded.notice.empty());
}

}  // namespace
}  // namespace kestrel::engine
