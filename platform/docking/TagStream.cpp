#include "TagStream.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include "ByteOrder.h"
#include "WideText.h"
#include "base/RuntimeError.h"

namespace kestrel::docking {

namespace {

enum ItemKind : std::uint32_t { kProperty = 1, kObject = 2, kImage = 3 };
enum VariantType : std::uint16_t {
  kInt16 = 2,
  kInt32 = 3,
  kFloat32 = 4,
  kFloat64 = 5,
  kText = 8,
  kPersisted = 9,
  kBoolean = 11
};

constexpr std::string_view kImageTag = "BRWDIB24";
constexpr std::uint32_t kBitmapHeaderSize = 40;
constexpr std::uint32_t kBitsPerPixel = 24;
constexpr std::uint32_t kLargestPicture = 256;
constexpr std::int32_t kPicturePixelsPerMetre = 3780;
/// Kind, id and third field, and the type or the first word after them.
constexpr std::size_t kSmallestItem = 14;
constexpr int kDeepestNesting = 16;

/// The class id of a persisted standard font, in block byte order.
constexpr std::array<std::uint8_t, 16> kStdFontClass = {0x03, 0x52, 0xE3, 0x0B, 0x91, 0x8F, 0xCE, 0x11,
                                                        0x9D, 0xE3, 0x00, 0xAA, 0x00, 0x4B, 0xB8, 0x51};
constexpr std::uint8_t kFontVersion = 1;
constexpr std::uint8_t kFontItalic = 2;

std::size_t bytesPerRow(std::uint32_t width) { return (std::size_t{width} * 3 + 3) / 4 * 4; }

/// Parses the stream; every step checks that enough bytes are left.
class Parser {
 public:
  explicit Parser(std::span<const std::byte> stream) : rest_(stream) {}

  TagItem::Items all() {
    TagItem::Items items;
    while (!rest_.empty()) items.push_back(item(0));
    return items;
  }

 private:
  TagItem item(int depth) {
    if (depth > kDeepestNesting) refuseLayout("its objects nest too deep");
    const auto kind = number<std::uint32_t>();
    TagItem result;
    result.id = integer();
    result.index = integer();
    if (kind != kObject && result.index != 0) refuseLayout("an item has an unknown third field");
    switch (kind) {
      case kProperty:
        result.value = property();
        break;
      case kObject:
        result.value = object(depth);
        break;
      case kImage:
        result.value = image();
        break;
      default:
        refuseLayout("an item has an unknown kind");
    }
    return result;
  }

  TagItem::Value property() {
    switch (number<std::uint16_t>()) {
      case kInt16:
        return static_cast<std::int16_t>(number<std::uint16_t>());
      case kBoolean:
        return boolean();
      case kInt32:
        return integer();
      case kFloat32:
        return std::bit_cast<float>(number<std::uint32_t>());
      case kFloat64:
        return std::bit_cast<double>(number<std::uint64_t>());
      case kText:
        return utf8FromWide(take(number<std::uint32_t>()));
      case kPersisted:
        return font();
      default:
        refuseLayout("a property has an unknown type");
    }
  }

  bool boolean() {
    const auto value = number<std::uint16_t>();
    if (value != 0 && value != 0xFFFF) refuseLayout("a boolean is neither true nor false");
    return value != 0;
  }

  TagItem::Items object(int depth) {
    const auto count = number<std::uint32_t>();
    // Reject a count that the rest of the stream cannot hold before reserving memory for it.
    if (count > rest_.size() / kSmallestItem) refuseLayout("an object claims more items than there are");
    TagItem::Items items;
    items.reserve(std::min<std::size_t>(count, 128));
    for (std::uint32_t i = 0; i < count; ++i) items.push_back(item(depth + 1));
    return items;
  }

  StoredPicture image() {
    if (utf8FromWide(take(number<std::uint32_t>())) != kImageTag) refuseLayout("an image has no known tag");
    const auto width = number<std::uint32_t>();
    const auto height = number<std::uint32_t>();
    if (width == 0 || height == 0 || width > kLargestPicture || height > kLargestPicture) {
      refuseLayout("an image has an invalid size");
    }
    expect(kBitsPerPixel, "an image is not of 24 bits");
    const std::size_t size = bytesPerRow(width) * height;
    bitmapHeader(width, height, size);
    const auto pixels = take(size);
    expect(0, "an image is not terminated");
    return picture(width, height, pixels);
  }

  void bitmapHeader(std::uint32_t width, std::uint32_t height, std::size_t size) {
    constexpr const char* kUnlike = "a bitmap header does not match its image";
    expect(kBitmapHeaderSize, kUnlike);
    expect(width, kUnlike);
    expect(height, kUnlike);
    if (number<std::uint16_t>() != 1 || number<std::uint16_t>() != kBitsPerPixel) refuseLayout(kUnlike);
    expect(0, kUnlike);
    expect(static_cast<std::uint32_t>(size), kUnlike);
    take(16);  // resolution and palette: unused at 24 bits
  }

  static StoredPicture picture(std::uint32_t width, std::uint32_t height, std::span<const std::byte> pixels) {
    StoredPicture result{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height), {}};
    result.rgb.reserve(std::size_t{width} * height * 3);
    for (std::uint32_t row = height; row-- > 0;) {
      const auto line = pixels.subspan(row * bytesPerRow(width));
      for (std::size_t x = 0; x < width; ++x) {
        for (const std::size_t channel : {2u, 1u, 0u}) {
          result.rgb.push_back(static_cast<std::uint8_t>(line[3 * x + channel]));
        }
      }
    }
    return result;
  }

  StoredFont font() {
    const auto classId = take(kStdFontClass.size());
    if (!std::equal(classId.begin(), classId.end(), kStdFontClass.begin(),
                    [](std::byte a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; })) {
      refuseLayout("a persisted object is not a font");
    }
    if (number<std::uint8_t>() != kFontVersion) refuseLayout("a font has an unknown version");
    take(2);  // character set: the texts of the block are Unicode
    StoredFont result;
    result.italic = (number<std::uint8_t>() & kFontItalic) != 0;
    result.weight = static_cast<std::int16_t>(number<std::uint16_t>());
    result.height = integer();
    const auto name = take(number<std::uint8_t>());
    result.name.clear();
    for (const std::byte letter : name) {
      if (letter < std::byte{0x20} || letter > std::byte{0x7E})
        refuseLayout("the name of a font is unreadable");
      result.name += static_cast<char>(letter);
    }
    return result;
  }

  template <typename T>
  T number() {
    return loadLittle<T>(take(sizeof(T)));
  }

  std::int32_t integer() { return static_cast<std::int32_t>(number<std::uint32_t>()); }

  void expect(std::uint32_t value, const char* otherwise) {
    if (number<std::uint32_t>() != value) refuseLayout(otherwise);
  }

  std::span<const std::byte> take(std::size_t size) {
    if (size > rest_.size()) refuseLayout("it is truncated");
    const auto taken = rest_.first(size);
    rest_ = rest_.subspan(size);
    return taken;
  }

  std::span<const std::byte> rest_;
};

/// Writes the value of an item after its first three fields.
class Writer {
 public:
  explicit Writer(std::vector<std::byte>& block) : block_(block) {}

  void item(const TagItem& item) {
    const bool object = std::holds_alternative<TagItem::Items>(item.value);
    const bool image = std::holds_alternative<StoredPicture>(item.value);
    append32(block_, object ? kObject : image ? kImage : kProperty);
    append32(block_, item.id);
    append32(block_, item.index);
    std::visit([this](const auto& value) { append(value); }, item.value);
  }

 private:
  void append(std::int16_t value) {
    append16(block_, kInt16);
    append16(block_, value);
  }
  void append(bool value) {
    append16(block_, kBoolean);
    append16(block_, value ? -1 : 0);
  }
  void append(std::int32_t value) {
    append16(block_, kInt32);
    append32(block_, value);
  }
  void append(float value) {
    append16(block_, kFloat32);
    appendLittle(block_, std::bit_cast<std::uint32_t>(value));
  }
  void append(double value) {
    append16(block_, kFloat64);
    appendLittle(block_, std::bit_cast<std::uint64_t>(value));
  }
  void append(const std::string& value) {
    append16(block_, kText);
    wideText(value);
  }

  void append(const StoredFont& font) {
    if (font.name.size() > 255) throw RuntimeError(err::kInvalidCall, "The name of the font is too long.");
    append16(block_, kPersisted);
    for (const std::uint8_t byte : kStdFontClass) appendLittle(block_, byte);
    appendLittle(block_, kFontVersion);
    append16(block_, 0);
    appendLittle<std::uint8_t>(block_, font.italic ? kFontItalic : 0);
    append16(block_, font.weight);
    append32(block_, font.height);
    appendLittle(block_, static_cast<std::uint8_t>(font.name.size()));
    for (const char letter : font.name) block_.push_back(static_cast<std::byte>(letter));
  }

  void append(const StoredPicture& picture) {
    const auto width = static_cast<std::size_t>(picture.width);
    const auto height = static_cast<std::size_t>(picture.height);
    if (picture.rgb.size() != width * height * 3) {
      throw RuntimeError(err::kInvalidCall, "The pixels of a layout picture do not match its size.");
    }
    wideText(std::string(kImageTag));
    append32(block_, picture.width);
    append32(block_, picture.height);
    append32(block_, kBitsPerPixel);
    const std::size_t stride = bytesPerRow(static_cast<std::uint32_t>(width));
    bitmapHeader(picture, static_cast<std::int32_t>(stride * height));
    for (std::size_t row = height; row-- > 0;) {
      for (std::size_t x = 0; x < width; ++x) {
        for (const std::size_t channel : {2u, 1u, 0u}) {
          appendLittle(block_, picture.rgb[(row * width + x) * 3 + channel]);
        }
      }
      block_.insert(block_.end(), stride - 3 * width, std::byte{0});
    }
    append32(block_, 0);
  }

  void bitmapHeader(const StoredPicture& picture, std::int32_t imageSize) {
    append32(block_, kBitmapHeaderSize);
    append32(block_, picture.width);
    append32(block_, picture.height);
    append16(block_, 1);
    append16(block_, kBitsPerPixel);
    append32(block_, 0);
    append32(block_, imageSize);
    append32(block_, kPicturePixelsPerMetre);
    append32(block_, kPicturePixelsPerMetre);
    append32(block_, 0);
    append32(block_, 0);
  }

  void append(const TagItem::Items& items) {
    append32(block_, static_cast<std::int32_t>(items.size()));
    for (const TagItem& child : items) item(child);
  }

  void wideText(const std::string& text) {
    const auto wide = wideFromUtf8(text);
    append32(block_, static_cast<std::int32_t>(wide.size()));
    block_.insert(block_.end(), wide.begin(), wide.end());
  }

  std::vector<std::byte>& block_;
};

}  // namespace

TagItem::Items parseTags(std::span<const std::byte> stream) { return Parser(stream).all(); }

void appendTags(std::vector<std::byte>& block, const TagItem::Items& items) {
  Writer writer(block);
  for (const TagItem& item : items) writer.item(item);
}

void refuseLayout(const std::string& what) {
  throw RuntimeError(kInvalidFileFormat, "The stored layout is damaged: " + what + ".");
}

}  // namespace kestrel::docking
