#pragma once

#include <png.h>
#include <zlib.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "../TestPictures.h"

/// PNG files built chunk by chunk, and a reference decoder that uses libpng alone.
namespace kestrel::engine::test {

using File = std::vector<std::uint8_t>;

inline File chunk(const std::string& name, const File& content) {
  Builder named;
  named.text(name);
  named.bytes.insert(named.bytes.end(), content.begin(), content.end());
  const auto sum =
      static_cast<std::uint32_t>(crc32(0, named.bytes.data(), static_cast<unsigned>(named.bytes.size())));
  Builder whole;
  whole.be32(static_cast<std::uint32_t>(content.size()));
  whole.bytes.insert(whole.bytes.end(), named.bytes.begin(), named.bytes.end());
  return whole.be32(sum).bytes;
}

inline File joined(const std::vector<File>& parts) {
  File all;
  for (const File& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

/// A zlib stream.
inline File packed(const File& data, int level = 6) {
  File result(compressBound(data.size()));
  uLongf size = result.size();
  compress2(result.data(), &size, data.data(), data.size(), level);
  result.resize(size);
  return result;
}

struct Layout {
  int depth = 8;
  int type = PNG_COLOR_TYPE_RGBA;

  int samples() const {
    return type == PNG_COLOR_TYPE_RGBA         ? 4
           : type == PNG_COLOR_TYPE_RGB        ? 3
           : type == PNG_COLOR_TYPE_GRAY_ALPHA ? 2
                                               : 1;
  }
  std::size_t rowBytes(int width) const {
    return static_cast<std::size_t>((width * samples() * depth + 7) / 8);
  }
};

/// Signature, header, and for indexed pixels a palette of 200 colors, some of them transparent.
inline File pngStart(int width, int height, const Layout& layout) {
  Builder header;
  header.be32(static_cast<std::uint32_t>(width)).be32(static_cast<std::uint32_t>(height));
  header.u8({layout.depth, layout.type, 0, 0, 0});
  File start =
      joined({Builder().u8({0x89}).text("PNG\r\n").u8({0x1A, '\n'}).bytes, chunk("IHDR", header.bytes)});
  if (layout.type == PNG_COLOR_TYPE_PALETTE) {
    const int colors = std::min(200, 1 << layout.depth);
    Builder palette, alpha;
    for (int i = 0; i < colors; ++i) palette.u8({i, 255 - i, i * 7 % 256});
    for (int i = 0; i < colors / 2; ++i) alpha.u8({i * 3 % 256});
    start = joined({start, chunk("PLTE", palette.bytes), chunk("tRNS", alpha.bytes)});
  }
  return start;
}

inline File pngEnd() { return chunk("IEND", {}); }

inline File pngFile(int width, int height, const Layout& layout, const File& rows) {
  return joined({pngStart(width, height, layout), chunk("IDAT", packed(rows)), pngEnd()});
}

/// Rows of noise with filter type `filter`, or with each type in turn if it is none of the five. Any bytes
/// decode to some picture.
inline File filteredNoise(int width, int height, const Layout& layout, int filter) {
  std::mt19937 random(static_cast<unsigned>(width * 31 + height));
  File rows;
  for (int y = 0; y < height; ++y) {
    rows.push_back(static_cast<std::uint8_t>(filter < 5 ? filter : (y + 4) % 5));
    for (std::size_t i = 0; i < layout.rowBytes(width); ++i)
      rows.push_back(static_cast<std::uint8_t>(random()));
  }
  return rows;
}

/// Decodes with libpng to RGBA rows without padding; empty if libpng reports an error.
inline std::optional<File> readByLibpng(const File& file) {
  struct Failed {};
  File rest = file, rgba;
  std::size_t at = 0;
  std::pair<const File*, std::size_t*> source{&rest, &at};
  png_structp png = png_create_read_struct(
      PNG_LIBPNG_VER_STRING, nullptr, [](png_structp, png_const_charp) { throw Failed(); },
      [](png_structp, png_const_charp) {});
  png_infop info = png_create_info_struct(png);
  bool whole = true;
  try {
    png_set_read_fn(png, &source, [](png_structp p, png_bytep target, std::size_t count) {
      auto& [bytes, position] = *static_cast<decltype(source)*>(png_get_io_ptr(p));
      if (count > bytes->size() - *position) throw Failed();
      std::memcpy(target, bytes->data() + *position, count);
      *position += count;
    });
    png_read_info(png, info);
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
    png_read_update_info(png, info);
    const std::size_t stride = png_get_rowbytes(png, info);
    rgba.resize(stride * png_get_image_height(png, info));
    for (std::size_t from = 0; from < rgba.size(); from += stride) png_read_row(png, &rgba[from], nullptr);
    png_read_end(png, info);
  } catch (const Failed&) {
    whole = false;
  }
  png_destroy_read_struct(&png, &info, nullptr);
  return whole ? std::optional(rgba) : std::nullopt;
}

inline File rgbaOf(const Bitmap& bitmap) {
  File rgba;
  const std::ptrdiff_t bytes = std::ptrdiff_t{4} * bitmap.width();
  for (int y = 0; y < bitmap.height(); ++y)
    rgba.insert(rgba.end(), bitmap.pixels().row(y), bitmap.pixels().row(y) + bytes);
  return rgba;
}

}  // namespace kestrel::engine::test
