#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "engine/pixels/Bitmap.h"

namespace kestrel::bench {

/// A temporary folder, removed by the destructor.
class BenchFolder {
 public:
  BenchFolder();
  BenchFolder(const BenchFolder&) = delete;
  BenchFolder& operator=(const BenchFolder&) = delete;
  ~BenchFolder();

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Different photographs, as of a camera, cut out of one.
class Photographs {
 public:
  Photographs(std::int32_t width, std::int32_t height, int count);

  /// Number `number` of `count`.
  engine::Bitmap at(int number) const;

 private:
  std::int32_t width_, height_;
  engine::Bitmap scene_;
};

/// Writes `count` different photographs as JPEG files of quality 90 into the folder, and returns their paths.
std::vector<std::filesystem::path> writePhotographs(const std::filesystem::path& folder, std::int32_t width,
                                                    std::int32_t height, int count);

}  // namespace kestrel::bench
