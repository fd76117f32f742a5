#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <stop_token>
#include <utility>
#include <vector>

#include "FolderLoader.h"

namespace kestrel::thumbnails {

/// What to load next: first what is visible, then every file of the folder, then what may become visible.
/// Not thread-safe.
class LoadOrder {
 public:
  /// See `FolderLoader::want`.
  void want(std::vector<LoadRequest> first, std::vector<LoadRequest> later);
  /// See `FolderLoader::add`.
  void add(std::vector<LoadRequest> requests);
  void remove(const std::vector<FileKey>& keys);
  /// Drops all requests, and cancels those at work.
  void drop();
  /// The same; those at work are no longer known.
  void clear();

  /// The next request, with its token, which is then at work until `finish`. A file is never at work twice at
  /// the same size.
  std::optional<LoadRequest> take();
  /// Ends the request of a file at a size that was taken. An unknown one is ignored.
  void finish(FileKey key, std::int32_t side);

  bool empty() const;
  std::size_t atWork() const { return atWork_.size(); }

 private:
  using Identity = std::pair<FileKey, std::int32_t>;

  struct Work {
    bool ofFolder = false;  ///< asked for by `add`
    std::stop_source canceled = {};
  };

  static Identity identityOf(const LoadRequest& request) { return {request.key, request.side}; }
  bool takeFrom(std::deque<LoadRequest>& list, std::optional<LoadRequest>& taken);
  /// Whether `want` has asked for it.
  bool isWanted(const Identity& identity) const;

  std::deque<LoadRequest> first_;
  /// Requests that were taken by another list or removed are left in the queue and skipped later.
  std::deque<LoadRequest> files_;
  std::set<Identity> waiting_;  ///< of `files_`, what is still to be done
  std::deque<LoadRequest> later_;
  std::map<Identity, Work> atWork_;
};

}  // namespace kestrel::thumbnails
