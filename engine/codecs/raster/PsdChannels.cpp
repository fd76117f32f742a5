#include "PsdChannels.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <memory>
#include <string>

#include "engine/codecs/common/DecodeErrors.h"
#include "engine/parallel/Cancellation.h"

namespace kestrel::engine::psd {
namespace {

enum Compression : std::uint16_t { kRaw = 0, kRunLengths = 1, kZip = 2, kZipWithPrediction = 3 };

/// Decodes a PackBits row; returns false if the data is too short.
bool unpackBits(Bytes data, std::vector<std::uint8_t>& row) {
  std::size_t filled = 0;
  std::size_t at = 0;
  while (filled < row.size() && at < data.size()) {
    const int code = static_cast<std::int8_t>(data[at++]);
    if (code == -128) continue;
    const std::size_t count = static_cast<std::size_t>(code >= 0 ? code : -code) + 1;
    const std::size_t fitting = std::min(count, row.size() - filled);
    if (code < 0) {
      if (at == data.size()) return false;
      std::fill_n(row.begin() + static_cast<std::ptrdiff_t>(filled), fitting, data[at++]);
    } else {
      if (data.size() - at < fitting) return false;
      std::copy_n(data.begin() + static_cast<std::ptrdiff_t>(at), fitting,
                  row.begin() + static_cast<std::ptrdiff_t>(filled));
      at += std::min(count, data.size() - at);
    }
    filled += fitting;
  }
  return filled == row.size();
}

std::size_t rowBytes(const ChannelForm& form) {
  return (static_cast<std::size_t>(form.width) * static_cast<std::size_t>(form.depth) + 7) / 8;
}

/// Converts a stored big-endian row to 8-bit samples. A set bit is black.
void toSamples(const std::vector<std::uint8_t>& row, const ChannelForm& form, std::uint8_t* samples) {
  const auto width = static_cast<std::size_t>(form.width);
  for (std::size_t x = 0; x < width; ++x) {
    switch (form.depth) {
      case 1:
        samples[x] = (row[x / 8] >> (7 - x % 8) & 1) != 0 ? 0 : 255;
        break;
      case 8:
        samples[x] = row[x];
        break;
      case 16:
        samples[x] = static_cast<std::uint8_t>(((row[2 * x] << 8 | row[2 * x + 1]) * 255 + 32767) / 65535);
        break;
      default: {
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 4; ++i) bits = bits << 8 | row[4 * x + i];
        const float value = std::bit_cast<float>(bits);
        samples[x] =
            value > 0 ? static_cast<std::uint8_t>(std::min(value, 1.0F) * 255 + 0.5F) : std::uint8_t{0};
      }
    }
  }
}

/// Compressed size of each row of each channel.
std::vector<std::size_t> readRowSizes(ByteReader& reader, const ChannelForm& form) {
  const std::size_t count = static_cast<std::size_t>(form.channels) * static_cast<std::size_t>(form.height);
  if (reader.remaining() / (form.large ? 4 : 2) < count) {
    refusePicture("The PSD file is damaged: it ends before the first row of the picture.");
  }
  std::vector<std::size_t> sizes(count);
  for (std::size_t& size : sizes) size = form.large ? reader.u32() : reader.u16();
  return sizes;
}

/// Undoes horizontal prediction: each sample is stored as the difference from the previous one.
/// Floating-point rows are stored as four byte planes, most significant first, with differences of bytes.
void undoPrediction(std::vector<std::uint8_t>& row, const ChannelForm& form) {
  const auto width = static_cast<std::size_t>(form.width);
  if (form.depth == 16) {
    std::uint32_t value = 0;
    for (std::size_t at = 0; at + 1 < row.size(); at += 2) {
      value += static_cast<std::uint32_t>(row[at] << 8 | row[at + 1]);
      row[at] = static_cast<std::uint8_t>(value >> 8);
      row[at + 1] = static_cast<std::uint8_t>(value);
    }
    return;
  }
  for (std::size_t at = 1; at < row.size(); ++at) row[at] = static_cast<std::uint8_t>(row[at] + row[at - 1]);
  if (form.depth != 32) return;
  const std::vector<std::uint8_t> planes = row;
  for (std::size_t x = 0; x < width; ++x) {
    for (std::size_t i = 0; i < 4; ++i) row[4 * x + i] = planes[i * width + x];
  }
}

/// Decoder for the rows of all channels in sequence.
class StoredRows {
 public:
  StoredRows(ByteReader& reader, const ChannelForm& form) : reader_(reader), form_(form) {
    compression_ = reader.u16();
    if (compression_ > kZipWithPrediction) {
      refusePicture("The PSD file cannot be read: compression " + std::to_string(compression_) +
                    " of its channels is not known.");
    }
    if (compression_ == kRunLengths) sizes_ = readRowSizes(reader, form);
    if (compression_ < kZip) return;
    inflate_ = std::make_unique<inflate_state>();
    isal_inflate_init(inflate_.get());
    inflate_->crc_flag = ISAL_ZLIB;
    const Bytes packed = reader.take(std::min<std::size_t>(reader.remaining(), UINT32_MAX));
    inflate_->next_in = const_cast<std::uint8_t*>(packed.data());
    inflate_->avail_in = static_cast<std::uint32_t>(packed.size());
  }

  /// Reads the next row; returns false on a decode error.
  bool next(std::vector<std::uint8_t>& row) {
    if (inflate_) return unzip(row);
    const std::size_t stored = compression_ == kRaw ? row.size() : sizes_[number_++];
    const Bytes packed = reader_.take(std::min(stored, reader_.remaining()));
    const bool whole = packed.size() == stored;
    if (compression_ == kRunLengths) return unpackBits(packed, row) && whole;
    if (whole) std::ranges::copy(packed, row.begin());
    return whole;
  }

  /// Whether decoding can continue after a bad row.
  bool canContinue() const { return !inflate_ && reader_.remaining() > 0; }

 private:
  bool unzip(std::vector<std::uint8_t>& row) {
    if (damaged_) return false;
    inflate_->next_out = row.data();
    inflate_->avail_out = static_cast<std::uint32_t>(row.size());
    damaged_ = isal_inflate(inflate_.get()) != ISAL_DECOMP_OK || inflate_->avail_out > 0;
    if (!damaged_ && compression_ == kZipWithPrediction) undoPrediction(row, form_);
    return !damaged_;
  }

  ByteReader& reader_;
  ChannelForm form_;
  std::uint16_t compression_ = kRaw;
  std::vector<std::size_t> sizes_;
  std::size_t number_ = 0;
  std::unique_ptr<inflate_state> inflate_;
  bool damaged_ = false;
};

}  // namespace

Channels readChannels(ByteReader& reader, const ChannelForm& form, std::int32_t wanted) {
  StoredRows stored(reader, form);
  Channels result;
  result.rows = form.height;
  std::vector<std::uint8_t> row(rowBytes(form));
  for (std::int32_t channel = 0; channel < wanted; ++channel) {
    std::vector<std::uint8_t>& plane = result.planes.emplace_back(static_cast<std::size_t>(form.width) *
                                                                  static_cast<std::size_t>(form.height));
    for (std::int32_t y = 0; y < form.height; ++y) {
      checkCanceled();
      if (!stored.next(row)) {
        result.rows = std::min(result.rows, y);
        if (!stored.canContinue()) break;
        continue;
      }
      toSamples(row, form, plane.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(form.width));
    }
  }
  return result;
}

std::vector<std::uint8_t> packBits(Bytes row) {
  std::vector<std::uint8_t> packed;
  std::size_t at = 0;
  const auto runAt = [&](std::size_t start) {
    std::size_t length = 1;
    while (length < 128 && start + length < row.size() && row[start + length] == row[start]) ++length;
    return length;
  };
  while (at < row.size()) {
    const std::size_t run = runAt(at);
    if (run >= 2) {
      packed.push_back(static_cast<std::uint8_t>(257 - run));
      packed.push_back(row[at]);
      at += run;
      continue;
    }
    std::size_t count = 1;
    while (count < 128 && at + count < row.size() && runAt(at + count) < 3) ++count;
    packed.push_back(static_cast<std::uint8_t>(count - 1));
    packed.insert(packed.end(), row.begin() + static_cast<std::ptrdiff_t>(at),
                  row.begin() + static_cast<std::ptrdiff_t>(at + count));
    at += count;
  }
  return packed;
}

}  // namespace kestrel::engine::psd
