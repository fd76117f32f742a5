#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// Tiles of a picture saved before they are drawn on.
class KeptTiles {
 public:
  /// Side of a tile, in pixels. Small tiles follow a thin stroke closely and so need little memory.
  static constexpr std::int32_t kSide = 32;

  /// Saves the tiles that intersect the rectangle and are not saved yet. The rectangle must lie inside the
  /// picture. Raises RuntimeError 7 or std::bad_alloc when out of memory; tiles saved so far stay.
  void keep(ConstPixels picture, const Rectangle& area);

  /// Swaps the saved pixels with those of the picture.
  void exchangeWith(Pixels picture) noexcept;

  /// Moves the tiles of `later` that are not saved here. On an error both stay unchanged.
  void addMissing(KeptTiles& later);

  bool empty() const noexcept { return tiles_.empty(); }

  /// Bytes held.
  std::size_t memory() const noexcept { return tiles_.size() * sizeof(Tile); }

 private:
  struct Tile {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::array<std::uint8_t, std::size_t{4} * kSide * kSide> pixels;
  };
  using Key = std::uint64_t;

  static Key keyOf(std::int32_t column, std::int32_t row) {
    return static_cast<Key>(row) << 32 | static_cast<Key>(column);
  }

  std::unordered_map<Key, std::unique_ptr<Tile>> tiles_;
};

}  // namespace kestrel::engine
