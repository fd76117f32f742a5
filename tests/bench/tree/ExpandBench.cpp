// tree_bench: how long a node with 10,000 subfolders takes to expand, until it is painted, compared with
// reading the same folders alone.

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "../../desktop/tree/TreeBench.h"
#include "platform/os/FolderScan.h"
#include "platform/os/Paths.h"

namespace {

constexpr int kFolders = 10'000;
constexpr int kRuns = 9;

template <typename Work>
double milliseconds(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Reads the names of the folder, and the first entry of each folder in it.
void readFolders(const std::string& folder) {
  using namespace kestrel;
  std::vector<std::filesystem::path> below;
  os::scanFolder(os::pathOf(folder), os::ScanDetail::kKind, [&](os::FolderEntry&& entry) {
    below.push_back(os::pathOf(folder) / entry.name);
    return true;
  });
  for (const auto& path : below) {
    os::scanFolder(path, os::ScanDetail::kKind, [](os::FolderEntry&&) { return false; });
  }
}

}  // namespace

int main(int count, char** values) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, values);
  kestrel::desktop::TreeBench bench;
  for (int i = 0; i < kFolders; ++i) bench.folder("many/folder " + std::to_string(i) + "/in");
  bench.start();

  std::vector<double> reading;
  std::vector<double> expanding;
  for (int run = 0; run < kRuns; ++run) {
    reading.push_back(milliseconds([&] { readFolders(bench.home("many")); }));
    bench.control().Refresh();
    QApplication::processEvents();
    const std::string key = bench.nodeOf(bench.home("many")).Key();
    expanding.push_back(milliseconds([&] {
      bench.tree().Nodes().Item(key).Expanded(true);
      bench.widget().grab();
    }));
  }
  std::printf("expanding %d folders: %.0f ms, reading them alone: %.0f ms, ratio %.2f\n", kFolders,
              median(expanding), median(reading), median(expanding) / median(reading));
  return 0;
}
