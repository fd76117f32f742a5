// The shared thumbnails. The bound: 10,000 from a warm cache in 3 s on two cores.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <map>
#include <memory>
#include <vector>

#include "Photographs.h"
#include "engine/thumbnails/Thumbnails.h"
#include "platform/os/FolderScan.h"
#include "platform/thumbnailcache/ThumbnailCache.h"

namespace kestrel::bench {
namespace {

using namespace thumbnails;
namespace fs = std::filesystem;

constexpr int kFiles = 100;
constexpr std::int32_t kWidth = 2048, kHeight = 1536;

/// Photographs, and the thumbnails that a cache is to keep of them.
struct Album {
  explicit Album(std::int32_t side) : cache(folder.path() / "cache/thumbnails") {
    for (const fs::path& path : writePhotographs(folder.path(), kWidth, kHeight, kFiles)) {
      os::FolderEntry entry;
      os::examineEntry(path, entry);
      files.push_back({path, entry.modified, entry.size});
      bitmaps.push_back(engine::readThumbnail(path, side).bitmap);
    }
  }

  BenchFolder folder;
  ThumbnailCache cache;
  std::vector<FileVersion> files;
  std::vector<engine::Bitmap> bitmaps;
};

Album& album(std::int32_t side) {
  static std::map<std::int32_t, std::unique_ptr<Album>> albums;
  std::unique_ptr<Album>& album = albums[side];
  if (!album) album = std::make_unique<Album>(side);
  return *album;
}

/// One thumbnail from its photograph, for comparison.
void decodePhotograph(benchmark::State& state) {
  const auto side = static_cast<std::int32_t>(state.range(0));
  const Album& photographs = album(side);
  std::size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(engine::readThumbnail(photographs.files[i++ % kFiles].path, side));
}
BENCHMARK(decodePhotograph)->Arg(128)->Arg(256)->Unit(benchmark::kMicrosecond)->UseRealTime();

void keep(benchmark::State& state) {
  const auto side = static_cast<std::int32_t>(state.range(0));
  Album& photographs = album(side);
  std::size_t i = 0;
  for (auto _ : state) {
    const std::size_t number = i++ % kFiles;
    photographs.cache.put(photographs.files[number], side, photographs.bitmaps[number], {kWidth, kHeight});
  }
}
BENCHMARK(keep)->Arg(128)->Arg(256)->Arg(512)->Unit(benchmark::kMicrosecond)->UseRealTime();

void get(benchmark::State& state, StoredDetail detail) {
  const auto side = static_cast<std::int32_t>(state.range(0));
  Album& photographs = album(side);
  for (std::size_t i = 0; i < kFiles; ++i)
    photographs.cache.put(photographs.files[i], side, photographs.bitmaps[i], {kWidth, kHeight});
  std::size_t i = 0;
  for (auto _ : state) {
    const StoredThumbnail found = photographs.cache.get(photographs.files[i++ % kFiles], side, detail);
    if (found.state != StoredThumbnail::State::kKept) state.SkipWithError("a thumbnail is missing");
  }
}

void show(benchmark::State& state) { get(state, StoredDetail::kBitmap); }
BENCHMARK(show)->Arg(128)->Arg(256)->Arg(512)->Unit(benchmark::kMicrosecond)->UseRealTime();

void facts(benchmark::State& state) { get(state, StoredDetail::kFacts); }
BENCHMARK(facts)->Arg(128)->Arg(256)->Unit(benchmark::kMicrosecond)->UseRealTime();

/// A folder whose thumbnails were not made yet.
void miss(benchmark::State& state) {
  Album& photographs = album(128);
  std::size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(
        photographs.cache.get(photographs.files[i++ % kFiles], 1024, StoredDetail::kBitmap));
}
BENCHMARK(miss)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
}  // namespace kestrel::bench
