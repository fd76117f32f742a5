// Our process in the row of whole processes: makes the thumbnails of all files in a folder. Prints its peak
// memory in megabytes. Usage: thumbnails_process FOLDER

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

/// Peak memory of this program alone. The figure that a parent gets for its child includes memory from before
/// the exec.
double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    constexpr std::string_view kPeak = "VmHWM:";
    if (line.starts_with(kPeak)) return std::stod(line.substr(kPeak.size())) * 1.024e-3;
  }
  throw std::runtime_error("the system does not report the memory");
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
