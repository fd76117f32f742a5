#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "Services.h"

namespace kestrel::thumbnails {

/// A file in a folder that may be a picture. The members are those of `os::FolderEntry`.
struct FoundFile {
  std::filesystem::path name;
  std::uint64_t size = 0;     ///< bytes
  std::int64_t modified = 0;  ///< nanoseconds since 1970-01-01 UTC
  std::int64_t changed = 0;
  os::FileId id;
};

/// Whether both are one file with the same content, by all that is known without reading it. False where in
/// doubt, for example after a change of permissions.
bool sameVersion(const FoundFile& one, const FoundFile& other);

/// Identifies one version of a file to the loader; not 0 and not used again.
using FileKey = std::uint64_t;

/// A thumbnail to load.
struct LoadRequest {
  FileKey key = 0;
  FoundFile file;
  std::int32_t side = 0;  ///< longest side in pixels
  /// False if it only has to be made and kept in the store: then the result may have no bitmap.
  bool bitmap = true;
  /// Set by the loader: stops the decoder.
  std::stop_token canceled = {};
};

/// The end of a request.
struct LoadResult {
  FileKey key = 0;
  std::int32_t side = 0;  ///< of the request
  bool canceled = false;  ///< there is no result: the request was no longer wanted
  bool broken = false;    ///< the notice has the reason
  bool mayPass = false;   ///< the reason is none of the file's content, such as a denied permission
  engine::Bitmap bitmap;
  Size pictureSize;
  std::string notice;
  /// The file on the disk is no longer the version that was asked for: there is no thumbnail, and `found` is
  /// the file now, or has an empty name if it is gone.
  bool stale = false;
  FoundFile found;
};

/// Lists one folder at a time and decodes its pictures on worker threads.
///
/// All members are called on the owner's thread, where the listener is called too, through `Services::post`.
/// None waits for a file or a decoder: leaving a folder drops what was asked for, and stops the decoders at
/// work, whose results are discarded. The threads outlive the loader.
class FolderLoader {
 public:
  /// Receives what was found. A member may call the loader and may destroy it.
  class Listener {
   public:
    virtual ~Listener() = default;
    /// The files of the whole folder in natural order, after `open` and `list`. `problem` is empty, or a
    /// sentence for the user if the folder could not be read, as a whole or to its end.
    virtual void listed(std::vector<FoundFile> files, const std::string& problem) = 0;
    /// Some results, in the order of their completion.
    virtual void loaded(std::vector<LoadResult> results) = 0;
    /// Files that are new or may differ, and names that are gone, in no order. `renamed` files come before
    /// the others, in the order in which it happened, and have kept their content.
    struct Changes {
      struct Renamed {
        std::filesystem::path from;
        FoundFile to;
      };
      std::vector<Renamed> renamed;
      std::vector<FoundFile> changed;
      std::vector<std::filesystem::path> gone;
      bool folderGone = false;
    };
    virtual void changed(Changes changes) = 0;
  };

  /// The listener must outlive the loader.
  FolderLoader(const Services& services, Listener& listener);
  FolderLoader(const FolderLoader&) = delete;
  FolderLoader& operator=(const FolderLoader&) = delete;
  ~FolderLoader();

  /// Leaves the folder, then watches and lists another one. A folder that is gone or cannot be read is listed
  /// again when it comes back or its permissions change.
  void open(const std::filesystem::path& folder);
  /// Lists the open folder again.
  void list();
  /// Leaves the folder. After the return the listener is not called for it any more.
  void close();

  /// Replaces what is to be loaded: `first` before all else in this order; `later` when nothing else is left.
  /// A request at work that came from these lists only, and is no longer in them, is canceled.
  void want(std::vector<LoadRequest> first, std::vector<LoadRequest> later);
  /// Adds requests after `first`, in this order, which stay until they are done or removed.
  void add(std::vector<LoadRequest> requests);
  /// Drops the requests of files, and cancels those at work.
  void remove(const std::vector<FileKey>& keys);
  /// Drops all requests, and cancels those at work.
  void removeAll();

  /// Whether the open folder reports its changes. False until it is known.
  bool watched() const;
  /// Whether there is nothing to do, and the listener has received everything.
  bool idle() const;

 private:
  class State;

  void dispose(std::shared_ptr<FolderAccess::Watch> watch);

  std::shared_ptr<Workers> workers_;
  std::shared_ptr<State> state_;
};

}  // namespace kestrel::thumbnails
