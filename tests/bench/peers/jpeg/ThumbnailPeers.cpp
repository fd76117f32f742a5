#include "ThumbnailPeers.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "Camera.h"
#include "JpegFiles.h"
#include "Process.h"

namespace kestrel::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kFiles = 200, kDistinct = 12;
constexpr std::int32_t kWidth = 4000, kHeight = 3000, kStep = 100;
constexpr int kCameraQuality = 90;
constexpr double kMostMegabytes = 80;

/// A temporary folder of photographs, removed by the destructor.
class PhotographFolder {
 public:
  PhotographFolder()
      : path_(fs::temp_directory_path() / ("kestrel-photographs-" + std::to_string(getpid()))) {
    fs::create_directories(path_);
    const engine::Bitmap scene = cameraPhotograph(kWidth + kDistinct * kStep, kHeight + kDistinct * kStep);
    for (int i = 0; i < kFiles; ++i) {
      if (i < kDistinct) {
        write(nameOf(i), scene, i * kStep);
      } else {
        fs::create_hard_link(nameOf(i % kDistinct), nameOf(i));
      }
    }
  }
  PhotographFolder(const PhotographFolder&) = delete;
  PhotographFolder& operator=(const PhotographFolder&) = delete;
  ~PhotographFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }

  const fs::path& path() const { return path_; }

 private:
  fs::path nameOf(int number) const { return path_ / ("photograph" + std::to_string(number) + ".jpg"); }

  /// Writes a crop of the scene, so that each file is a different picture.
  static void write(const fs::path& path, const engine::Bitmap& scene, int offset) {
    engine::ConstPixels window = scene.pixels();
    window.data = window.row(offset) + std::ptrdiff_t{4} * offset;
    window.width = kWidth;
    window.height = kHeight;
    const std::vector<std::uint8_t> bytes = jpegOf(window, kCameraQuality, Colors::halved);
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw fs::filesystem_error("cannot write", path, std::make_error_code(std::errc::io_error));
  }

  fs::path path_;
};

/// Runs our process and returns its peak memory in megabytes.
double oursIn(const fs::path& folder) { return std::stod(runProcess({THUMBNAILS_PROCESS, folder.string()})); }

std::vector<Contender> timed() {
  const auto folder = std::make_shared<const PhotographFolder>();
  return {
      {"KestrelLib2",
       "DC coefficients only (1/8 size), then premultiplied Lanczos3; with orientation and profile",
       [=] { oursIn(folder->path()); }},
      {"Pillow", "draft mode (1/8 size), then bicubic, in two processes; no orientation, no profile", [=] {
         runProcess({"/usr/bin/python3", THUMBNAILS_SCRIPT, folder->path().string()});
       }}};
}

std::vector<Contender> peakMemory() {
  const auto folder = std::make_shared<const PhotographFolder>();
  Contender ours{"KestrelLib2", "peak resident memory", {}, [=] { return oursIn(folder->path()); }};
  Contender bound{"the bound", "limit of the process", {}, [] { return kMostMegabytes; }};
  return {ours, bound};
}

}  // namespace

std::vector<Comparison> thumbnailComparisons() {
  const std::string operation = "200 JPEG files of 12 megapixels to 160-pixel thumbnails, whole process";
  Comparison times{operation, 0.9, timed};
  times.cores = 2;
  Comparison memory{operation + ", memory", 1, peakMemory, "MB"};
  memory.cores = 2;
  return {times, memory};
}

}  // namespace kestrel::bench
