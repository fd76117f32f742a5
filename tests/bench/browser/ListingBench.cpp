// Listing large folders. The bounds: 100,000 entries in 1 s.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Photographs.h"
#include "platform/os/FolderScan.h"

namespace kestrel::bench {
namespace {

namespace fs = std::filesystem;

std::unique_ptr<BenchFolder> folderOfFiles(int count) {
  auto folder = std::make_unique<BenchFolder>();
  for (int i = 0; i < count; ++i) {
    const fs::path path = folder->path() / ("IMG_" + std::to_string(i) + ".jpg");
    ::close(::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  }
  return folder;
}

/// Entries listed into memory.
void list(benchmark::State& state, os::ScanDetail detail) {
  const auto folder = folderOfFiles(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::vector<os::FolderEntry> entries;
    os::scanFolder(folder->path(), detail, [&](os::FolderEntry&& entry) {
      entries.push_back(std::move(entry));
      return true;
    });
    if (static_cast<std::int64_t>(entries.size()) != state.range(0)) state.SkipWithError("entries missing");
  }
}

void listKinds(benchmark::State& state) { list(state, os::ScanDetail::kKind); }
BENCHMARK(listKinds)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

void listAll(benchmark::State& state) { list(state, os::ScanDetail::kAll); }
BENCHMARK(listAll)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The standard library's listing with sizes and times, which follows each name separately.
void listByStandardLibrary(benchmark::State& state) {
  struct Entry {
    fs::path name;
    std::uintmax_t size;
    fs::file_time_type time;
  };
  const auto folder = folderOfFiles(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::vector<Entry> entries;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder->path()))
      entries.push_back({entry.path().filename(), entry.file_size(), entry.last_write_time()});
    benchmark::DoNotOptimize(entries.data());
  }
}
BENCHMARK(listByStandardLibrary)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace kestrel::bench
