#include "KeptTiles.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kestrel::engine {
namespace {

/// Calls `work(pixels of the picture, pixels of the tile, bytes)` for each row of a tile.
template <typename Pointer, typename Picture, typename Tile, typename Work>
void forTileRows(const Picture& picture, Tile& tile, const Work& work) {
  const auto bytes = 4 * static_cast<std::size_t>(std::min(KeptTiles::kSide, picture.width - tile.left));
  const std::int32_t rows = std::min(KeptTiles::kSide, picture.height - tile.top);
  for (std::int32_t y = 0; y < rows; ++y) {
    Pointer inPicture = picture.row(tile.top + y) + 4 * static_cast<std::size_t>(tile.left);
    work(inPicture, tile.pixels.data() + static_cast<std::size_t>(y) * 4 * KeptTiles::kSide, bytes);
  }
}

}  // namespace

void KeptTiles::keep(ConstPixels picture, const Rectangle& area) {
  if (area.Width <= 0 || area.Height <= 0) return;
  for (std::int32_t row = area.Top / kSide; row <= (area.Top + area.Height - 1) / kSide; ++row) {
    for (std::int32_t column = area.Left / kSide; column <= (area.Left + area.Width - 1) / kSide; ++column) {
      if (tiles_.contains(keyOf(column, row))) continue;
      auto tile = std::unique_ptr<Tile>(new Tile);  // not value-initialized: it is filled right away
      tile->left = column * kSide;
      tile->top = row * kSide;
      forTileRows<const std::uint8_t*>(picture, *tile, [](auto inPicture, auto inTile, auto bytes) {
        std::memcpy(inTile, inPicture, bytes);
      });
      tiles_.emplace(keyOf(column, row), std::move(tile));
    }
  }
}

void KeptTiles::exchangeWith(Pixels picture) noexcept {
  for (auto& [key, tile] : tiles_) {
    forTileRows<std::uint8_t*>(picture, *tile, [](auto inPicture, auto inTile, auto bytes) {
      std::array<std::uint8_t, std::size_t{4} * kSide> row;
      std::memcpy(row.data(), inTile, bytes);
      std::memcpy(inTile, inPicture, bytes);
      std::memcpy(inPicture, row.data(), bytes);
    });
  }
}

void KeptTiles::addMissing(KeptTiles& later) {
  tiles_.reserve(tiles_.size() + later.tiles_.size());
  tiles_.merge(later.tiles_);
}

}  // namespace kestrel::engine
