#include "LibPngReader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/RuntimeError.h"
#include "engine/codecs/common/DecodeErrors.h"
#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::png {
namespace {

/// Bytes of packed pixels that libpng reads at a time. It drops a piece that is incomplete, so the pieces are
/// small towards the end of the file: a truncated file then yields every row that it holds.
constexpr std::size_t kLargePiece = 65536;
constexpr std::size_t kSmallPiece = 32;
constexpr std::size_t kNearEnd = 2 * kLargePiece;
/// Largest allocation granted to libpng, unless the file is larger: enough for the longest rows. Without a
/// limit libpng would allocate as much as a chunk claims to hold.
constexpr std::size_t kLargestRequest = std::size_t{16} << 20;

}  // namespace

LibPngReader::LibPngReader(Bytes data)
    : rest_(data), largestRequest_(std::max(kLargestRequest, 2 * data.size())) {
  decoder_.png = png_create_read_struct_2(
      PNG_LIBPNG_VER_STRING, &errors_, Errors::raise, Errors::ignore, &largestRequest_,
      [](png_structp png, png_alloc_size_t size) {
        const auto most = *static_cast<const std::size_t*>(png_get_mem_ptr(png));
        return size <= most ? std::malloc(size) : nullptr;
      },
      nullptr);
  if (png() != nullptr) decoder_.info = png_create_info_struct(png());
  if (info() == nullptr) throw RuntimeError(err::kOutOfMemory, "There is not enough memory for the picture.");
  png_set_read_fn(png(), this, [](png_structp png, png_bytep target, std::size_t count) {
    auto* const self = static_cast<LibPngReader*>(png_get_io_ptr(png));
    if (count > self->rest_.size()) png_error(png, "the file ends too early");
    std::memcpy(target, self->rest_.data(), count);
    self->rest_ = self->rest_.subspan(count);
  });
}

bool LibPngReader::readHeader() {
  return errors_.guarded([this] {
    png_set_user_limits(png(), Bitmap::kMaxSide, Bitmap::kMaxSide);
    png_read_info(png(), info());
  });
}

void LibPngReader::fail() const {
  refusePicture("The PNG file is damaged: " + std::string(errors_.text.data()) + ".");
}

std::int32_t LibPngReader::readRows(const Pixels& pixels) {
  rows_ = 0;
  const bool whole = errors_.guarded([this, &pixels] {
    png_set_expand(png());
    png_set_scale_16(png());
    png_set_gray_to_rgb(png());
    png_set_filler(png(), 0xFF, PNG_FILLER_AFTER);
    const int passes = png_set_interlace_handling(png());
    png_read_update_info(png(), info());
    for (int pass = 0; pass < passes; ++pass) {
      for (std::int32_t y = 0; y < pixels.height; ++y) {
        checkCanceled();
        png_set_compression_buffer_size(png(), rest_.size() > kNearEnd ? kLargePiece : kSmallPiece);
        png_read_row(png(), pixels.row(y), nullptr);
        rows_ = std::max(rows_, y + 1);
      }
    }
  });
  damaged_ = !whole;
  if (rows_ == 0) fail();
  return rows_;
}

void LibPngReader::readEnd() {
  if (!damaged_) errors_.guarded([this] { png_read_end(png(), info()); });
}

}  // namespace kestrel::engine::png
