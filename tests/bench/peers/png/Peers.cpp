#include "Peers.h"

#include <png.h>
#include <spng.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace kestrel::bench {
namespace {

[[noreturn]] void fail(png_structp, png_const_charp message) { throw std::runtime_error(message); }
void ignore(png_structp, png_const_charp) {}

struct Rest {
  const std::uint8_t* at;
  std::size_t size;
};

void check(int error) {
  if (error != 0) throw std::runtime_error(spng_strerror(error));
}

using SpngContext = std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)>;

}  // namespace

Bytes writeWithLibpng(const Bytes& rgba, int width, int height, bool alpha, const LibpngSettings& settings) {
  Bytes file;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
  png_infop info = png_create_info_struct(png);
  const auto append = [](png_structp p, png_bytep data, std::size_t count) {
    auto& target = *static_cast<Bytes*>(png_get_io_ptr(p));
    target.insert(target.end(), data, data + count);
  };
  png_set_write_fn(png, &file, append, nullptr);
  png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
               alpha ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (settings.level >= 0) png_set_compression_level(png, settings.level);
  if (settings.filters >= 0) png_set_filter(png, PNG_FILTER_TYPE_BASE, settings.filters);
  if (settings.strategy >= 0) png_set_compression_strategy(png, settings.strategy);
  png_write_info(png, info);
  if (!alpha) png_set_filler(png, 0, PNG_FILLER_AFTER);
  const std::size_t stride = 4 * static_cast<std::size_t>(width);
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) png_write_row(png, &rgba[y * stride]);
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return file;
}

void readWithLibpng(const Bytes& file, Bytes& rgba) {
  Rest rest{file.data(), file.size()};
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &rest, [](png_structp p, png_bytep target, std::size_t count) {
    auto& from = *static_cast<Rest*>(png_get_io_ptr(p));
    if (count > from.size) png_error(p, "The file ends too early.");
    std::memcpy(target, from.at, count);
    from.at += count;
    from.size -= count;
  });
  png_read_info(png, info);
  png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
  png_read_update_info(png, info);
  const std::size_t stride = png_get_rowbytes(png, info), height = png_get_image_height(png, info);
  rgba.resize(stride * height);
  for (std::size_t y = 0; y < height; ++y) png_read_row(png, &rgba[y * stride], nullptr);
  png_read_end(png, info);
  png_destroy_read_struct(&png, &info, nullptr);
}

Bytes writeWithSpng(const Bytes& pixels, int width, int height, bool alpha, int level) {
  const SpngContext context(spng_ctx_new(SPNG_CTX_ENCODER), spng_ctx_free);
  check(spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1));
  check(spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, level));
  spng_ihdr header{};
  header.width = static_cast<std::uint32_t>(width);
  header.height = static_cast<std::uint32_t>(height);
  header.bit_depth = 8;
  header.color_type = alpha ? SPNG_COLOR_TYPE_TRUECOLOR_ALPHA : SPNG_COLOR_TYPE_TRUECOLOR;
  check(spng_set_ihdr(context.get(), &header));
  check(spng_encode_image(context.get(), pixels.data(), pixels.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE));
  std::size_t size = 0;
  int error = 0;
  const std::unique_ptr<void, decltype(&std::free)> file(spng_get_png_buffer(context.get(), &size, &error),
                                                         std::free);
  check(error);
  const auto* const begin = static_cast<const std::uint8_t*>(file.get());
  return {begin, begin + size};
}

void readWithSpng(const Bytes& file, bool checked, Bytes& rgba) {
  const SpngContext context(spng_ctx_new(checked ? 0 : SPNG_CTX_IGNORE_ADLER32), spng_ctx_free);
  if (!checked) check(spng_set_crc_action(context.get(), SPNG_CRC_USE, SPNG_CRC_USE));
  check(spng_set_png_buffer(context.get(), file.data(), file.size()));
  std::size_t size = 0;
  check(spng_decoded_image_size(context.get(), SPNG_FMT_RGBA8, &size));
  rgba.resize(size);
  check(spng_decode_image(context.get(), rgba.data(), size, SPNG_FMT_RGBA8, 0));
}

Bytes pixelsOf(const engine::Bitmap& bitmap, int samples) {
  Bytes result;
  result.reserve(static_cast<std::size_t>(bitmap.width()) * static_cast<std::size_t>(bitmap.height()) *
                 static_cast<std::size_t>(samples));
  for (std::int32_t y = 0; y < bitmap.height(); ++y) {
    const std::uint8_t* pixel = bitmap.pixels().row(y);
    for (std::int32_t x = 0; x < bitmap.width(); ++x, pixel += 4)
      result.insert(result.end(), pixel, pixel + samples);
  }
  return result;
}

std::string megabytes(std::size_t bytes) {
  std::array<char, 30> text{};
  std::snprintf(text.data(), text.size(), "%.2f MB", static_cast<double>(bytes) / 1e6);
  return text.data();
}

std::string milliseconds(std::chrono::steady_clock::duration time) {
  return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()) + " ms";
}

}  // namespace kestrel::bench
