#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Jpeg.h"
#include "JpegErrors.h"
#include "JpegLib.h"
#include "base/RuntimeError.h"
#include "engine/codecs/common/Flatten.h"
#include "engine/codecs/metadata/JpegMarkers.h"
#include "engine/pixels/Opaque.h"

namespace kestrel::engine::jpeg {
namespace {

/// Color is stored at full resolution from this quality up.
constexpr std::int32_t kFullColorQuality = 90;

/// Output of libjpeg: a growing file in memory.
struct Target {
  jpeg_destination_mgr base;
  std::array<JOCTET, 16384> piece;
  std::vector<std::uint8_t> bytes;

  void install(jpeg_compress_struct* info) {
    info->dest = &base;
    base.init_destination = [](j_compress_ptr self) { reinterpret_cast<Target*>(self->dest)->startPiece(); };
    base.empty_output_buffer = [](j_compress_ptr self) -> boolean {
      auto* const target = reinterpret_cast<Target*>(self->dest);
      if (!target->append(target->piece.size())) ERREXIT1(self, JERR_OUT_OF_MEMORY, 0);
      target->startPiece();
      return TRUE;
    };
    base.term_destination = [](j_compress_ptr self) {
      auto* const target = reinterpret_cast<Target*>(self->dest);
      if (!target->append(target->piece.size() - target->base.free_in_buffer)) {
        ERREXIT1(self, JERR_OUT_OF_MEMORY, 0);
      }
    };
  }

 private:
  void startPiece() {
    base.next_output_byte = piece.data();
    base.free_in_buffer = piece.size();
  }

  /// Returns false instead of throwing: libjpeg is C.
  bool append(std::size_t count) noexcept {
    try {
      bytes.insert(bytes.end(), piece.data(), piece.data() + count);
      return true;
    } catch (const std::bad_alloc&) {
      return false;
    }
  }
};

/// libjpeg's encoder into memory.
class Writer {
 public:
  Writer() {
    errors_.install(reinterpret_cast<j_common_ptr>(&info_));
    guarded([this] { jpeg_create_compress(&info_); });
    target_.install(&info_);
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer() { jpeg_destroy_compress(&info_); }

  void start(std::int32_t width, std::int32_t height, const Metadata& metadata, std::int32_t quality) {
    // About the size of a photograph.
    target_.bytes.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) / 4);
    guarded([&] {
      info_.image_width = static_cast<JDIMENSION>(width);
      info_.image_height = static_cast<JDIMENSION>(height);
      info_.input_components = 4;
      info_.in_color_space = JCS_EXT_RGBX;
      jpeg_set_defaults(&info_);
      jpeg_set_quality(&info_, quality, TRUE);
      if (quality >= kFullColorQuality)
        info_.comp_info[0].h_samp_factor = info_.comp_info[0].v_samp_factor = 1;
      const double x = metadata.resolutionX, y = metadata.resolutionY;
      if (x >= 1 && y >= 1 && x <= 65535 && y <= 65535) {
        info_.density_unit = 1;
        info_.X_density = static_cast<UINT16>(x + 0.5);
        info_.Y_density = static_cast<UINT16>(y + 0.5);
      }
      jpeg_start_compress(&info_, TRUE);
    });
  }

  void marker(const Marker& marker) {
    guarded([&] {
      jpeg_write_marker(&info_, JPEG_APP0 + marker.number, marker.data.data(),
                        static_cast<unsigned>(marker.data.size()));
    });
  }

  /// A row of 4 bytes per pixel; the fourth is ignored.
  void row(const std::uint8_t* data) {
    guarded([&] {
      JSAMPROW row = const_cast<JSAMPROW>(data);
      jpeg_write_scanlines(&info_, &row, 1);
    });
  }

  std::vector<std::uint8_t> finish() {
    guarded([this] { jpeg_finish_compress(&info_); });
    return std::move(target_.bytes);
  }

 private:
  template <typename Step>
  void guarded(const Step& step) {
    if (!errors_.guarded(step)) {
      throw RuntimeError(err::kInvalidCall,
                         "The picture cannot be saved as JPEG: " + std::string(errors_.text.data()) + ".");
    }
  }

  jpeg_compress_struct info_{};
  Errors errors_{};
  Target target_{};
};

}  // namespace

std::vector<std::uint8_t> encode(const Bitmap& bitmap, const Metadata& metadata,
                                 const EncodeOptions& options) {
  const ConstPixels pixels = bitmap.pixels();
  Writer writer;
  writer.start(pixels.width, pixels.height, metadata, options.jpegQuality);
  for (const Marker& marker : writeMarkers(metadata)) writer.marker(marker);

  std::vector<std::uint8_t> flat(static_cast<std::size_t>(pixels.width) * 4);
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    const std::uint8_t* const row = pixels.row(y);
    const bool opaque = isOpaqueRow(row, pixels.width);
    if (!opaque) flattenRowOnWhite(row, flat.data(), pixels.width, 4);
    writer.row(opaque ? row : flat.data());
  }
  return writer.finish();
}

}  // namespace kestrel::engine::jpeg
