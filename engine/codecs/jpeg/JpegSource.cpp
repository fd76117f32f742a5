#include "JpegSource.h"

#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::jpeg {
namespace {

/// A progressive file needs some ten scans; thousands of empty ones would take minutes to decode.
constexpr int kMostScans = 500;

}  // namespace

void Source::install(jpeg_decompress_struct* info, Bytes data) {
  info->src = &base;
  base.next_input_byte = data.data();
  base.bytes_in_buffer = data.size();
  base.init_source = [](j_decompress_ptr) {};
  base.fill_input_buffer = [](j_decompress_ptr self) -> boolean {
    auto* const source = reinterpret_cast<Source*>(self->src);
    source->exhaust(*self);
    const bool withinMarker = self->unread_marker != 0 && self->input_scan_number > 0;
    if (!withinMarker) source->feedEnd();
    return withinMarker ? FALSE : TRUE;
  };
  base.skip_input_data = [](j_decompress_ptr self, long count) {
    auto* const source = reinterpret_cast<Source*>(self->src);
    if (count <= 0) return;
    if (static_cast<std::size_t>(count) > source->base.bytes_in_buffer) {
      source->exhaust(*self);
      source->feedEnd();
      return;
    }
    source->base.next_input_byte += count;
    source->base.bytes_in_buffer -= static_cast<std::size_t>(count);
  };
  base.resync_to_restart = jpeg_resync_to_restart;
  base.term_source = [](j_decompress_ptr) {};
  exhausted = false;
  hadRow = false;
}

void Source::feedEnd() {
  static constexpr JOCTET kEnd[] = {0xFF, JPEG_EOI};
  base.next_input_byte = kEnd;
  base.bytes_in_buffer = sizeof kEnd;
}

void Source::exhaust(const jpeg_decompress_struct& info) {
  if (exhausted) return;
  exhausted = true;
  hadRow = info.input_iMCU_row > 0 || info.input_scan_number > 1 ||
           (info.total_iMCU_rows == 1 && info.input_scan_number == 1);
}

void ScanLimit::install(jpeg_decompress_struct* info) {
  base = {};
  base.progress_monitor = [](j_common_ptr self) {
    if (isCanceled() || reinterpret_cast<j_decompress_ptr>(self)->input_scan_number > kMostScans) {
      ERREXIT(self, JERR_BAD_PROGRESSION);
    }
  };
  info->progress = &base;
}

}  // namespace kestrel::engine::jpeg
