#include "ThumbnailReader.h"

#include <utility>

#include "base/DescribedError.h"

namespace kestrel::engine {
namespace {

/// Nothing if the request was canceled.
std::optional<Thumbnail> readOrDescribe(const std::filesystem::path& path, std::int32_t longestSide,
                                        const std::stop_token& canceled) {
  try {
    return readThumbnail(path, longestSide, canceled);
  } catch (const Canceled&) {
    return std::nullopt;
  } catch (...) {
    Thumbnail unreadable;
    unreadable.notice = DescribeCurrentError().Description;
    return unreadable;
  }
}

}  // namespace

ThumbnailReader::~ThumbnailReader() {
  cancel();
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void ThumbnailReader::read(std::filesystem::path path, std::int32_t longestSide, Done done) {
  if (!thread_.joinable()) thread_ = std::thread([this] { serve(); });
  cancel();
  {
    const std::lock_guard lock(mutex_);
    next_ = Request{std::move(path), longestSide, std::move(done)};
  }
  wake_.notify_one();
}

void ThumbnailReader::cancel() {
  const std::lock_guard lock(mutex_);
  canceled_.request_stop();
  canceled_ = {};
  next_.reset();
}

void ThumbnailReader::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return ending_ || next_; });
    if (ending_) return;
    const Request request = *std::exchange(next_, std::nullopt);
    const std::stop_token canceled = canceled_.get_token();
    lock.unlock();
    std::optional<Thumbnail> thumbnail = readOrDescribe(request.path, request.longestSide, canceled);
    lock.lock();
    // Under the lock, so that `cancel` cannot return while the result is being handed over.
    if (thumbnail && !canceled.stop_requested()) request.done(std::move(*thumbnail));
  }
}

}  // namespace kestrel::engine
