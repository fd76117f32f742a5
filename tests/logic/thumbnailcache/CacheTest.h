#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../store/TemporaryFolder.h"
#include "engine/codecs/Codecs.h"
#include "platform/os/FolderScan.h"
#include "platform/thumbnailcache/ThumbnailCache.h"
#include "platform/thumbnailcache/ThumbnailUri.h"

namespace kestrel::thumbnails {

namespace fs = std::filesystem;
using State = StoredThumbnail::State;

using Texts = std::vector<std::pair<std::string, std::string>>;

/// A picture in which each pixel differs from its neighbors.
inline engine::Bitmap picture(std::int32_t width, std::int32_t height, std::uint8_t seed = 0) {
  engine::Bitmap bitmap = engine::Bitmap::uninitialized(width, height);
  const engine::Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      std::uint8_t* const pixel = pixels.row(y) + std::ptrdiff_t{4} * x;
      pixel[0] = static_cast<std::uint8_t>(x * 5 + seed);
      pixel[1] = static_cast<std::uint8_t>(y * 3 + seed);
      pixel[2] = static_cast<std::uint8_t>(x ^ y);
      pixel[3] = 255;
    }
  }
  return bitmap;
}

inline bool samePixels(const engine::Bitmap& a, const engine::Bitmap& b) {
  if (a.width() != b.width() || a.height() != b.height()) return false;
  for (std::int32_t y = 0; y < a.height(); ++y) {
    const std::uint8_t* const row = a.pixels().row(y);
    if (!std::equal(row, row + std::ptrdiff_t{4} * a.width(), b.pixels().row(y))) return false;
  }
  return true;
}

inline std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void write(const fs::path& path, std::string_view content) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << content;
}

/// A PNG file with these texts.
inline std::string pngFile(const engine::Bitmap& bitmap, const Texts& texts) {
  engine::Metadata metadata;
  for (const auto& [key, text] : texts) metadata.texts.push_back({key, text, false, {}, {}});
  const auto bytes = engine::encode(bitmap, metadata, engine::format::kPng);
  return {bytes.begin(), bytes.end()};
}

/// The texts of a PNG file.
inline Texts textsOf(const fs::path& file) {
  Texts texts;
  for (const auto& text : engine::decodeFile(file).metadata.texts) texts.emplace_back(text.key, text.text);
  return texts;
}

/// A cache, and a folder with files whose thumbnails it keeps.
class CacheTest : public testing::Test {
 protected:
  /// Makes a file; its version as a listing of the folder finds it.
  FileVersion file(const std::string& name, std::string_view content = "no real picture") const {
    write(folder_ / "pictures" / name, content);
    return versionOf(folder_ / "pictures" / name);
  }

  static FileVersion versionOf(const fs::path& path) {
    os::FolderEntry entry;
    EXPECT_FALSE(os::examineEntry(path, entry).has_value()) << path;
    return {path, entry.modified, entry.size};
  }

  /// Where the standard wants the entry.
  fs::path entryOf(const FileVersion& file, const std::string& size) const {
    return root_ / size / entryName(uriOf(file.path));
  }
  fs::path failedEntryOf(const FileVersion& file) const {
    for (const fs::directory_entry& program : fs::directory_iterator(root_ / "fail"))
      return program.path() / entryName(uriOf(file.path));
    return {};
  }

  State stateOf(const FileVersion& file, std::int32_t side = 128) {
    return cache_.get(file, side, StoredDetail::kBitmap).state;
  }

  /// Whether the cache has no file at all.
  bool isEmpty() const {
    if (!fs::exists(root_)) return true;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root_))
      if (!entry.is_directory()) return false;
    return true;
  }

  Texts requiredTexts(const FileVersion& file) const {
    return {{"Thumb::URI", uriOf(file.path)},
            {"Thumb::MTime", std::to_string(file.modified / 1'000'000'000)}};
  }

  TemporaryFolder folder_;
  fs::path root_ = folder_ / "cache/thumbnails";
  ThumbnailCache cache_{root_};
};

}  // namespace kestrel::thumbnails
