#include "JpegDcThumbnail.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "engine/codecs/common/Decoded.h"

// After <cstdio>, which it needs and does not include.
#include <jpeglib.h>

// Coding as in ITU-T T.81, annex F.2.2.

namespace kestrel::engine::jpeg {
namespace {

/// The coefficients of a block besides the average.
constexpr int kOthers = 63;

/// Bits of a scan, most significant first. After its end come zeros.
class BitReader {
 public:
  explicit BitReader(Bytes data) : next_(data.data()), end_(data.data() + data.size()) {}

  /// Makes at least 32 bits ready.
  void refill() {
    if (ready_ > 32) return;
    if (end_ - next_ >= 4) {
      std::uint32_t four;
      std::memcpy(&four, next_, sizeof four);
      // A byte of 0xFF is the start of a marker or a stuffed one. There is none if no byte of the complement
      // is zero.
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

  /// The next `count` bits, 1 to 32 of those that are ready.
  std::uint32_t peek(int count) const { return static_cast<std::uint32_t>(bits_ >> (64 - count)); }

  void drop(int count) {
    bits_ <<= count;
    ready_ -= count;
  }

  /// True if bits were used that the scan does not have.
  bool overrun() const { return ready_ < added_; }

  /// Goes past the rest of a byte and the marker that must follow; false if it does not, or after
  /// an overrun.
  bool passMarker(std::uint8_t marker) {
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
  int ready_ = 0;  ///< bits in the upper end of `bits_`
  int added_ = 0;  ///< those that the scan does not have
};

/// A Huffman code as a table over the next bits.
class Code {
 public:
  /// What one look tells of the coefficients that begin here.
  struct Entry {
    std::uint8_t bits = 0;    ///< of all codes within sight, and of their values
    std::uint8_t passes = 0;  ///< how many coefficients those are
    std::uint8_t ends = 0;    ///< 1 if the last of the codes ends the block
    std::uint8_t symbol = 0;  ///< of the first code alone
    std::uint8_t length = 0;  ///< of the first code alone, 0 if it is longer than a look
  };

  /// False if it is no code.
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
        if (length <= kSight) {
          const Entry single{0, 0, 0, symbols_[count], static_cast<std::uint8_t>(length)};
          std::fill_n(looks_.begin() + (code << (kSight - length)), 1U << (kSight - length), single);
        }
      }
      end_[at] = code;
      code <<= 1;
    }
    lookFurther();
    return true;
  }

  const Entry& look(const BitReader& reader) const { return looks_[reader.peek(kSight)]; }

  /// The next symbol; nothing if there is no such code.
  std::optional<int> symbol(BitReader& reader) const {
    const Entry& seen = look(reader);
    if (seen.length > 0) {
      reader.drop(seen.length);
      return seen.symbol;
    }
    for (int length = kSight + 1; length <= 16; ++length) {
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
  static constexpr int kSight = 12;

  /// Joins to each first code those that are whole within sight after it.
  void lookFurther() {
    for (std::uint32_t seen = 0; seen < looks_.size(); ++seen) {
      Entry& look = looks_[seen];
      int bits = 0, passes = 0;
      while (look.ends == 0) {
        const Entry& next = looks_[(seen << bits) % looks_.size()];
        const int run = next.symbol >> 4, size = next.symbol & 15;
        const bool withinSight = next.length > 0 && bits + next.length <= kSight;
        // The value of the first may reach beyond the sight: only its length counts.
        if (!withinSight || (bits > 0 && bits + next.length + size > kSight)) break;
        bits += next.length + size;
        if (size == 0 && run != 15) {
          look.ends = 1;
        } else if (passes + run + 1 <= kOthers) {
          passes += run + 1;
        } else {
          bits -= next.length + size;
          break;
        }
        if (bits >= kSight) break;
      }
      look.bits = static_cast<std::uint8_t>(bits);
      look.passes = static_cast<std::uint8_t>(passes);
    }
  }

  std::array<Entry, 1U << kSight> looks_{};
  std::array<std::uint8_t, 256> symbols_{};
  std::array<std::uint32_t, 17> end_{};   ///< by length: the first value that is no code
  std::array<std::int32_t, 17> first_{};  ///< by length: what leads from a code to its symbol
};

/// Reads the value of `size` bits that follows a code: F.2.2.1's EXTEND. A refill before the code suffices
/// for both.
int readValue(BitReader& reader, int size) {
  if (size == 0) return 0;
  const auto value = static_cast<int>(reader.peek(size));
  reader.drop(size);
  return value < 1 << (size - 1) ? value - (1 << size) + 1 : value;
}

/// Passes over the coefficients after the average; false at a fault.
bool skipOthers(BitReader& reader, const Code& code) {
  int passed = 0;
  while (passed < kOthers) {
    reader.refill();
    const Code::Entry& look = code.look(reader);
    // After the last coefficient nothing ends the block: what looks like it is the next one's.
    if (look.bits > 0 && passed + look.passes + look.ends <= kOthers) {
      reader.drop(look.bits);
      passed += look.passes;
      if (look.ends != 0) break;
      continue;
    }
    const std::optional<int> symbol = code.symbol(reader);
    if (!symbol) return false;
    const int run = *symbol >> 4, size = *symbol & 15;
    if (size == 0 && run != 15) break;
    readValue(reader, size);
    passed += run + 1;
  }
  return passed <= kOthers;
}

/// One component: how it is coded, and the averages of its blocks.
struct Component {
  int across = 1, down = 1;  ///< blocks in a unit of the scan
  std::int32_t step = 1;     ///< what an average counts, times eight
  const Code* averageCode = nullptr;
  const Code* otherCode = nullptr;
  std::uint32_t last = 0;  ///< the average before; unsigned, for a hostile file may make it run over
  std::size_t blocksAcross = 0;
  std::vector<std::uint8_t> averages;

  /// Reads a block; false at a fault.
  bool read(BitReader& reader, std::size_t column, std::size_t row) {
    reader.refill();
    const std::optional<int> size = averageCode->symbol(reader);
    if (!size || *size > 15) return false;
    last += static_cast<std::uint32_t>(readValue(reader, *size));
    const std::int64_t level = std::int64_t{static_cast<std::int16_t>(last)} * step;
    averages[row * blocksAcross + column] =
        static_cast<std::uint8_t>(std::clamp<std::int64_t>(((level + 4) >> 3) + 128, 0, 255));
    return skipOthers(reader, *otherCode);
  }
};

struct Scan {
  std::array<Code, NUM_HUFF_TBLS> averageCodes, otherCodes;
  std::vector<Component> components;
  std::size_t unitsAcross = 0, unitsDown = 0;
};

bool isPlain(const jpeg_decompress_struct& info) {
  const bool colors = (info.jpeg_color_space == JCS_YCbCr && info.num_components == 3) ||
                      (info.jpeg_color_space == JCS_GRAYSCALE && info.num_components == 1);
  const jpeg_component_info& first = info.comp_info[0];
  const bool lightIsFinest =
      first.h_samp_factor == info.max_h_samp_factor && first.v_samp_factor == info.max_v_samp_factor;
  return colors && lightIsFinest && !info.progressive_mode && !info.arith_code && info.data_precision == 8 &&
         info.comps_in_scan == info.num_components && info.Ss == 0 && info.Se == 63 && info.Ah == 0 &&
         info.Al == 0;
}

/// False if something is missing.
bool prepare(const jpeg_decompress_struct& info, Scan& scan) {
  std::array<bool, NUM_HUFF_TBLS> averagesBuilt{}, othersBuilt{};
  const auto unit = [](int blocks) { return static_cast<std::size_t>(blocks) * DCTSIZE; };
  const bool single = info.num_components == 1;
  const int across = single ? 1 : info.max_h_samp_factor, down = single ? 1 : info.max_v_samp_factor;
  scan.unitsAcross = (info.image_width + unit(across) - 1) / unit(across);
  scan.unitsDown = (info.image_height + unit(down) - 1) / unit(down);
  for (int i = 0; i < info.num_components; ++i) {
    const jpeg_component_info& from = *info.cur_comp_info[i];
    const auto averageCode = static_cast<std::size_t>(from.dc_tbl_no);
    const auto otherCode = static_cast<std::size_t>(from.ac_tbl_no);
    const auto quantTable = static_cast<std::size_t>(from.quant_tbl_no);
    if (averageCode >= NUM_HUFF_TBLS || otherCode >= NUM_HUFF_TBLS || quantTable >= NUM_QUANT_TBLS ||
        info.quant_tbl_ptrs[quantTable] == nullptr || from.component_index != i) {
      return false;
    }
    if (!averagesBuilt[averageCode] &&
        !scan.averageCodes[averageCode].build(info.dc_huff_tbl_ptrs[averageCode]))
      return false;
    if (!othersBuilt[otherCode] && !scan.otherCodes[otherCode].build(info.ac_huff_tbl_ptrs[otherCode]))
      return false;
    averagesBuilt[averageCode] = othersBuilt[otherCode] = true;

    Component component;
    component.across = single ? 1 : from.h_samp_factor;
    component.down = single ? 1 : from.v_samp_factor;
    component.step = info.quant_tbl_ptrs[quantTable]->quantval[0];
    component.averageCode = &scan.averageCodes[averageCode];
    component.otherCode = &scan.otherCodes[otherCode];
    component.blocksAcross = scan.unitsAcross * static_cast<std::size_t>(component.across);
    component.averages.resize(component.blocksAcross * scan.unitsDown *
                              static_cast<std::size_t>(component.down));
    scan.components.push_back(std::move(component));
  }
  return true;
}

/// Reads one unit of the scan: the blocks of all components for one place; false at a fault.
bool readUnit(BitReader& reader, Scan& scan, std::size_t column, std::size_t row) {
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
  for (std::size_t row = 0; row < scan.unitsDown; ++row) {
    for (std::size_t column = 0; column < scan.unitsAcross; ++column) {
      if (info.restart_interval > 0 && untilRestart-- == 0) {
        if (!reader.passMarker(static_cast<std::uint8_t>(JPEG_RST0 + restarts++ % 8))) return false;
        for (Component& component : scan.components) component.last = 0;
        untilRestart = info.restart_interval - 1;
      }
      if (!readUnit(reader, scan, column, row)) return false;
    }
    if (reader.overrun()) return false;
  }
  return reader.passMarker(JPEG_EOI);
}

/// JFIF's conversion, in 16 bits after the point.
Pixel toRgb(int light, int blueness, int redness) {
  constexpr int kHalf = 1 << 15;
  const auto channel = [](int value) { return static_cast<std::uint8_t>(std::clamp(value, 0, 255)); };
  const int cb = blueness - 128, cr = redness - 128;
  return {channel(light + ((91881 * cr + kHalf) >> 16)),
          channel(light + ((-22554 * cb - 46802 * cr + kHalf) >> 16)),
          channel(light + ((116130 * cb + kHalf) >> 16)), 255};
}

Bitmap pictureOf(const jpeg_decompress_struct& info, const Scan& scan) {
  const auto eighth = [](JDIMENSION side) { return static_cast<std::int32_t>((side + 7) / 8); };
  Bitmap bitmap = Bitmap::uninitialized(eighth(info.image_width), eighth(info.image_height));
  const Pixels pixels = bitmap.writable();
  const Component& finest = scan.components[0];
  for (std::int32_t y = 0; y < pixels.height; ++y) {
    const auto average = [&](std::size_t i, std::int32_t x) {
      const Component& component = scan.components[std::min(i, scan.components.size() - 1)];
      const auto column = static_cast<std::size_t>(x * component.across / finest.across);
      const auto row = static_cast<std::size_t>(y * component.down / finest.down);
      return int{component.averages[row * component.blocksAcross + column]};
    };
    std::uint8_t* target = pixels.row(y);
    for (std::int32_t x = 0; x < pixels.width; ++x, target += sizeof(Pixel)) {
      const int light = average(0, x);
      const Pixel pixel =
          scan.components.size() == 1 ? toRgb(light, 128, 128) : toRgb(light, average(1, x), average(2, x));
      std::memcpy(target, &pixel, sizeof pixel);
    }
  }
  return bitmap;
}

}  // namespace

std::optional<Bitmap> readDcThumbnail(const jpeg_decompress_struct& info) {
  if (!isPlain(info)) return std::nullopt;
  Scan scan;
  if (!prepare(info, scan) || !readScan(info, scan)) return std::nullopt;
  return pictureOf(info, scan);
}

}  // namespace kestrel::engine::jpeg
