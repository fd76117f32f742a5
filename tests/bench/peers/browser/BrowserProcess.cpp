// Our process in the rows of folders: loads the thumbnails of all files in a folder as the browser does, from
// and to a cache. Prints its peak memory in megabytes. Usage: browser_process FOLDER CACHE SIDE

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "../../browser/FolderRun.h"
#include "platform/thumbnailcache/ThumbnailCache.h"

int main(int argc, char** argv) {
  using namespace kestrel;
  if (argc != 4) {
    std::fprintf(stderr, "usage: browser_process FOLDER CACHE SIDE\n");
    return 2;
  }
  try {
    bench::loadFolder(argv[1], std::stoi(argv[3]), 1, std::make_shared<thumbnails::ThumbnailCache>(argv[2]));
    std::printf("%.1f\n", bench::peakMegabytes());
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
