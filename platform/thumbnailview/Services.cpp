#include "Services.h"

#include <utility>

#include "engine/thumbnails/Thumbnails.h"

namespace kestrel::thumbnails {
namespace {

class DiskWatch final : public FolderAccess::Watch {
 public:
  DiskWatch(const std::filesystem::path& folder, os::FolderWatch::Changed changed)
      : watch_(folder, std::move(changed)) {}
  bool available() const override { return watch_.available(); }

 private:
  os::FolderWatch watch_;
};

}  // namespace

std::optional<os::FileFailure> FolderAccess::scan(const std::filesystem::path& folder,
                                                  const std::function<bool(os::FolderEntry&&)>& visit) {
  return os::scanFolder(folder, os::ScanDetail::kAll, visit);
}

std::optional<os::FileFailure> FolderAccess::examine(const std::filesystem::path& path,
                                                     os::FolderEntry& entry) {
  return os::examineEntry(path, entry);
}

std::unique_ptr<FolderAccess::Watch> FolderAccess::watch(const std::filesystem::path& folder,
                                                         os::FolderWatch::Changed changed) {
  return std::make_unique<DiskWatch>(folder, std::move(changed));
}

std::optional<DecodedThumbnail> FolderAccess::decode(const std::filesystem::path& path, std::int32_t side,
                                                     const std::stop_token& canceled) {
  try {
    engine::Thumbnail thumbnail = engine::readThumbnail(path, side, canceled);
    return DecodedThumbnail{std::move(thumbnail.bitmap),
                            {thumbnail.pictureWidth, thumbnail.pictureHeight},
                            std::move(thumbnail.notice)};
  } catch (const engine::Canceled&) {
    return std::nullopt;
  }
}

}  // namespace kestrel::thumbnails
