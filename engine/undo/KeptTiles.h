#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Types.h"

namespace kestrel::engine {

/// The squares of a picture that something is about to draw on, as they were before.
class KeptTiles {
 public:
  /// The side of a tile. Small ones follow a thin stroke closely, so that it holds little memory.
  static constexpr std::int32_t kSide = 32;

  /// Keeps the tiles that meet the rectangle, which must lie inside the picture, and are not kept yet.
  /// Raises RuntimeError 7 or std::bad_alloc when memory runs out; the tiles kept so far stay.
  void keep(ConstPixels picture, const Rectangle& area);

  /// Changes places with the picture's pixels: what was kept stands in the picture, and the other way round.
  void exchangeWith(Pixels picture) noexcept;

  /// Takes over the tiles of `later` that are not kept here. On an error both stay as they were.
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
