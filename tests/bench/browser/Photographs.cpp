#include "Photographs.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <system_error>

#include "../peers/jpeg/Camera.h"
#include "engine/codecs/Codecs.h"

namespace kestrel::bench {
namespace {

namespace fs = std::filesystem;

/// Pixels from one photograph to the next.
constexpr std::int32_t kStep = 2;
constexpr int kCameraQuality = 90;

}  // namespace

BenchFolder::BenchFolder() {
  std::string name = (fs::temp_directory_path() / "kestrel-bench-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::system_category());
  path_ = name;
}

BenchFolder::~BenchFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

Photographs::Photographs(std::int32_t width, std::int32_t height, int count)
    : width_(width),
      height_(height),
      scene_(cameraPhotograph(width + count * kStep, height + count * kStep)) {}

engine::Bitmap Photographs::at(int number) const {
  engine::Bitmap bitmap = engine::Bitmap::uninitialized(width_, height_);
  const engine::Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height_; ++y) {
    const std::uint8_t* const row = scene_.pixels().row(number * kStep + y);
    std::memcpy(pixels.row(y), row + std::ptrdiff_t{4} * kStep * number,
                static_cast<std::size_t>(width_) * 4);
  }
  return bitmap;
}

std::vector<fs::path> writePhotographs(const fs::path& folder, std::int32_t width, std::int32_t height,
                                       int count) {
  const Photographs photographs(width, height, count);
  std::vector<fs::path> paths;
  for (int i = 0; i < count; ++i) {
    char name[32];
    std::snprintf(name, sizeof name, "photograph%05d.jpg", i);
    paths.push_back(folder / name);
    engine::encodeFile(photographs.at(i), {}, engine::format::kJpg, {.jpegQuality = kCameraQuality},
                       paths.back());
  }
  return paths;
}

}  // namespace kestrel::bench
