#include "Thumbnails.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "base/RuntimeError.h"
#include "engine/codecs/Codecs.h"
#include "engine/effects/resample/Resize.h"
#include "engine/parallel/Parallel.h"

namespace kestrel::engine {
namespace {

/// Decoders reduce with a box kernel, which aliases. Lanczos filtering hides that if the decoded picture is
/// at least this many times as large as the thumbnail.
constexpr std::int32_t kRoomForFilter = 2;

void requireSide(std::int32_t longestSide) {
  if (longestSide < 1) throw RuntimeError(err::kInvalidCall, "A thumbnail needs a side of at least 1 pixel.");
}

Bitmap shrunk(const Bitmap& bitmap, std::int32_t longestSide) {
  const std::int64_t longest = std::max(bitmap.width(), bitmap.height());
  if (longest <= longestSide) return bitmap;
  const auto scaled = [&](std::int64_t side) {
    return static_cast<std::int32_t>(
        std::max<std::int64_t>(1, (2 * side * longestSide + longest) / (2 * longest)));
  };
  return resize(bitmap, scaled(bitmap.width()), scaled(bitmap.height()), ResampleMethod::Lanczos3);
}

}  // namespace

Thumbnail readThumbnail(const std::filesystem::path& path, std::int32_t longestSide,
                        std::stop_token canceled) {
  requireSide(longestSide);
  const Cancelable cancelable(std::move(canceled));
  const std::int32_t enough =
      longestSide > Bitmap::kMaxSide / kRoomForFilter ? Bitmap::kMaxSide : longestSide * kRoomForFilter;
  Decoded decoded = decodeFileReduced(path, enough);
  checkCanceled();
  const Bitmap made = shrunk(decoded.bitmap, longestSide);
  // Avoid heap fragmentation: the thumbnail outlives the decoded picture, so copy it after that one is freed.
  // Left in place, long-lived thumbnails would pin holes several times their own size.
  decoded.bitmap = {};
  Bitmap kept = made;
  kept.writable();
  return {std::move(kept), std::move(decoded.notice), decoded.stored.width, decoded.stored.height};
}

std::vector<Thumbnail> readThumbnails(std::span<const std::filesystem::path> paths,
                                      std::int32_t longestSide) {
  requireSide(longestSide);
  std::vector<Thumbnail> thumbnails(paths.size());
  // The cost per file varies too much for a static partition: each thread takes the next file.
  std::atomic<std::size_t> next = 0;
  forRows(threadCount(), 1, [&](std::int32_t, std::int32_t) {
    for (std::size_t i = next++; i < paths.size(); i = next++) {
      try {
        thumbnails[i] = readThumbnail(paths[i], longestSide);
      } catch (const RuntimeError& error) {
        thumbnails[i].notice = error.Description();
      }
    }
  });
  return thumbnails;
}

}  // namespace kestrel::engine
