#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "ThumbnailStore.h"
#include "engine/pixels/Bitmap.h"
#include "platform/os/FolderScan.h"
#include "platform/os/FolderWatch.h"

namespace kestrel::thumbnails {

class Workers;

/// Runs a function on the owner's thread, later and in the order of the calls, after input and painting that
/// wait there. Callable from any thread, must not run the function itself and must not raise.
using Post = std::function<void(std::function<void()>)>;

/// A decoded thumbnail.
struct DecodedThumbnail {
  engine::Bitmap bitmap;
  Size pictureSize;    ///< 0 by 0 where unknown
  std::string notice;  ///< the decode error if the bitmap is incomplete
};

/// Access to folders and files; the default is the disk. Members are called on worker threads.
class FolderAccess {
 public:
  /// Ends the watch in its destructor, as `os::FolderWatch`.
  class Watch {
   public:
    virtual ~Watch() = default;
    virtual bool available() const = 0;
  };

  virtual ~FolderAccess() = default;
  /// As `os::scanFolder` with all details.
  virtual std::optional<os::FileFailure> scan(const std::filesystem::path& folder,
                                              const std::function<bool(os::FolderEntry&&)>& visit);
  /// As `os::examineEntry`.
  virtual std::optional<os::FileFailure> examine(const std::filesystem::path& path, os::FolderEntry& entry);
  /// As `os::FolderWatch`.
  virtual std::unique_ptr<Watch> watch(const std::filesystem::path& folder, os::FolderWatch::Changed changed);
  /// Decodes a thumbnail, at most `side` pixels along its longest side. No value if it was canceled. Raises
  /// RuntimeError.
  virtual std::optional<DecodedThumbnail> decode(const std::filesystem::path& path, std::int32_t side,
                                                 const std::stop_token& canceled);
};

/// What a thumbnail view works with.
struct Services {
  /// Required. It must remain callable until the view is destroyed.
  Post post;
  /// Null for none.
  std::shared_ptr<ThumbnailStore> store = nullptr;
  /// Null for the threads that all views of the process share.
  std::shared_ptr<Workers> workers = nullptr;
  std::shared_ptr<FolderAccess> access = std::make_shared<FolderAccess>();
  /// The path on the disk of a folder that is assigned to `Folder`. Null: the text itself.
  std::function<std::filesystem::path(const std::string& folder)> pathOf = nullptr;
  /// Between a folder and a name in `Thumbnail::Filename`.
  std::string separator = "/";
  std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
  /// Bound of the memory of decoded thumbnails, in bytes; those nearest to the viewport are kept.
  std::size_t memory = std::size_t{64} << 20;
};

}  // namespace kestrel::thumbnails
