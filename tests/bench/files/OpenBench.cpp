// Opening a photograph of 24 megapixels, compared with its decoder alone.

#include <benchmark/benchmark.h>
#include <stdio.h>  // jpeglib.h needs FILE

#include <jpeglib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "../../engine/undo/Pictures.h"
#include "../../engine/view/TestView.h"
#include "engine/codecs/Codecs.h"

namespace kestrel::engine {
namespace {

constexpr std::int32_t kWidth = 6000;
constexpr std::int32_t kHeight = 4000;
constexpr std::int32_t kViewWidth = 1600;
constexpr std::int32_t kViewHeight = 1000;

/// Soft shapes with a little noise, so that the file is about as large as a camera's.
Bitmap photograph() {
  Bitmap bitmap = noise(kWidth, kHeight);
  const Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < kHeight; ++y) {
    std::uint8_t* p = pixels.row(y);
    for (std::int32_t x = 0; x < kWidth; ++x, p += 4) {
      p[0] = static_cast<std::uint8_t>((x / 24 + y / 40) % 200 + p[0] / 16);
      p[1] = static_cast<std::uint8_t>((x / 31 + y / 17) % 200 + p[1] / 16);
      p[2] = static_cast<std::uint8_t>((x / 50 + y / 23) % 200 + p[2] / 16);
      p[3] = 255;
    }
  }
  return bitmap;
}

const std::filesystem::path& file() {
  static const std::filesystem::path path = [] {
    auto target = std::filesystem::temp_directory_path() / "kestrel-open-bench.jpg";
    encodeFile(photograph(), {}, format::kJpg, {.jpegQuality = 90}, target);
    return target;
  }();
  return path;
}

std::vector<unsigned char> bytesOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// The decoder alone, from memory into a kept buffer.
void decoderAlone(benchmark::State& state) {
  const std::vector<unsigned char> data = bytesOf(file());
  std::vector<unsigned char> pixels(std::size_t{kWidth} * kHeight * 4);
  for (auto _ : state) {
    jpeg_decompress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, data.data(), data.size());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_EXT_RGBA;
    jpeg_start_decompress(&info);
    while (info.output_scanline < info.output_height) {
      JSAMPROW row = pixels.data() + std::size_t{info.output_scanline} * kWidth * 4;
      jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
  }
}
BENCHMARK(decoderAlone)->Unit(benchmark::kMillisecond)->UseRealTime();

/// From the file's name to the painted view.
void openToPaintedPixels(benchmark::State& state) {
  const std::string name = file().string();
  TestView view(kViewWidth, kViewHeight);
  Bitmap buffer = Bitmap::uninitialized(kViewWidth, kViewHeight);
  const Pixels pixels = buffer.writable();
  const PaintBuffer target{pixels.data, pixels.stride, kViewWidth, kViewHeight, ChannelOrder::bgra};
  for (auto _ : state) {
    view.Document().FromFile(name, 0, kNoUndo);
    view.paint(target, {0, 0, kViewWidth, kViewHeight});
  }
}
BENCHMARK(openToPaintedPixels)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace kestrel::engine
