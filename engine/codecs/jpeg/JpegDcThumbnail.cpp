#include "JpegDcThumbnail.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

#include "JpegLib.h"
#include "engine/codecs/common/Decoded.h"
#include "engine/parallel/Cancellation.h"

// Huffman coding as in ITU-T T.81, annex F.2.2.

namespace kestrel::engine::jpeg {
namespace {

/// AC coefficients of a block.
constexpr int kAcCoefficients = 63;

/// Bit reader over a scan, most significant bit first. Reads zeros beyond the end.
class BitReader {
 public:
  explicit BitReader(Bytes data) : next_(data.data()), end_(data.data() + data.size()) {}

  /// Refills to at least 32 bits.
  void refill() {
    if (ready_ > 32) return;
    if (end_ - next_ >= 4) {
      std::uint32_t four;
      std::memcpy(&four, next_, sizeof four);
      // 0xFF begins a marker or is followed by a stuffed zero. Fast path: no byte of the complement is zero.
      const std::uint32_t inverse = ~four;
      if (((inverse - 0x01010101U) & ~inverse & 0x80808080U) == 0) {
        const std::uint64_t value = std::uint64_t{next_[0]} << 24 | std::uint64_t{next_[1]} << 16 |
                                    std::uint64_t{next_[2]} << 8 | next_[3];
        bits_ |= value << (32 - ready_);
        ready_ += 32;
        next_ += 4;
        return;
      }
    }
    while (ready_ <= 56) appendByte();
  }

  /// The next `count` bits, 1 to 32, which must be buffered.
  std::uint32_t peek(int count) const { return static_cast<std::uint32_t>(bits_ >> (64 - count)); }

  void drop(int count) {
    bits_ <<= count;
    ready_ -= count;
  }

  /// Whether bits beyond the end of the scan were consumed.
  bool overrun() const { return ready_ < added_; }

  /// Skips the padding bits and the marker that must follow; returns false if another follows, or after an
  /// overrun.
  bool skipMarker(std::uint8_t marker) {
    const int left = ready_ - added_;
    if (left < 0 || left >= 8) return false;
    while (end_ - next_ >= 3 && next_[0] == 0xFF && next_[1] == 0xFF) ++next_;
    if (end_ - next_ < 2 || next_[0] != 0xFF || next_[1] != marker) return false;
    next_ += 2;
    bits_ = 0;
    ready_ = added_ = 0;
    return true;
  }

 private:
  void appendByte() {
    std::uint64_t byte = 0;
    if (next_ < end_ && *next_ != 0xFF) {
      byte = *next_++;
    } else if (end_ - next_ >= 2 && next_[1] == 0) {
      byte = 0xFF;
      next_ += 2;
    } else {
      added_ += 8;
    }
    bits_ |= byte << (56 - ready_);
    ready_ += 8;
  }

  const std::uint8_t* next_;
  const std::uint8_t* end_;
  std::uint64_t bits_ = 0;
  int ready_ = 0;  ///< buffered bits, at the upper end of `bits_`
  int added_ = 0;  ///< zero bits appended beyond the end of the scan
};

/// Huffman code with a lookup table over the next 12 bits.
class HuffmanCode {
 public:
  /// Result of one lookup: the codes completely contained in the bits.
  struct Entry {
    std::uint8_t bits = 0;       ///< total bits of these codes and their values
    std::uint8_t skips = 0;      ///< coefficients they skip
    std::uint8_t endsBlock = 0;  ///< 1 if the last of these codes is EOB
    std::uint8_t symbol = 0;     ///< symbol of the first code
    std::uint8_t length = 0;     ///< length of the first code, 0 if longer than the lookup
  };

  /// Returns false if the table is not a valid code.
  bool build(const JHUFF_TBL* table) {
    if (table == nullptr) return false;
    std::uint32_t code = 0;
    std::size_t count = 0;
    for (int length = 1; length <= 16; ++length) {
      const auto at = static_cast<std::size_t>(length);
      first_[at] = static_cast<std::int32_t>(count) - static_cast<std::int32_t>(code);
      for (int i = 0; i < table->bits[length]; ++i, ++code, ++count) {
        if (count >= symbols_.size() || code >> length != 0) return false;
        symbols_[count] = table->huffval[count];
        if (length <= kLookupBits) {
          const Entry single{0, 0, 0, symbols_[count], static_cast<std::uint8_t>(length)};
          std::fill_n(entries_.begin() + (code << (kLookupBits - length)), 1U << (kLookupBits - length),
                      single);
        }
      }
      end_[at] = code;
      code <<= 1;
    }
    extendEntries();
    return true;
  }

  const Entry& lookUp(const BitReader& reader) const { return entries_[reader.peek(kLookupBits)]; }

  /// Decodes the next symbol; nothing if the code is undefined.
  std::optional<int> symbol(BitReader& reader) const {
    const Entry& seen = lookUp(reader);
    if (seen.length > 0) {
      reader.drop(seen.length);
      return seen.symbol;
    }
    for (int length = kLookupBits + 1; length <= 16; ++length) {
      const auto at = static_cast<std::size_t>(length);
      const std::uint32_t code = reader.peek(length);
      if (code < end_[at]) {
        reader.drop(length);
        return symbols_[static_cast<std::size_t>(static_cast<std::int32_t>(code) + first_[at])];
      }
    }
    return std::nullopt;
  }

 private:
  static constexpr int kLookupBits = 12;

  /// Extends each entry by the following codes that fit into the lookup bits.
  void extendEntries() {
    for (std::uint32_t seen = 0; seen < entries_.size(); ++seen) {
      Entry& entry = entries_[seen];
      int bits = 0, skips = 0;
      while (entry.endsBlock == 0) {
        const Entry& next = entries_[(seen << bits) % entries_.size()];
        const int run = next.symbol >> 4, size = next.symbol & 15;
        const bool fits = next.length > 0 && bits + next.length <= kLookupBits;
        // The value bits of the first code may extend beyond the lookup: only their number matters.
        if (!fits || (bits > 0 && bits + next.length + size > kLookupBits)) break;
        bits += next.length + size;
        if (size == 0 && run != 15) {
          entry.endsBlock = 1;
        } else if (skips + run + 1 <= kAcCoefficients) {
          skips += run + 1;
        } else {
          bits -= next.length + size;
          break;
        }
        if (bits >= kLookupBits) break;
      }
      entry.bits = static_cast<std::uint8_t>(bits);
      entry.skips = static_cast<std::uint8_t>(skips);
    }
  }

  std::array<Entry, 1U << kLookupBits> entries_{};
  std::array<std::uint8_t, 256> symbols_{};
  std::array<std::uint32_t, 17> end_{};   ///< by length: the first value that is not a code
  std::array<std::int32_t, 17> first_{};  ///< by length: offset from a code to its symbol's index
};

/// Reads the value of `size` bits after a code (RECEIVE and EXTEND of F.2.2.1). One refill before the code
/// suffices for both.
int readValue(BitReader& reader, int size) {
  if (size == 0) return 0;
  const auto value = static_cast<int>(reader.peek(size));
  reader.drop(size);
  return value < 1 << (size - 1) ? value - (1 << size) + 1 : value;
}

/// Skips the AC coefficients of a block; returns false on a decode error.
bool skipAcCoefficients(BitReader& reader, const HuffmanCode& code) {
  int skipped = 0;
  while (skipped < kAcCoefficients) {
    reader.refill();
    const HuffmanCode::Entry& entry = code.lookUp(reader);
    // A block with all 63 AC coefficients has no EOB: an apparent EOB belongs to the next block.
    if (entry.bits > 0 && skipped + entry.skips + entry.endsBlock <= kAcCoefficients) {
      reader.drop(entry.bits);
      skipped += entry.skips;
      if (entry.endsBlock != 0) break;
      continue;
    }
    const std::optional<int> symbol = code.symbol(reader);
    if (!symbol) return false;
    const int run = *symbol >> 4, size = *symbol & 15;
    if (size == 0 && run != 15) break;
    readValue(reader, size);
    skipped += run + 1;
  }
  return skipped <= kAcCoefficients;
}

/// A color component: its coding and the DC levels of its blocks.
struct Component {
  int across = 1, down = 1;  ///< blocks per MCU
  std::int32_t step = 1;     ///< quantization step of the DC coefficient, in 1/8 level
  const HuffmanCode* dcCode = nullptr;
  const HuffmanCode* acCode = nullptr;
  std::uint32_t predictor = 0;  ///< DC predictor; unsigned, because a malicious file may overflow it
  std::size_t blocksAcross = 0;
  std::vector<std::uint8_t> dcLevels;

  /// Decodes a block; returns false on a decode error.
  bool read(BitReader& reader, std::size_t column, std::size_t row) {
    reader.refill();
    const std::optional<int> size = dcCode->symbol(reader);
    if (!size || *size > 15) return false;
    predictor += static_cast<std::uint32_t>(readValue(reader, *size));
    const std::int64_t level = std::int64_t{static_cast<std::int16_t>(predictor)} * step;
    dcLevels[row * blocksAcross + column] =
        static_cast<std::uint8_t>(std::clamp<std::int64_t>(((level + 4) >> 3) + 128, 0, 255));
    return skipAcCoefficients(reader, *acCode);
  }
};

struct Scan {
  std::array<HuffmanCode, NUM_HUFF_TBLS> dcCodes, acCodes;
  std::vector<Component> components;
  std::size_t mcusAcross = 0, mcusDown = 0;
};

bool isSupported(const jpeg_decompress_struct& info) {
  const bool colors = (info.jpeg_color_space == JCS_YCbCr && info.num_components == 3) ||
                      (info.jpeg_color_space == JCS_GRAYSCALE && info.num_components == 1);
  const jpeg_component_info& first = info.comp_info[0];
  const bool lumaIsFinest =
      first.h_samp_factor == info.max_h_samp_factor && first.v_samp_factor == info.max_v_samp_factor;
  return colors && lumaIsFinest && !info.progressive_mode && !info.arith_code && info.data_precision == 8 &&
         info.comps_in_scan == info.num_components && info.Ss == 0 && info.Se == 63 && info.Ah == 0 &&
         info.Al == 0;
}

/// Returns false if a table is missing or invalid.
bool prepare(const jpeg_decompress_struct& info, Scan& scan) {
  std::array<bool, NUM_HUFF_TBLS> dcBuilt{}, acBuilt{};
  const auto mcuSide = [](int blocks) { return static_cast<std::size_t>(blocks) * DCTSIZE; };
  const bool single = info.num_components == 1;
  const int across = single ? 1 : info.max_h_samp_factor, down = single ? 1 : info.max_v_samp_factor;
  scan.mcusAcross = (info.image_width + mcuSide(across) - 1) / mcuSide(across);
  scan.mcusDown = (info.image_height + mcuSide(down) - 1) / mcuSide(down);
  for (int i = 0; i < info.num_components; ++i) {
    const jpeg_component_info& from = *info.cur_comp_info[i];
    const auto dcCode = static_cast<std::size_t>(from.dc_tbl_no);
    const auto acCode = static_cast<std::size_t>(from.ac_tbl_no);
    const auto quantTable = static_cast<std::size_t>(from.quant_tbl_no);
    if (dcCode >= NUM_HUFF_TBLS || acCode >= NUM_HUFF_TBLS || quantTable >= NUM_QUANT_TBLS ||
        info.quant_tbl_ptrs[quantTable] == nullptr || from.component_index != i) {
      return false;
    }
    if (!dcBuilt[dcCode] && !scan.dcCodes[dcCode].build(info.dc_huff_tbl_ptrs[dcCode])) return false;
    if (!acBuilt[acCode] && !scan.acCodes[acCode].build(info.ac_huff_tbl_ptrs[acCode])) return false;
    dcBuilt[dcCode] = acBuilt[acCode] = true;

    Component component;
    component.across = single ? 1 : from.h_samp_factor;
    component.down = single ? 1 : from.v_samp_factor;
    component.step = info.quant_tbl_ptrs[quantTable]->quantval[0];
    component.dcCode = &scan.dcCodes[dcCode];
    component.acCode = &scan.acCodes[acCode];
    component.blocksAcross = scan.mcusAcross * static_cast<std::size_t>(component.across);
    component.dcLevels.resize(component.blocksAcross * scan.mcusDown *
                              static_cast<std::size_t>(component.down));
    scan.components.push_back(std::move(component));
  }
  return true;
}

/// Decodes one MCU; returns false on a decode error.
bool readMcu(BitReader& reader, Scan& scan, std::size_t column, std::size_t row) {
  for (Component& component : scan.components) {
    const auto across = static_cast<std::size_t>(component.across);
    const auto down = static_cast<std::size_t>(component.down);
    for (std::size_t y = 0; y < down; ++y) {
      for (std::size_t x = 0; x < across; ++x) {
        if (!component.read(reader, column * across + x, row * down + y)) return false;
      }
    }
  }
  return true;
}

bool readScan(const jpeg_decompress_struct& info, Scan& scan) {
  BitReader reader({info.src->next_input_byte, info.src->bytes_in_buffer});
  unsigned untilRestart = info.restart_interval;
  std::uint8_t restarts = 0;
  for (std::size_t row = 0; row < scan.mcusDown; ++row) {
    checkCanceled();
    for (std::size_t column = 0; column < scan.mcusAcross; ++column) {
      if (info.restart_interval > 0 && untilRestart-- == 0) {
        if (!reader.skipMarker(static_cast<std::uint8_t>(JPEG_RST0 + restarts++ % 8))) return false;
        for (Component& component : scan.components) component.predictor = 0;
        untilRestart = info.restart_interval - 1;
      }
      if (!readMcu(reader, scan, column, row)) return false;
    }
    if (reader.overrun()) return false;
  }
  return reader.skipMarker(JPEG_EOI);
}

/// YCbCr to RGB as in JFIF, in Q16.
Pixel toRgb(int luma, int storedCb, int storedCr) {
  constexpr int kHalf = 1 << 15;
  const auto channel = [](int value) { return static_cast<std::uint8_t>(std::clamp(value, 0, 255)); };
  const int cb = storedCb - 128, cr = storedCr - 128;
  return {channel(luma + ((91881 * cr + kHalf) >> 16)),
          channel(luma + ((-22554 * cb - 46802 * cr + kHalf) >> 16)),
          channel(luma + ((116130 * cb + kHalf) >> 16)), 255};
}

Bitmap pictureOf(const jpeg_decompress_struct& info, const Scan& scan) {
  const auto eighth = [](JDIMENSION side) { return static_cast<std::int32_t>((side + 7) / 8); };
  Bitmap bitmap = Bitmap::uninitialized(eighth(info.image_width), eighth(info.image_height));
  const Pixels pixels = bitmap.writable();
  const Component& finest = scan.components[0];
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    const auto dcLevel = [&](std::size_t i, std::int32_t x) {
      const Component& component = scan.components[std::min(i, scan.components.size() - 1)];
      const auto column = static_cast<std::size_t>(x * component.across / finest.across);
      const auto row = static_cast<std::size_t>(y * component.down / finest.down);
      return int{component.dcLevels[row * component.blocksAcross + column]};
    };
    std::uint8_t* target = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, target += sizeof(Pixel)) {
      const int luma = dcLevel(0, x);
      const Pixel pixel =
          scan.components.size() == 1 ? toRgb(luma, 128, 128) : toRgb(luma, dcLevel(1, x), dcLevel(2, x));
      std::memcpy(target, &pixel, sizeof pixel);
    }
  }
  return bitmap;
}

}  // namespace

std::optional<Bitmap> readDcThumbnail(const jpeg_decompress_struct& info) {
  if (!isSupported(info)) return std::nullopt;
  Scan scan;
  if (!prepare(info, scan) || !readScan(info, scan)) return std::nullopt;
  return pictureOf(info, scan);
}

}  // namespace kestrel::engine::jpeg
