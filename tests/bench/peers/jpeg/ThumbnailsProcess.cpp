// Makes the thumbnails of all files in a folder, as a program that shows the folder would: ours in the row of
// whole processes. Prints the most memory that it had, in megabytes. thumbnails_process FOLDER

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "engine/thumbnails/Thumbnails.h"

namespace {

/// Of this program alone. What a parent is told of its child counts what the child had before it became this
/// program.
double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    constexpr std::string_view kPeak = "VmHWM:";
    if (line.starts_with(kPeak)) return std::stod(line.substr(kPeak.size())) * 1.024e-3;
  }
  throw std::runtime_error("the system does not tell the memory");
}

}  // namespace

int main(int argc, char** argv) {
  using namespace kestrel::engine;
  if (argc != 2) {
    std::fprintf(stderr, "usage: thumbnails_process FOLDER\n");
    return 2;
  }
  try {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) paths.push_back(entry.path());
    constexpr std::int32_t kSide = 160;
    const std::vector<Thumbnail> thumbnails = readThumbnails(paths, kSide);
    const bool all = std::ranges::all_of(thumbnails, [](const Thumbnail& thumbnail) {
      return thumbnail.notice.empty() &&
             std::max(thumbnail.bitmap.width(), thumbnail.bitmap.height()) == kSide;
    });
    if (thumbnails.empty() || !all) throw std::runtime_error("there are files without a thumbnail");
    std::printf("%.1f\n", peakMegabytes());
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
