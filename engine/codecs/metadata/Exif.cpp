#include "Exif.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Xmp.h"
#include "engine/codecs/common/Resolution.h"

// EXIF 2.3: a TIFF header, then directories of 12-byte entries (tag, type, count, value or its offset).

namespace kestrel::engine {
namespace {

constexpr std::uint16_t kOrientation = 0x0112;
constexpr std::uint16_t kResolutionX = 0x011A;
constexpr std::uint16_t kResolutionY = 0x011B;
constexpr std::uint16_t kResolutionUnit = 0x0128;
constexpr std::uint16_t kThumbnailOffset = 0x0201;
constexpr std::uint16_t kThumbnailLength = 0x0202;
constexpr std::uint16_t kExifDirectory = 0x8769;
constexpr std::uint16_t kPixelWidth = 0xA002;
constexpr std::uint16_t kPixelHeight = 0xA003;

constexpr std::uint16_t kShort = 3;
constexpr std::uint16_t kLong = 4;
constexpr std::uint16_t kRational = 5;

/// Reads and modifies an EXIF block in place. Reads beyond the block give 0; writes are ignored.
template <typename Byte>
class Block {
 public:
  explicit Block(std::span<Byte> data) : data_(data) {
    if (data.size() < 8) return;
    big_ = data[0] == 'M' && data[1] == 'M';
    valid_ = (big_ || (data[0] == 'I' && data[1] == 'I')) && u16(2) == 42 && holds(u32(4), 2);
  }

  bool valid() const { return valid_; }
  std::size_t firstDirectory() const { return u32(4); }

  bool holds(std::size_t position, std::size_t count) const {
    return position <= data_.size() && count <= data_.size() - position;
  }

  std::uint32_t u16(std::size_t at) const {
    if (!holds(at, 2)) return 0;
    return big_ ? static_cast<std::uint32_t>(data_[at] << 8 | data_[at + 1])
                : static_cast<std::uint32_t>(data_[at + 1] << 8 | data_[at]);
  }
  std::uint32_t u32(std::size_t at) const {
    return big_ ? u16(at) << 16 | u16(at + 2) : u16(at + 2) << 16 | u16(at);
  }

  void setU16(std::size_t at, std::uint32_t value) {
    if (!holds(at, 2)) return;
    data_[big_ ? at : at + 1] = static_cast<Byte>(value >> 8 & 0xFF);
    data_[big_ ? at + 1 : at] = static_cast<Byte>(value & 0xFF);
  }
  void setU32(std::size_t at, std::uint32_t value) {
    setU16(at, big_ ? value >> 16 : value & 0xFFFF);
    setU16(at + 2, big_ ? value & 0xFFFF : value >> 16);
  }

  /// Offset of a tag's entry in a directory.
  std::optional<std::size_t> entry(std::size_t directory, std::uint16_t tag) const {
    const std::uint32_t count = u16(directory);
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::size_t at = directory + 2 + 12 * std::size_t{i};
      if (!holds(at, 12)) return std::nullopt;
      if (u16(at) == tag) return at;
    }
    return std::nullopt;
  }

  /// Value of an entry of type SHORT or LONG.
  std::optional<std::uint32_t> number(std::size_t directory, std::uint16_t tag) const {
    const auto at = entry(directory, tag);
    if (!at) return std::nullopt;
    if (u16(*at + 2) == kShort) return u16(*at + 8);
    if (u16(*at + 2) == kLong) return u32(*at + 8);
    return std::nullopt;
  }

  void setNumber(std::size_t directory, std::uint16_t tag, std::uint32_t value) {
    const auto at = entry(directory, tag);
    if (!at) return;
    if (u16(*at + 2) == kShort && value > 0xFFFF) setU16(*at + 2, kLong);  // the value field has 4 bytes
    if (u16(*at + 2) == kShort) setU16(*at + 8, value);
    if (u16(*at + 2) == kLong) setU32(*at + 8, value);
  }

  double rational(std::size_t directory, std::uint16_t tag) const {
    const auto at = entry(directory, tag);
    if (!at || u16(*at + 2) != kRational) return 0;
    const std::uint32_t denominator = u32(std::size_t{u32(*at + 8)} + 4);
    return denominator == 0 ? 0 : static_cast<double>(u32(u32(*at + 8))) / denominator;
  }

  void setRational(std::size_t directory, std::uint16_t tag, double value) {
    const auto at = entry(directory, tag);
    constexpr double kParts = 1000;
    if (!at || u16(*at + 2) != kRational || value * kParts > UINT32_MAX) return;
    const bool whole = value == std::floor(value);
    setU32(u32(*at + 8), static_cast<std::uint32_t>(std::lround(whole ? value : value * kParts)));
    setU32(std::size_t{u32(*at + 8)} + 4, static_cast<std::uint32_t>(whole ? 1 : kParts));
  }

  /// Offset of the link to the next directory.
  std::size_t nextLink(std::size_t directory) const {
    return directory + 2 + 12 * std::size_t{u16(directory)};
  }

  void erase(std::size_t position, std::size_t count) {
    if (holds(position, count))
      std::fill_n(data_.begin() + static_cast<std::ptrdiff_t>(position), count, Byte{0});
  }

 private:
  std::span<Byte> data_;
  bool big_ = false;
  bool valid_ = false;
};

using View = Block<const std::uint8_t>;

/// Unlinks the second directory, which describes the thumbnail, and removes or blanks the thumbnail's data.
void dropThumbnail(std::vector<std::uint8_t>& exif) {
  Block<std::uint8_t> block(exif);
  const std::size_t link = block.nextLink(block.firstDirectory());
  const std::size_t second = block.u32(link);
  if (second == 0 || !block.holds(link, 4)) return;
  const std::size_t picture = block.number(second, kThumbnailOffset).value_or(0);
  const std::size_t length = block.number(second, kThumbnailLength).value_or(0);
  block.setU32(link, 0);
  if (picture < 8 || length == 0 || !block.holds(picture, length)) return;
  if (picture + length == exif.size()) {
    exif.resize(picture);
  } else {
    block.erase(picture, length);
  }
}

/// Sets the digit after each `lead` in an XMP packet to 1.
void resetDigitAfter(std::vector<std::uint8_t>& xmp, std::string_view lead) {
  auto at = xmp.begin();
  while ((at = std::search(at, xmp.end(), lead.begin(), lead.end())) != xmp.end()) {
    at += static_cast<std::ptrdiff_t>(lead.size());
    if (at != xmp.end() && *at >= '1' && *at <= '8') *at = '1';
  }
}

/// Updates the picture size in the block, if it is there.
void setSize(std::span<std::uint8_t> exif, std::int32_t width, std::int32_t height) {
  Block<std::uint8_t> block(exif);
  if (!block.valid()) return;
  const auto directory = block.number(block.firstDirectory(), kExifDirectory);
  if (!directory) return;
  block.setNumber(*directory, kPixelWidth, static_cast<std::uint32_t>(width));
  block.setNumber(*directory, kPixelHeight, static_cast<std::uint32_t>(height));
}

}  // namespace

std::int32_t exifOrientation(Bytes exif) {
  const View block(exif);
  if (!block.valid()) return 1;
  const std::uint32_t value = block.number(block.firstDirectory(), kOrientation).value_or(1);
  return value >= 1 && value <= 8 ? static_cast<std::int32_t>(value) : 1;
}

void normalizeCameraData(Metadata& metadata) {
  if (!View(metadata.exif).valid()) {
    metadata.exif.clear();
  } else {
    Block<std::uint8_t> block(metadata.exif);
    block.setNumber(block.firstDirectory(), kOrientation, 1);
    dropThumbnail(metadata.exif);
  }
  for (const char quote : {'"', '\''})
    resetDigitAfter(metadata.xmp, std::string("tiff:Orientation=") + quote);
  resetDigitAfter(metadata.xmp, "<tiff:Orientation>");
  xmp::dropThumbnails(metadata.xmp);
}

void describePicture(Metadata& metadata, std::int32_t width, std::int32_t height) {
  setSize(metadata.exif, width, height);
  xmp::setSize(metadata.xmp, width, height);
  Block<std::uint8_t> block(metadata.exif);
  if (!block.valid() || metadata.resolutionX <= 0 || metadata.resolutionY <= 0) return;
  const std::size_t directory = block.firstDirectory();
  constexpr std::uint32_t kPerInch = 2;
  block.setNumber(directory, kResolutionUnit, kPerInch);
  block.setRational(directory, kResolutionX, metadata.resolutionX);
  block.setRational(directory, kResolutionY, metadata.resolutionY);
}

void readExifResolution(Bytes exif, Metadata& metadata) {
  const View block(exif);
  if (!block.valid()) return;
  const std::size_t directory = block.firstDirectory();
  constexpr std::uint32_t kPerCentimeter = 3;
  const double scale =
      block.number(directory, kResolutionUnit).value_or(2) == kPerCentimeter ? kCentimetersPerInch : 1;
  const double x = block.rational(directory, kResolutionX);
  const double y = block.rational(directory, kResolutionY);
  if (x <= 0 || y <= 0) return;
  metadata.resolutionX = x * scale;
  metadata.resolutionY = y * scale;
}

}  // namespace kestrel::engine
