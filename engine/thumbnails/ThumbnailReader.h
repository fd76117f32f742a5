#pragma once

#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

#include "Thumbnails.h"

namespace kestrel::engine {

/// Reads thumbnails on a thread of its own, for a caller that must not wait. One request at a time: the next
/// one replaces it.
///
/// The members are called on one thread, the owner's. The thread of the reader is created with the first
/// request.
class ThumbnailReader {
 public:
  using Done = std::function<void(Thumbnail thumbnail)>;

  ThumbnailReader() = default;
  ThumbnailReader(const ThumbnailReader&) = delete;
  ThumbnailReader& operator=(const ThumbnailReader&) = delete;
  /// Cancels, and waits until a decoder at work has noticed it.
  ~ThumbnailReader();

  /// Cancels, then asks for the thumbnail of a file, at least 1 pixel along its longest side.
  ///
  /// `done` gets it on the reader's thread; a file that cannot be read gives an empty bitmap and a notice
  /// with the reason. `done` must not call the reader and must not raise: it hands the result over to its
  /// thread.
  void read(std::filesystem::path path, std::int32_t longestSide, Done done);

  /// Drops the request if there is one. After the return its `done` is not called any more. Does not wait for
  /// a decoder at work, which ends soon.
  void cancel();

 private:
  struct Request {
    std::filesystem::path path;
    std::int32_t longestSide;
    Done done;
  };

  void serve();

  std::mutex mutex_;
  std::condition_variable wake_;
  // Guarded by the mutex
  std::optional<Request> next_;
  std::stop_source canceled_;  ///< of the requests since the last cancellation: one at most
  bool ending_ = false;

  std::thread thread_;
};

}  // namespace kestrel::engine
