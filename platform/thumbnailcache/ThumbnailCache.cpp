#include "ThumbnailCache.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "CacheEntry.h"
#include "ThumbnailUri.h"
#include "engine/codecs/png/Png.h"
#include "platform/os/CacheFiles.h"
#include "platform/os/Entries.h"
#include "platform/os/OwnedFile.h"

namespace kestrel::thumbnails {
namespace {

namespace fs = std::filesystem;
using engine::Bitmap;

constexpr std::string_view kFailed = "fail", kShared = ".sh_thumbnails";
/// The cache of all programs before the base directory standard.
constexpr std::string_view kFormer = ".thumbnails";
constexpr std::string_view kProgram = "kestrel-" KESTREL_VERSION;

/// A picture that is no larger is decoded as fast as its thumbnail.
constexpr std::int32_t kNotKept = 128;

struct SizeFolder {
  std::int32_t side;
  std::string_view name;
};

constexpr SizeFolder kSizeFolders[] = {{128, "normal"}, {256, "large"}, {512, "x-large"}, {1024, "xx-large"}};

/// Null for a side that the standard does not have.
const SizeFolder* folderOf(std::int32_t side) {
  const auto* const found = std::ranges::find(kSizeFolders, side, &SizeFolder::side);
  return found == std::end(kSizeFolders) ? nullptr : found;
}

/// Bytes of the largest entry that is read: 16-bit RGBA without compression, and its texts.
std::size_t mostBytes(std::int32_t side) {
  constexpr std::size_t kTexts = std::size_t{1} << 20, kPixel = 8;
  return static_cast<std::size_t>(side) * static_cast<std::size_t>(side) * kPixel + kTexts;
}

/// Whether a thumbnail of this length has the pixels that one of `side` should have. Rounding differs between
/// programs.
bool isSharp(std::int32_t length, Size picture, std::int32_t side) {
  const std::int32_t longest = std::max(picture.Width, picture.Height);
  if (longest == 0) return length >= side / 2;
  const std::int32_t needed = std::min(side, longest);
  return length >= needed - needed / 8;
}

StoredThumbnail readThumbnail(const fs::path& path, const std::string& uri, const FileVersion& file,
                              std::int32_t side, StoredDetail detail) {
  std::vector<std::uint8_t> data;
  if (os::readCacheFile(path, mostBytes(side), data)) return {};
  const auto entry = readEntry(data, uri, file);
  if (!entry) return {};
  const std::int32_t length = std::max(entry->width, entry->height);
  if (length > side || !isSharp(length, entry->pictureSize, side)) return {};

  StoredThumbnail thumbnail;
  if (detail == StoredDetail::kBitmap) {
    engine::Decoded decoded = engine::png::decode(data);
    if (!decoded.notice.empty()) return {};
    thumbnail.bitmap = std::move(decoded.bitmap);
  }
  thumbnail.state = StoredThumbnail::State::kKept;
  thumbnail.pictureSize = entry->pictureSize;
  return thumbnail;
}

/// The folder that an absolute path in an environment variable names; empty if there is none.
fs::path folderIn(const char* variable) {
  const char* const value = std::getenv(variable);
  const fs::path folder = value == nullptr ? "" : value;
  return folder.is_absolute() ? folder : fs::path();
}

}  // namespace

ThumbnailCache::ThumbnailCache(fs::path root) : root_(std::move(root)) {}

StoredThumbnail ThumbnailCache::get(const FileVersion& file, std::int32_t side, StoredDetail detail) noexcept
    try {
  if (folderOf(side) == nullptr || !serves(file)) return {};
  return read(file, side, detail);
} catch (const std::exception&) {
  return {};
}

void ThumbnailCache::put(const FileVersion& file, std::int32_t side, const Bitmap& bitmap,
                         Size pictureSize) noexcept try {
  const SizeFolder* const folder = folderOf(side);
  if (folder == nullptr || bitmap.empty() || std::max(bitmap.width(), bitmap.height()) > side) return;
  const bool small = pictureSize.Width <= kNotKept && pictureSize.Height <= kNotKept;
  if ((small && pictureSize.Width > 0) || !serves(file)) return;
  write(file, root_ / folder->name, bitmap, pictureSize, {});
} catch (const std::exception&) {
  return;  // the thumbnail is made again
}

void ThumbnailCache::putFailed(const FileVersion& file, const std::string& reason) noexcept try {
  if (!serves(file)) return;
  write(file, root_ / kFailed / kProgram, Bitmap::filled(1, 1), {}, reason);
} catch (const std::exception&) {
  return;  // the file is tried again
}

/// A file that became unreadable must not be shown from the cache, and one that becomes readable must be
/// tried again.
bool ThumbnailCache::serves(const FileVersion& file) {
  if (!file.path.is_absolute() || isOwnFolder(file.path.parent_path())) return false;
  std::error_code error;
  const bool isLink = fs::is_symlink(fs::symlink_status(file.path, error));
  if (isLink && isOwnFolder(fs::weakly_canonical(file.path).parent_path())) return false;
  return os::isReadable(file.path);
}

bool ThumbnailCache::isOwnFolder(const fs::path& folder) {
  {
    const std::lock_guard lock(mutex_);
    if (!lastFolder_.empty() && folder == lastFolder_) return lastIsOwn_;
  }
  const fs::path root = fs::weakly_canonical(root_), real = fs::weakly_canonical(folder);
  const bool isOwn = std::mismatch(root.begin(), root.end(), real.begin(), real.end()).first == root.end() ||
                     std::any_of(real.begin(), real.end(), [](const fs::path& part) {
                       return part.native() == kShared || part.native() == kFormer;
                     });
  const std::lock_guard lock(mutex_);
  lastFolder_ = folder;
  lastIsOwn_ = isOwn;
  return isOwn;
}

StoredThumbnail ThumbnailCache::read(const FileVersion& file, std::int32_t side, StoredDetail detail) const {
  const std::string_view folder = folderOf(side)->name;
  const std::string uri = uriOf(file.path), shared = uriOfName(file.path);
  const fs::path name = entryName(uri);
  StoredThumbnail own = readThumbnail(root_ / folder / name, uri, file, side, detail);
  if (own.state != StoredThumbnail::State::kMissing) return own;
  StoredThumbnail others = readThumbnail(file.path.parent_path() / kShared / folder / entryName(shared),
                                         shared, file, side, detail);
  if (others.state != StoredThumbnail::State::kMissing) return others;
  return readFailed(file, uri);
}

StoredThumbnail ThumbnailCache::readFailed(const FileVersion& file, const std::string& uri) const {
  std::vector<std::uint8_t> data;
  StoredThumbnail failed;
  if (os::readCacheFile(root_ / kFailed / kProgram / entryName(uri), mostBytes(1), data)) return failed;
  auto entry = readEntry(data, uri, file);
  if (!entry) return failed;
  failed.state = StoredThumbnail::State::kFailed;
  failed.notice = std::move(entry->reason);
  return failed;
}

/// Makes the folder, and clears it once of what killed processes left there. False if it cannot be made.
bool ThumbnailCache::prepare(const fs::path& folder) {
  if (os::makePrivateFolder(folder)) return false;
  {
    const std::lock_guard lock(mutex_);
    if (!cleaned_.insert(folder).second) return true;
  }
  os::removeStaleFiles(folder);
  return true;
}

void ThumbnailCache::write(const FileVersion& file, const fs::path& folder, const Bitmap& bitmap,
                           Size pictureSize, const std::string& reason) {
  if (!prepare(folder)) return;
  const std::string uri = uriOf(file.path);
  const std::vector<std::uint8_t> entry = writeEntry(bitmap, uri, file, pictureSize, reason);
  // If it fails, the thumbnail is made again next time.
  [[maybe_unused]] const auto ignored = os::writeCacheFile(folder / entryName(uri), entry);
}

fs::path sharedThumbnailFolder() {
  constexpr std::string_view kName = "thumbnails";
  if (const fs::path cache = folderIn("XDG_CACHE_HOME"); !cache.empty()) return cache / kName;
  if (const fs::path home = folderIn("HOME"); !home.empty()) return home / ".cache" / kName;
  return {};
}

std::shared_ptr<ThumbnailStore> sharedThumbnailCache() {
  fs::path root = sharedThumbnailFolder();
  return root.empty() ? nullptr : std::make_shared<ThumbnailCache>(std::move(root));
}

}  // namespace kestrel::thumbnails
