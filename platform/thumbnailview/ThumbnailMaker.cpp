#include "ThumbnailMaker.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "FolderReading.h"
#include "base/DescribedError.h"
#include "base/RuntimeError.h"

namespace kestrel::thumbnails {
namespace {

bool isStoredSide(std::int32_t side) {
  return std::find(std::begin(kStoredSides), std::end(kStoredSides), side) != std::end(kStoredSides);
}

}  // namespace

bool ThumbnailMaker::isCurrent(const std::filesystem::path& path, const LoadRequest& request,
                               LoadResult& result) const {
  os::FolderEntry entry;
  const bool exists = !access_->examine(path, entry) && entry.kind == os::EntryKind::kRegular;
  FoundFile found = exists ? foundFile(std::move(entry)) : FoundFile{};
  if (exists && sameVersion(found, request.file)) return true;
  result.stale = true;
  result.bitmap = {};
  result.found = std::move(found);
  return false;
}

bool ThumbnailMaker::readStore(const FileVersion& file, const LoadRequest& request,
                               LoadResult& result) const {
  if (!store_ || !isStoredSide(request.side)) return false;
  StoredThumbnail stored =
      store_->get(file, request.side, request.bitmap ? StoredDetail::kBitmap : StoredDetail::kFacts);
  if (stored.state == StoredThumbnail::State::kMissing) return false;
  result.broken = stored.state == StoredThumbnail::State::kFailed;
  result.bitmap = std::move(stored.bitmap);
  result.pictureSize = stored.pictureSize;
  result.notice = std::move(stored.notice);
  return result.broken || !request.bitmap || !result.bitmap.empty();
}

void ThumbnailMaker::decode(const FileVersion& file, const LoadRequest& request, LoadResult& result) const {
  result.broken = false;
  result.mayPass = false;
  try {
    auto decoded = access_->decode(file.path, request.side, request.canceled);
    if (!decoded) {
      result.canceled = true;
      return;
    }
    result.bitmap = std::move(decoded->bitmap);
    result.pictureSize = decoded->pictureSize;
    result.notice = std::move(decoded->notice);
  } catch (...) {
    if (request.canceled.stop_requested()) {
      result.canceled = true;
      return;
    }
    const DescribedError error = DescribeCurrentError();
    result.broken = true;
    result.notice = error.Description;
    result.mayPass = error.Number != err::kInvalidPicture;
  }
  if (!isCurrent(file.path, request, result) || !store_) return;
  if (result.broken) {
    if (!result.mayPass) store_->putFailed(file, result.notice);
  } else if (result.notice.empty() && isStoredSide(request.side)) {
    store_->put(file, request.side, result.bitmap, result.pictureSize);
  }
}

LoadResult ThumbnailMaker::make(const std::filesystem::path& folder,
                                const LoadRequest& request) const noexcept {
  LoadResult result;
  result.key = request.key;
  result.side = request.side;
  try {
    const FoundFile& found = request.file;
    const FileVersion file{folder / found.name, found.modified, found.size, found.id.inode, found.changed};
    if (!isCurrent(file.path, request, result) || readStore(file, request, result)) return result;
    decode(file, request, result);
  } catch (const std::exception&) {
    // Out of memory, outside the decoder, which reports its own errors.
    result.broken = true;
    result.mayPass = true;
  }
  return result;
}

}  // namespace kestrel::thumbnails
