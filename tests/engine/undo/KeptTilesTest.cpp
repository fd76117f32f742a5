#include "engine/undo/KeptTiles.h"

#include "Pictures.h"

namespace kestrel::engine {
namespace {

TEST(KeptTiles, ExchangeSwapsTheKeptPixelsWithTheDrawnOnes) {
  Bitmap picture = noise(100, 70);  // neither side a multiple of the tile size
  const Bitmap before = deepCopy(picture);
  KeptTiles tiles;
  tiles.keep(picture.pixels(), {60, 50, 40, 20});
  fill(picture.writable(), 60, 50, 40, 20, {1, 2, 3, 4});
  const Bitmap after = deepCopy(picture);

  tiles.exchangeWith(picture.writable());
  EXPECT_TRUE(samePixels(picture, before));
  tiles.exchangeWith(picture.writable());
  EXPECT_TRUE(samePixels(picture, after));
}

TEST(KeptTiles, KeepsATileOnceInItsFirstState) {
  Bitmap picture = noise(64, 64);
  const Bitmap before = deepCopy(picture);
  KeptTiles tiles;
  tiles.keep(picture.pixels(), {0, 0, 1, 1});
  const std::size_t oneTile = tiles.memory();
  fill(picture.writable(), 0, 0, 32, 32, {});
  tiles.keep(picture.pixels(), {10, 10, 5, 5});
  EXPECT_EQ(tiles.memory(), oneTile);
  tiles.exchangeWith(picture.writable());
  EXPECT_TRUE(samePixels(picture, before));
}

TEST(KeptTiles, HoldsOnlyTheTilesThatWereTouched) {
  const Bitmap picture = noise(320, 320);
  KeptTiles tiles;
  EXPECT_TRUE(tiles.empty());
  tiles.keep(picture.pixels(), {31, 0, 2, 1});  // two tiles
  EXPECT_FALSE(tiles.empty());
  EXPECT_GE(tiles.memory(), 2U * 32 * 32 * 4);
  EXPECT_LT(tiles.memory(), 3U * 32 * 32 * 4);
}

TEST(KeptTiles, MergesTheMissingTilesOfALaterChange) {
  Bitmap picture = noise(96, 32);
  const Bitmap before = deepCopy(picture);
  KeptTiles first, second;
  first.keep(picture.pixels(), {0, 0, 40, 32});
  fill(picture.writable(), 0, 0, 40, 32, {1, 1, 1, 1});
  second.keep(picture.pixels(), {35, 0, 61, 32});
  fill(picture.writable(), 35, 0, 61, 32, {2, 2, 2, 2});
  first.addMissing(second);
  first.exchangeWith(picture.writable());
  EXPECT_TRUE(samePixels(picture, before));
}

}  // namespace
}  // namespace kestrel::engine
