#include "TiffTags.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <set>

#include "engine/codecs/common/ByteReader.h"
#include "engine/codecs/common/ByteWriter.h"

namespace kestrel::engine::tiff {
namespace {

constexpr std::uint16_t kExifDirectory = 0x8769;
constexpr std::uint16_t kGpsDirectory = 0x8825;
constexpr std::uint16_t kInteropDirectory = 0xA005;

/// Tags that describe the picture and not how its pixels are stored.
constexpr std::array<std::uint16_t, 19> kDescriptive{
    0x010D,  // document's name
    0x010E,  // description
    0x010F,  // make
    0x0110,  // model
    0x011D,  // page's name
    0x0131,  // software
    0x0132,  // date and time
    0x013B,  // artist
    0x013C,  // host computer
    0x4746,  // rating
    0x4749,  // rating in percent
    0x8298,  // copyright
    0x9C9B,  // title as in a desktop's file properties, like the next four
    0x9C9C,  // comment
    0x9C9D,  // author
    0x9C9E,  // keywords
    0x9C9F,  // subject
    0xC614,  // camera model
    0xC62F,  // camera serial number
};

constexpr std::size_t kMostEntries = 1000;

/// A directory entry with its values in little-endian order.
struct Entry {
  std::uint16_t type = 0;
  std::uint32_t count = 0;
  std::vector<std::uint8_t> values;
};

struct Directory {
  std::map<std::uint16_t, Entry> entries;
  std::map<std::uint16_t, Directory> children;  ///< by the tag that holds their offset
};

/// Bytes per value by type. `swapUnitOfType` is the unit of byte swapping, which differs for rationals.
std::size_t sizeOfType(std::uint16_t type) {
  constexpr std::array<std::size_t, 14> kSizes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
  return type < kSizes.size() ? kSizes[type] : 0;
}

std::size_t swapUnitOfType(std::uint16_t type) {
  constexpr std::uint16_t kRational = 5, kSignedRational = 10;
  return type == kRational || type == kSignedRational ? 4 : sizeOfType(type);
}

void toLittleEndian(std::vector<std::uint8_t>& values, std::size_t unit) {
  for (std::size_t i = 0; i + unit <= values.size(); i += unit) {
    std::reverse(values.begin() + static_cast<std::ptrdiff_t>(i),
                 values.begin() + static_cast<std::ptrdiff_t>(i + unit));
  }
}

std::uint32_t firstNumber(const Entry& entry) {
  std::uint32_t value = 0;
  const std::size_t size = std::min<std::size_t>({4, entry.values.size(), sizeOfType(entry.type)});
  for (std::size_t i = size; i-- > 0;) value = value << 8 | entry.values[i];
  return value;
}

/// Reads directories recursively. Invalid entries are skipped.
class DirectoryReader {
 public:
  DirectoryReader(Bytes data, ByteOrder order) : data_(data), order_(order), budget_(data.size()) {}

  Directory read(std::size_t position, int depth) {
    Directory directory;
    ByteReader reader(data_, order_);
    reader.seek(position);
    const std::size_t count = reader.u16();
    if (count > kMostEntries) return directory;
    for (std::size_t i = 0; i < count && reader.remaining() >= 12; ++i) {
      const std::size_t next = reader.position() + 12;
      const std::uint16_t tag = reader.u16();
      if (auto entry = readEntry(reader)) {
        if (!holdsDirectory(tag)) {
          directory.entries[tag] = std::move(*entry);
        } else if (depth > 0 && !directory.children.contains(tag) &&
                   firstNumber(*entry) + std::size_t{2} <= data_.size()) {
          directory.children[tag] = read(firstNumber(*entry), depth - 1);
        }
      }
      reader.seek(next);
    }
    return directory;
  }

 private:
  static bool holdsDirectory(std::uint16_t tag) {
    return tag == kExifDirectory || tag == kGpsDirectory || tag == kInteropDirectory;
  }

  std::optional<Entry> readEntry(ByteReader& reader) {
    Entry entry;
    entry.type = reader.u16();
    entry.count = reader.u32();
    const std::size_t size = sizeOfType(entry.type) * std::size_t{entry.count};
    if (size == 0 || size > budget_) return std::nullopt;
    if (size > 4) {
      const std::size_t at = reader.u32();
      if (at > data_.size() || size > data_.size() - at) return std::nullopt;
      reader.seek(at);
    }
    budget_ -= size;
    const Bytes values = reader.take(size);
    entry.values.assign(values.begin(), values.end());
    if (order_ == ByteOrder::big) toLittleEndian(entry.values, swapUnitOfType(entry.type));
    return entry;
  }

  Bytes data_;
  ByteOrder order_;
  /// Bounds the total size of all values by the file size: overlapping values could otherwise make a small
  /// file expensive.
  std::size_t budget_;
};

std::optional<Directory> readRoot(Bytes data) {
  if (data.size() < 8) return std::nullopt;
  const ByteOrder order = data[0] == 'M' ? ByteOrder::big : ByteOrder::little;
  ByteReader reader(data, order);
  reader.skip(2);
  constexpr std::uint16_t kClassic = 42;
  if (reader.u16() != kClassic) return std::nullopt;
  const std::uint32_t first = reader.u32();
  if (first + std::size_t{2} > data.size()) return std::nullopt;
  constexpr int kDepth = 2;
  return DirectoryReader(data, order).read(first, kDepth);
}

/// Iterates over the chain of directories and distinguishes pictures from reduced copies and masks.
class DirectoryChain {
 public:
  explicit DirectoryChain(Bytes file) : file_(file) {
    if (file.size() < kBigHeader) return;
    big_ = file[0] == 'M';
    constexpr std::uint64_t kWideForm = 43;
    wide_ = number(2, 2) == kWideForm;
    entriesLeft_ = file.size() / 12;
    next_ = wide_ ? number(8, 8) : number(4, 4);
  }

  /// Whether the next directory is a picture; nothing at the end of the chain, at a loop or beyond the file.
  std::optional<bool> next() {
    const std::size_t countSize = wide_ ? 8 : 2, entrySize = wide_ ? 20 : 12, linkSize = wide_ ? 8 : 4;
    if (next_ == 0 || next_ > file_.size() || file_.size() - next_ < countSize) return std::nullopt;
    if (!met_.insert(next_).second) return std::nullopt;
    const std::size_t first = next_ + countSize;
    const std::uint64_t count = number(next_, countSize);
    if (count > (file_.size() - first) / entrySize || count > entriesLeft_) return std::nullopt;
    entriesLeft_ -= count;
    const std::size_t link = first + count * entrySize;
    next_ = file_.size() - link >= linkSize ? number(link, linkSize) : 0;

    constexpr std::uint64_t kSubfileType = 254, kShort = 3, kReducedOrMask = 1 | 4;
    for (std::size_t entry = first; entry < link; entry += entrySize) {
      if (number(entry, 2) != kSubfileType) continue;
      const std::size_t value = entry + (wide_ ? 12 : 8);
      return (number(value, number(entry + 2, 2) == kShort ? 2 : 4) & kReducedOrMask) == 0;
    }
    return true;
  }

 private:
  static constexpr std::size_t kBigHeader = 16;

  std::uint64_t number(std::size_t at, std::size_t size) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value = value << 8 | file_[at + (big_ ? i : size - 1 - i)];
    return value;
  }

  Bytes file_;
  bool big_ = false, wide_ = false;
  std::uint64_t next_ = 0;
  std::set<std::uint64_t> met_;
  /// Bounds the total number of entries by the file size.
  std::uint64_t entriesLeft_ = 0;
};

std::vector<std::uint8_t> numberBytes(std::size_t value) {
  ByteWriter writer;
  writer.u32(value);
  return writer.finish();
}

/// Appends a directory after its children, and returns its offset.
std::size_t append(std::vector<std::uint8_t>& file, const Directory& directory) {
  constexpr std::uint16_t kLong = 4;
  std::map<std::uint16_t, Entry> entries = directory.entries;
  for (const auto& [tag, child] : directory.children) {
    entries[tag] = {kLong, 1, numberBytes(append(file, child))};
  }
  ByteWriter table;
  table.u16(entries.size());
  for (auto& [tag, entry] : entries) {
    table.u16(tag);
    table.u16(entry.type);
    table.u32(entry.count);
    if (entry.values.size() > 4) {
      if (file.size() % 2 == 1) file.push_back(0);
      table.u32(file.size());
      file.insert(file.end(), entry.values.begin(), entry.values.end());
    } else {
      table.bytes(entry.values);
      table.zeros(4 - entry.values.size());
    }
  }
  table.u32(0);
  if (file.size() % 2 == 1) file.push_back(0);
  const std::size_t position = file.size();
  const std::vector<std::uint8_t> bytes = table.finish();
  file.insert(file.end(), bytes.begin(), bytes.end());
  return position;
}

/// Makes the directory at `position` the first of a little-endian file.
void setFirst(std::vector<std::uint8_t>& file, std::size_t position) {
  const std::vector<std::uint8_t> bytes = numberBytes(position);
  std::ranges::copy(bytes, file.begin() + 4);
}

/// Builds an EXIF block from these directories.
std::vector<std::uint8_t> blockOf(const Directory& root) {
  std::vector<std::uint8_t> exif{'I', 'I', 42, 0, 0, 0, 0, 0};
  setFirst(exif, append(exif, root));
  return exif;
}

/// Removes the entry with the most bytes; returns false if all values fit into their entries.
bool dropLargest(Directory& root) {
  Directory* place = nullptr;
  std::uint16_t tag = 0;
  std::size_t most = 4;
  const std::function<void(Directory&)> look = [&](Directory& directory) {
    for (const auto& [number, entry] : directory.entries) {
      if (entry.values.size() <= most) continue;
      most = entry.values.size();
      place = &directory;
      tag = number;
    }
    for (auto& [number, child] : directory.children) look(child);
  };
  look(root);
  return place != nullptr && place->entries.erase(tag) > 0;
}

void keepDescriptive(Directory& directory) {
  std::erase_if(directory.entries, [](const auto& entry) {
    return std::ranges::find(kDescriptive, entry.first) == kDescriptive.end();
  });
}

}  // namespace

std::vector<std::uint8_t> exifOfTiff(Bytes file) {
  std::optional<Directory> root = readRoot(file);
  if (!root) return {};
  keepDescriptive(*root);
  if (root->entries.empty() && root->children.empty()) return {};
  return blockOf(*root);
}

std::vector<std::uint8_t> iptcOfTiff(Bytes file) {
  constexpr std::uint16_t kIptc = 0x83BB;
  std::optional<Directory> root = readRoot(file);
  if (!root || !root->entries.contains(kIptc)) return {};
  Entry& entry = root->entries[kIptc];
  // Some programs declare the type LONG. The content is bytes all the same, in the order of the file.
  if (file[0] == 'M') toLittleEndian(entry.values, swapUnitOfType(entry.type));
  return std::move(entry.values);
}

std::int32_t countPages(Bytes file) {
  DirectoryChain chain(file);
  std::int32_t pages = 0;
  while (const auto isPage = chain.next()) pages += *isPage ? 1 : 0;
  return std::max(1, pages);
}

void addExifToTiff(std::vector<std::uint8_t>& file, Bytes exif) {
  std::optional<Directory> added = readRoot(exif);
  std::optional<Directory> root = readRoot(file);
  if (!added || !root) return;
  keepDescriptive(*added);
  if (added->entries.empty() && added->children.empty()) return;
  root->entries.merge(added->entries);
  root->children.merge(added->children);
  setFirst(file, append(file, *root));
}

std::vector<std::uint8_t> shortenExif(Bytes exif, std::size_t limit) {
  std::optional<Directory> root = readRoot(exif);
  if (!root) return {};
  std::vector<std::uint8_t> shorter = blockOf(*root);
  while (shorter.size() > limit) {
    if (!dropLargest(*root)) return {};
    shorter = blockOf(*root);
  }
  return shorter;
}

}  // namespace kestrel::engine::tiff
