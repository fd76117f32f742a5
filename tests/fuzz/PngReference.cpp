#include "PngReference.h"

#include <png.h>

#include <cstddef>
#include <cstring>

namespace kestrel::fuzz {
namespace {

struct Failed {};

[[noreturn]] void fail(png_structp, png_const_charp) { throw Failed(); }
void ignore(png_structp, png_const_charp) {}

void read(png_structp png, png_bytep target, std::size_t count) {
  auto& rest = *static_cast<engine::Bytes*>(png_get_io_ptr(png));
  if (count > rest.size()) throw Failed();
  std::memcpy(target, rest.data(), count);
  rest = rest.subspan(count);
}

/// Decodes all passes; throws Failed.
std::vector<std::uint8_t> readRows(png_structp png, png_infop info) {
  constexpr std::size_t kMostPixels = std::size_t{4} << 20;
  png_read_info(png, info);
  const std::size_t width = png_get_image_width(png, info), height = png_get_image_height(png, info);
  if (width * height > kMostPixels) throw Failed();
  png_set_expand(png);
  png_set_scale_16(png);
  png_set_gray_to_rgb(png);
  png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
  const int passes = png_set_interlace_handling(png);
  png_read_update_info(png, info);
  const std::size_t stride = 4 * width;
  if (png_get_rowbytes(png, info) != stride) throw Failed();
  std::vector<std::uint8_t> rgba(stride * height);
  for (int pass = 0; pass < passes; ++pass) {
    for (std::size_t from = 0; from < rgba.size(); from += stride) png_read_row(png, &rgba[from], nullptr);
  }
  return rgba;
}

}  // namespace

std::optional<std::vector<std::uint8_t>> decodeByLibpng(engine::Bytes file) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &file, read);
  std::optional<std::vector<std::uint8_t>> rgba;
  try {
    rgba = readRows(png, info);
  } catch (const Failed&) {
    rgba.reset();
  }
  png_destroy_read_struct(&png, &info, nullptr);
  return rgba;
}

}  // namespace kestrel::fuzz
