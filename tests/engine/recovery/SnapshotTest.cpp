// Packed snapshots: exact, and refused after any damage.

#include "engine/recovery/Snapshot.h"

#include "RecoveryBench.h"

namespace kestrel::engine {
namespace {

constexpr std::size_t kNoLimit = SIZE_MAX;
bool never() { return false; }

Snapshot snapshotOf(const Bitmap& bitmap) {
  Snapshot snapshot{{bitmap, 3, 7}, "/home/a/b\xC3\xA4r.tif", 1'700'000'000};
  snapshot.picture.notice = std::make_shared<const std::string>("Some rows are missing.");
  Metadata metadata;
  metadata.resolutionX = 300.5;
  metadata.resolutionY = 72;
  metadata.exif = {1, 2, 3};
  metadata.xmp = {4, 5};
  metadata.iptc = {6};
  metadata.iccProfile = {7, 8, 9, 10};
  metadata.comment = "a comment";
  metadata.texts = {{"Title", "Caf\xE9", false, "", ""}, {"Author", "x", true, "de", "Autor"}};
  snapshot.picture.metadata = std::make_shared<const Metadata>(metadata);
  return snapshot;
}

std::vector<std::uint8_t> packed(const Snapshot& snapshot) {
  std::vector<std::uint8_t> file;
  const auto blocks = packSnapshot(snapshot, kNoLimit, never);
  for (const auto& block : blocks.value()) {
    file.insert(file.end(), block.begin(), block.end());
  }
  return file;
}

TEST(RecoverySnapshot, ComesBackWithEachPixelAndFact) {
  const Bitmap bitmap = test::noise(61, 47, false);
  const Snapshot back = unpackSnapshot(packed(snapshotOf(bitmap)));
  EXPECT_TRUE(samePixels(back.picture.bitmap, bitmap));
  EXPECT_EQ(back.filename, "/home/a/b\xC3\xA4r.tif");
  EXPECT_EQ(back.seconds, 1'700'000'000);
  EXPECT_EQ(back.picture.format, 3);
  EXPECT_EQ(back.picture.pages, 7);
  EXPECT_EQ(*back.picture.notice, "Some rows are missing.");
  const Metadata& metadata = *back.picture.metadata;
  EXPECT_EQ(metadata.resolutionX, 300.5);
  EXPECT_EQ(metadata.resolutionY, 72);
  EXPECT_EQ(metadata.exif, (std::vector<std::uint8_t>{1, 2, 3}));
  EXPECT_EQ(metadata.xmp, (std::vector<std::uint8_t>{4, 5}));
  EXPECT_EQ(metadata.iptc, (std::vector<std::uint8_t>{6}));
  EXPECT_EQ(metadata.iccProfile, (std::vector<std::uint8_t>{7, 8, 9, 10}));
  EXPECT_EQ(metadata.comment, "a comment");
  ASSERT_EQ(metadata.texts.size(), 2U);
  EXPECT_EQ(metadata.texts[0].text, "Caf\xE9");
  EXPECT_TRUE(metadata.texts[1].international);
  EXPECT_EQ(metadata.texts[1].translatedKey, "Autor");
}

TEST(RecoverySnapshot, KeepsTheColorsOfTransparentPixels) {
  const Bitmap bitmap = test::pictureOf(40, 30, [](std::int32_t x, std::int32_t y) {
    return Pixel{static_cast<std::uint8_t>(x * 6), static_cast<std::uint8_t>(y * 8), 200, 0};
  });
  EXPECT_TRUE(samePixels(unpackSnapshot(packed(snapshotOf(bitmap))).picture.bitmap, bitmap));
}

TEST(RecoverySnapshot, ComesBackFromSeveralBandsAndFromOneColumnOrRow) {
  for (const auto& [width, height] : {std::pair(3000, 900), std::pair(1, 2000), std::pair(2000, 1)}) {
    const Bitmap bitmap = test::gradient(width, height);
    EXPECT_TRUE(samePixels(unpackSnapshot(packed(snapshotOf(bitmap))).picture.bitmap, bitmap))
        << width << " x " << height;
  }
}

TEST(RecoverySnapshot, ComesBackWithoutAFileName) {
  const Snapshot back = unpackSnapshot(packed({{test::gradient(4, 4)}, "", 5}));
  EXPECT_EQ(back.filename, "");
  EXPECT_EQ(back.picture.metadata, nullptr);
  EXPECT_EQ(back.picture.notice, nullptr);
}

TEST(RecoverySnapshot, ItsFactsAreReadFromItsBeginning) {
  const std::vector<std::uint8_t> file = packed(snapshotOf(test::gradient(61, 47)));
  const std::size_t size = factsSize(Bytes(file).first(kSnapshotPrefix));
  ASSERT_LT(size, file.size());
  const SnapshotFacts facts = readFacts(Bytes(file).first(size));
  EXPECT_EQ(facts.filename, "/home/a/b\xC3\xA4r.tif");
  EXPECT_EQ(facts.width, 61);
  EXPECT_EQ(facts.height, 47);
  EXPECT_EQ(facts.seconds, 1'700'000'000);
  EXPECT_EQ(factsSize(Bytes(file).first(10)), 0U);
  EXPECT_EQ(factsSize(Bytes(file).subspan(1, kSnapshotPrefix)), 0U);
}

TEST(RecoverySnapshot, IsRefusedIfAnyByteIsMissing) {
  const std::vector<std::uint8_t> file = packed(snapshotOf(test::noise(20, 10, false)));
  for (std::size_t size = 0; size < file.size(); ++size) {
    EXPECT_EQ(test::errorOf([&] { unpackSnapshot(Bytes(file).first(size)); }), 481) << size;
  }
}

TEST(RecoverySnapshot, IsRefusedIfAnyByteIsChangedOrAdded) {
  std::vector<std::uint8_t> file = packed(snapshotOf(test::noise(20, 10, false)));
  for (std::uint8_t& byte : file) {
    byte ^= 0x10;
    EXPECT_EQ(test::errorOf([&] { unpackSnapshot(file); }), 481) << &byte - file.data();
    byte ^= 0x10;
  }
  file.push_back(0);
  EXPECT_EQ(test::errorOf([&] { unpackSnapshot(file); }), 481);
}

TEST(RecoverySnapshot, IsGivenUpBetweenBandsWhenCanceled) {
  int asked = 0;
  const auto blocks =
      packSnapshot(snapshotOf(test::gradient(3000, 900)), kNoLimit, [&] { return ++asked == 2; });
  EXPECT_FALSE(blocks);
  EXPECT_EQ(asked, 2);
}

TEST(RecoverySnapshot, IsRefusedBeyondItsLimit) {
  const Snapshot snapshot = snapshotOf(test::noise(100, 100, false));
  EXPECT_EQ(test::errorOf([&] { packSnapshot(snapshot, 1000, never); }), 7);
}

}  // namespace
}  // namespace kestrel::engine
