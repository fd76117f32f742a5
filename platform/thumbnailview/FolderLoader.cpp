#include "FolderLoader.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <iterator>
#include <mutex>
#include <optional>
#include <utility>

#include "FolderReading.h"
#include "LoadOrder.h"
#include "ThumbnailMaker.h"
#include "Workers.h"

namespace kestrel::thumbnails {
namespace {

/// Results handed over in one call: few enough that painting and input get their turn in between.
constexpr std::size_t kBatch = 32;
/// Workers pause while this many results wait for the owner, which bounds their memory.
constexpr std::size_t kMostWaiting = 64;

}  // namespace

/// What the owner's thread and the workers share. It lives until the last job has ended.
class FolderLoader::State final : public Workers::Source, public std::enable_shared_from_this<State> {
 public:
  State(const Services& services, Listener& listener, std::function<void()> wake)
      : post_(services.post),
        access_(services.access),
        maker_(services.store, services.access),
        wake_(std::move(wake)),
        listener_(&listener) {}

  // On the owner's thread.

  /// Returns the watch of the previous folder, to be destroyed on a worker thread, since that may wait.
  std::shared_ptr<FolderAccess::Watch> open(const std::filesystem::path& folder) {
    const std::lock_guard lock(mutex_);
    auto watch = leave();
    folder_ = folder;
    open_ = true;
    mustList_ = true;
    wake_();
    return watch;
  }

  std::shared_ptr<FolderAccess::Watch> close() {
    const std::lock_guard lock(mutex_);
    return leave();
  }

  void list() {
    const std::lock_guard lock(mutex_);
    mustList_ = open_;
    wake_();
  }

  template <typename Change>
  void changeOrder(Change change) {
    const std::lock_guard lock(mutex_);
    change(order_);
    wake_();
  }

  bool watched() const {
    const std::lock_guard lock(mutex_);
    return watch_ && !watchEnded_ && watch_->available();
  }

  bool idle() const {
    const std::lock_guard lock(mutex_);
    return !mustList_ && !mustAwait_ && !reading_ && noticed_.empty() && order_.empty() &&
           order_.atWork() == 0 && inbox_.empty();
  }

  void detach() { listener_ = nullptr; }

  // On a worker thread.

  std::function<void()> take(Workers::Duty duty) override {
    const std::lock_guard lock(mutex_);
    if (!open_) return {};
    if (auto job = takeReading()) return job;
    return duty == Workers::Duty::kAny ? takeDecoding() : nullptr;
  }

 private:
  /// What the listener has not received yet; in this order.
  struct Inbox {
    std::optional<FolderListing> listing;
    std::vector<Listener::Changes> changes;
    std::vector<LoadResult> results;

    bool empty() const { return !listing && changes.empty() && results.empty(); }
  };

  /// With the mutex.
  std::function<void()> takeReading() {
    if (reading_) return {};
    const std::uint64_t visit = visit_;
    if (mustList_) {
      reading_ = true;
      mustList_ = false;
      mustAwait_ = false;
      // The listing covers what was noticed before it.
      noticed_.clear();
      return [self = shared_from_this(), visit, folder = folder_] { self->readFolder(visit, folder); };
    }
    if (mustAwait_) {
      reading_ = true;
      mustAwait_ = false;
      return [self = shared_from_this(), visit, folder = folder_] { self->awaitFolder(visit, folder); };
    }
    if (!noticed_.empty()) {
      reading_ = true;
      return [self = shared_from_this(), visit, folder = folder_, noticed = std::exchange(noticed_, {})] {
        self->readChanges(visit, folder, noticed);
      };
    }
    return {};
  }

  /// With the mutex.
  std::function<void()> takeDecoding() {
    if (inbox_.results.size() >= kMostWaiting) return {};
    const std::uint64_t visit = visit_;
    if (auto request = order_.take()) {
      return [self = shared_from_this(), visit, folder = folder_, request = std::move(*request)] {
        self->load(visit, folder, request);
      };
    }
    return {};
  }

  /// With the mutex.
  std::shared_ptr<FolderAccess::Watch> leave() {
    ++visit_;
    open_ = false;
    mustList_ = false;
    mustAwait_ = false;
    reading_ = false;
    noticed_.clear();
    order_.clear();
    inbox_ = {};
    watchEnded_ = false;
    return std::exchange(watch_, nullptr);
  }

  bool isCurrent(std::uint64_t visit) const { return visit_ == visit; }

  void startWatch(std::uint64_t visit, const std::filesystem::path& folder) {
    std::shared_ptr<FolderAccess::Watch> ended;
    {
      const std::lock_guard lock(mutex_);
      if (!isCurrent(visit) || (watch_ && !watchEnded_)) return;
      ended = std::exchange(watch_, nullptr);
      watchEnded_ = false;
    }
    ended.reset();
    std::shared_ptr<FolderAccess::Watch> watch =
        access_->watch(folder, [weak = weak_from_this(), visit](os::FolderChanges changes) {
          if (const auto self = weak.lock()) self->notice(visit, std::move(changes));
        });
    const std::lock_guard lock(mutex_);
    // Else the folder was left meanwhile, and the watch ends here, after the mutex is released.
    if (isCurrent(visit)) watch_.swap(watch);
  }

  void readFolder(std::uint64_t visit, const std::filesystem::path& folder) {
    startWatch(visit, folder);
    FolderListing listing = listFolder(*access_, folder, [this, visit] { return !isCurrent(visit); });
    const std::lock_guard lock(mutex_);
    if (!isCurrent(visit)) return;
    reading_ = false;
    // It went during the listing, which may have found all of its files.
    if (watchEnded_) listing = {{}, kFolderGone, true};
    // The listing covers what was found before it.
    inbox_.changes.clear();
    if (!listing.problem.empty()) mustAwait_ = true;
    isMissing_ = listing.isMissing;
    inbox_.listing = std::move(listing);
    postDelivery();
    wake_();
  }

  /// The folder is gone or cannot be read: lists it again when the entry changes that leads to it.
  void awaitFolder(std::uint64_t visit, const std::filesystem::path& folder) {
    std::shared_ptr<FolderAccess::Watch> watch;
    std::filesystem::path entry;
    do {
      entry = firstMissing(folder);
      watch = access_->watch(entry.parent_path(), [weak = weak_from_this(), visit, name = entry.filename()](
                                                      const os::FolderChanges& changes) {
        const auto self = weak.lock();
        if (self && concerns(changes, name)) self->listAgain(visit);
      });
      // Not what came before the watch began.
    } while (firstMissing(folder) != entry);
    const bool isThere = isFolder(folder);
    const std::lock_guard lock(mutex_);
    if (!isCurrent(visit)) return;
    reading_ = false;
    watch_.swap(watch);
    watchEnded_ = true;
    if (isMissing_ && isThere) mustList_ = true;
    // Nothing to deliver: wakes an owner that waits until the loader is idle.
    postDelivery();
    wake_();
  }

  bool isFolder(const std::filesystem::path& path) const {
    os::FolderEntry entry;
    return !access_->examine(path, entry) && entry.kind == os::EntryKind::kFolder;
  }

  /// The uppermost folder on the way that does not exist; the folder itself if all exist.
  std::filesystem::path firstMissing(const std::filesystem::path& folder) const {
    std::filesystem::path missing = folder.has_filename() ? folder : folder.parent_path();
    while (missing.parent_path().has_relative_path() && !isFolder(missing.parent_path())) {
      missing = missing.parent_path();
    }
    return missing;
  }

  static bool concerns(const os::FolderChanges& changes, const std::filesystem::path& name) {
    return changes.overflow || changes.folderGone ||
           std::any_of(changes.changes.begin(), changes.changes.end(),
                       [&](const os::FolderChange& change) { return change.name == name; });
  }

  /// On the thread of a watch.
  void listAgain(std::uint64_t visit) {
    const std::lock_guard lock(mutex_);
    if (!isCurrent(visit)) return;
    mustList_ = true;
    wake_();
  }

  /// On the thread of the watch.
  void notice(std::uint64_t visit, os::FolderChanges changes) {
    const std::lock_guard lock(mutex_);
    if (!isCurrent(visit)) return;
    std::move(changes.changes.begin(), changes.changes.end(), std::back_inserter(noticed_));
    if (changes.overflow) mustList_ = true;
    if (changes.folderGone) {
      watchEnded_ = true;
      mustAwait_ = true;
      isMissing_ = true;
      inbox_.changes.emplace_back().folderGone = true;
      postDelivery();
    }
    wake_();
  }

  void readChanges(std::uint64_t visit, const std::filesystem::path& folder,
                   const std::vector<os::FolderChange>& noticed) {
    Listener::Changes found = examineChanges(*access_, folder, noticed);
    const std::lock_guard lock(mutex_);
    if (!isCurrent(visit)) return;
    reading_ = false;
    inbox_.changes.push_back(std::move(found));
    postDelivery();
    wake_();
  }

  void load(std::uint64_t visit, const std::filesystem::path& folder, const LoadRequest& request) {
    LoadResult result = maker_.make(folder, request);
    const std::lock_guard lock(mutex_);
    if (!isCurrent(visit)) return;
    inbox_.results.push_back(std::move(result));
    postDelivery();
  }

  /// With the mutex. While it is held the folder cannot be left, so `post_` is never called afterwards.
  void postDelivery() {
    if (std::exchange(deliveryPosted_, true)) return;
    post_([weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->deliver();
    });
  }

  void deliver();

  const Post post_;
  const std::shared_ptr<FolderAccess> access_;
  const ThumbnailMaker maker_;
  const std::function<void()> wake_;
  Listener* listener_;  ///< of the owner's thread; null after the loader is destroyed

  mutable std::mutex mutex_;
  /// Increased when a folder is left; jobs of earlier visits drop what they found. Written with the mutex.
  std::atomic<std::uint64_t> visit_ = 0;
  // Guarded by the mutex
  std::filesystem::path folder_;
  bool open_ = false;
  bool mustList_ = false;
  bool mustAwait_ = false;  ///< the folder is gone or cannot be read, and is not waited for yet
  bool isMissing_ = false;  ///< when it was read last
  bool reading_ =
      false;  ///< one job lists or awaits the folder or examines changes, so that they stay in order
  std::vector<os::FolderChange> noticed_;
  LoadOrder order_;
  Inbox inbox_;
  bool deliveryPosted_ = false;
  std::shared_ptr<FolderAccess::Watch> watch_;
  bool watchEnded_ = false;  ///< it watches no more, or a folder above; a listing watches again
};

void FolderLoader::State::deliver() {
  Inbox batch;
  std::uint64_t visit = 0;
  {
    const std::lock_guard lock(mutex_);
    deliveryPosted_ = false;
    visit = visit_;
    batch.listing = std::exchange(inbox_.listing, std::nullopt);
    batch.changes = std::exchange(inbox_.changes, {});
    auto& results = inbox_.results;
    const bool paused = results.size() >= kMostWaiting;
    const auto end = results.begin() + static_cast<std::ptrdiff_t>(std::min(results.size(), kBatch));
    batch.results.assign(std::make_move_iterator(results.begin()), std::make_move_iterator(end));
    results.erase(results.begin(), end);
    // Not before: while a result waits here, the owner still asks for it.
    for (const LoadResult& result : batch.results) order_.finish(result.key, result.side);
    if (!results.empty()) postDelivery();
    if (paused) wake_();
  }
  // Each call may leave the folder or destroy the loader.
  const auto wanted = [this, visit] { return listener_ != nullptr && isCurrent(visit); };
  if (batch.listing && wanted()) {
    listener_->listed(std::move(batch.listing->files), batch.listing->problem);
  }
  for (Listener::Changes& changes : batch.changes) {
    if (wanted()) listener_->changed(std::move(changes));
  }
  if (!batch.results.empty() && wanted()) listener_->loaded(std::move(batch.results));
}

FolderLoader::FolderLoader(const Services& services, Listener& listener)
    : workers_(services.workers ? services.workers : Workers::shared()),
      state_(std::make_shared<State>(services, listener, workers_->waker())) {
  workers_->add(state_);
}

FolderLoader::~FolderLoader() {
  close();
  state_->detach();
}

void FolderLoader::dispose(std::shared_ptr<FolderAccess::Watch> watch) {
  if (watch) workers_->later([watch = std::move(watch)] {});
}

void FolderLoader::open(const std::filesystem::path& folder) { dispose(state_->open(folder)); }

void FolderLoader::close() { dispose(state_->close()); }

void FolderLoader::list() { state_->list(); }

void FolderLoader::want(std::vector<LoadRequest> first, std::vector<LoadRequest> later) {
  state_->changeOrder([&](LoadOrder& order) { order.want(std::move(first), std::move(later)); });
}

void FolderLoader::add(std::vector<LoadRequest> requests) {
  state_->changeOrder([&](LoadOrder& order) { order.add(std::move(requests)); });
}

void FolderLoader::remove(const std::vector<FileKey>& keys) {
  if (keys.empty()) return;
  state_->changeOrder([&](LoadOrder& order) { order.remove(keys); });
}

void FolderLoader::removeAll() {
  state_->changeOrder([](LoadOrder& order) { order.drop(); });
}

bool FolderLoader::watched() const { return state_->watched(); }

bool FolderLoader::idle() const { return state_->idle(); }

}  // namespace kestrel::thumbnails
