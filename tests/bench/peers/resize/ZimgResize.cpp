#include "ZimgResize.h"

#include <array>
#include <cstdlib>
#include <limits>
#include <stdexcept>

#include "Packing.h"

namespace kestrel::bench {
namespace {

using Memory = std::unique_ptr<std::byte, void (*)(void*)>;

constexpr std::size_t kAlignment = 64;

std::size_t aligned(std::size_t bytes) { return (bytes + kAlignment - 1) / kAlignment * kAlignment; }

Memory allocateAligned(std::size_t bytes) {
  Memory memory{static_cast<std::byte*>(std::aligned_alloc(kAlignment, aligned(bytes))), std::free};
  if (!memory) throw std::bad_alloc();
  return memory;
}

void require(zimg_error_code_e code) {
  if (code == ZIMG_ERROR_SUCCESS) return;
  std::array<char, 256> text{};
  zimg_get_last_error(text.data(), text.size());
  throw std::runtime_error(text.data());
}

/// zimg scales premultiplied colors without converting them.
zimg_image_format format(std::int32_t width, std::int32_t height, zimg_pixel_type_e sample) {
  zimg_image_format result;
  zimg_image_format_default(&result, ZIMG_API_VERSION);
  result.width = static_cast<unsigned>(width);
  result.height = static_cast<unsigned>(height);
  result.pixel_type = sample;
  result.depth = sample == ZIMG_PIXEL_BYTE ? 8 : 16;
  result.color_family = ZIMG_COLOR_RGB;
  result.matrix_coefficients = ZIMG_MATRIX_RGB;
  result.pixel_range = ZIMG_RANGE_FULL;
  result.alpha = ZIMG_ALPHA_PREMULTIPLIED;
  return result;
}

zimg_graph_builder_params parameters(engine::ResampleMethod method) {
  zimg_graph_builder_params result;
  zimg_graph_builder_params_default(&result, ZIMG_API_VERSION);
  result.cpu_type = ZIMG_CPU_AUTO_64B;
  switch (method) {
    case engine::ResampleMethod::Bilinear:
      result.resample_filter = ZIMG_RESIZE_BILINEAR;
      break;
    case engine::ResampleMethod::Bicubic:
      result.resample_filter = ZIMG_RESIZE_BICUBIC;
      result.filter_param_a = 0;
      result.filter_param_b = 0.5;
      break;
    default:
      result.resample_filter = ZIMG_RESIZE_LANCZOS;
      result.filter_param_a = 3;
      break;
  }
  return result;
}

}  // namespace

void ZimgResize::Planes::allocate(std::size_t rowBytes, unsigned lines, unsigned height) {
  stride = aligned(rowBytes);
  mask = zimg_select_buffer_mask(lines);
  memory = allocateAligned(4 * stride * (mask == ZIMG_BUFFER_MAX ? height : mask + 1));
}

std::byte* ZimgResize::Planes::row(int plane, unsigned y) const {
  // The four planes of a row are adjacent.
  return memory.get() + (4 * std::size_t{y & mask} + static_cast<std::size_t>(plane)) * stride;
}

ZimgResize::ZimgResize(engine::Bitmap source, std::int32_t width, std::int32_t height,
                       engine::ResampleMethod method, zimg_pixel_type_e sample)
    : source_(std::move(source)),
      result_(engine::Bitmap::uninitialized(width, height)),
      from_(source_.pixels()),
      to_(result_.writable()),
      sample_(sample),
      graph_(nullptr, zimg_filter_graph_free),
      scratch_(nullptr, std::free) {
  const zimg_image_format in = format(from_.width, from_.height, sample);
  const zimg_image_format out = format(width, height, sample);
  const zimg_graph_builder_params how = parameters(method);
  graph_.reset(zimg_filter_graph_build(&in, &out, &how));
  if (!graph_) require(zimg_get_last_error(nullptr, 0));

  const std::size_t bytes = sample == ZIMG_PIXEL_BYTE ? 1 : 2;
  unsigned lines = 0;
  require(zimg_filter_graph_get_input_buffering(graph_.get(), &lines));
  in_.allocate(bytes * in.width, lines, in.height);
  require(zimg_filter_graph_get_output_buffering(graph_.get(), &lines));
  out_.allocate(bytes * out.width, lines, out.height);
  std::size_t scratchBytes = 0;
  require(zimg_filter_graph_get_tmp_size(graph_.get(), &scratchBytes));
  scratch_ = allocateAligned(scratchBytes);
}

const engine::Bitmap& ZimgResize::run() {
  zimg_image_buffer_const in{ZIMG_API_VERSION, {}};
  zimg_image_buffer out{ZIMG_API_VERSION, {}};
  for (int i = 0; i < 4; ++i) {
    in.plane[i] = {in_.row(i, 0), static_cast<std::ptrdiff_t>(4 * in_.stride), in_.mask};
    out.plane[i] = {out_.row(i, 0), static_cast<std::ptrdiff_t>(4 * out_.stride), out_.mask};
  }
  require(zimg_filter_graph_process(graph_.get(), &in, &out, scratch_.get(), unpackRow, this, packRow, this));
  return result_;
}

int ZimgResize::unpackRow(void* self, unsigned y, unsigned left, unsigned right) {
  const auto& work = *static_cast<const ZimgResize*>(self);
  const std::uint8_t* const from = work.from_.row(static_cast<std::int32_t>(y)) + std::size_t{4} * left;
  const auto unpackTo = [&]<class Sample>(Sample) {
    Sample* planes[4];
    for (int i = 0; i < 4; ++i) planes[i] = reinterpret_cast<Sample*>(work.in_.row(i, y)) + left;
    unpack(from, right - left, planes);
  };
  work.sample_ == ZIMG_PIXEL_BYTE ? unpackTo(std::uint8_t{}) : unpackTo(std::uint16_t{});
  return 0;
}

int ZimgResize::packRow(void* self, unsigned y, unsigned left, unsigned right) {
  const auto& work = *static_cast<const ZimgResize*>(self);
  std::uint8_t* const to = work.to_.row(static_cast<std::int32_t>(y)) + std::size_t{4} * left;
  const auto packFrom = [&]<class Sample>(Sample) {
    const Sample* planes[4];
    for (int i = 0; i < 4; ++i) planes[i] = reinterpret_cast<const Sample*>(work.out_.row(i, y)) + left;
    pack(planes, right - left, to);
  };
  work.sample_ == ZIMG_PIXEL_BYTE ? packFrom(std::uint8_t{}) : packFrom(std::uint16_t{});
  return 0;
}

}  // namespace kestrel::bench
