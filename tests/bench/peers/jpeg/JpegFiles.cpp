#include "JpegFiles.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

// After <cstdio>, which it needs and does not include.
#include <jpeglib.h>

namespace kestrel::bench {
namespace {

/// Memory that the library may make larger.
struct Buffer {
  unsigned char* data = nullptr;
  unsigned long size = 0;

  Buffer() = default;
  explicit Buffer(std::size_t room) : data(static_cast<unsigned char*>(std::malloc(room))), size(room) {}
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  ~Buffer() { std::free(data); }
};

/// The library ends the program at an error, which is what a comparison wants.
void write(const engine::ConstPixels& pixels, int quality, Colors colors, Buffer& buffer) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  jpeg_mem_dest(&info, &buffer.data, &buffer.size);
  info.image_width = static_cast<JDIMENSION>(pixels.width);
  info.image_height = static_cast<JDIMENSION>(pixels.height);
  info.input_components = 4;
  info.in_color_space = JCS_EXT_RGBX;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, quality, TRUE);
  info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = colors == Colors::full ? 1 : 2;
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    JSAMPROW row = const_cast<JSAMPROW>(pixels.row(static_cast<std::int32_t>(info.next_scanline)));
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
}

}  // namespace

std::vector<std::uint8_t> jpegOf(const engine::ConstPixels& pixels, int quality, Colors colors) {
  Buffer buffer;
  write(pixels, quality, colors, buffer);
  return {buffer.data, buffer.data + buffer.size};
}

std::function<std::size_t()> keptJpegWriter(const engine::Bitmap& picture, int quality, Colors colors) {
  const auto room = picture.byteSize();
  const auto buffer = std::make_shared<Buffer>(room);
  return [=] {
    buffer->size = room;
    write(picture.pixels(), quality, colors, *buffer);
    return std::size_t{buffer->size};
  };
}

void readJpeg(const std::vector<std::uint8_t>& file, const engine::Pixels& pixels, unsigned divisor) {
  jpeg_decompress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, file.data(), file.size());
  jpeg_read_header(&info, TRUE);
  info.out_color_space = JCS_EXT_RGBA;
  info.scale_num = 1;
  info.scale_denom = divisor;
  jpeg_start_decompress(&info);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = pixels.row(static_cast<std::int32_t>(info.output_scanline));
    jpeg_read_scanlines(&info, &row, 1);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
}

}  // namespace kestrel::bench
