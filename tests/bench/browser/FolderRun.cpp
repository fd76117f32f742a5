#include "FolderRun.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <fstream>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/thumbnailview/FolderLoader.h"

namespace kestrel::bench {
namespace {

using namespace thumbnails;
using Clock = std::chrono::steady_clock;

/// The owner's thread: runs what is posted.
class EventLoop {
 public:
  Post post() {
    return [this](std::function<void()> call) {
      const std::lock_guard lock(mutex_);
      calls_.push_back(std::move(call));
      wake_.notify_one();
    };
  }

  void runUntil(const bool& done) {
    while (!done) {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, [this] { return !calls_.empty(); });
      const std::function<void()> call = std::move(calls_.front());
      calls_.pop_front();
      lock.unlock();
      call();
    }
  }

 private:
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::function<void()>> calls_;
};

class Run : public FolderLoader::Listener {
 public:
  Run(std::int32_t side, int screen, std::shared_ptr<ThumbnailStore> store) : side_(side), screen_(screen) {
    services_.post = loop_.post();
    services_.store = std::move(store);
  }

  FolderTimes load(const std::filesystem::path& folder) {
    begin_ = Clock::now();
    FolderLoader loader(services_, *this);
    loader_ = &loader;
    loader.open(folder);
    loop_.runUntil(done_);
    return times_;
  }

 private:
  void listed(std::vector<FoundFile> files, const std::string& problem) override {
    if (!problem.empty()) throw std::runtime_error(problem);
    times_.listed = Clock::now() - begin_;
    std::ranges::sort(files, {}, &FoundFile::name);
    std::vector<LoadRequest> requests;
    for (FoundFile& file : files) requests.push_back({requests.size() + 1, std::move(file), side_, true});
    waiting_ = requests.size();
    done_ = requests.empty();
    loader_->want(std::move(requests), {});
  }

  void loaded(std::vector<LoadResult> results) override {
    for (const LoadResult& result : results) {
      if (result.broken || result.bitmap.empty()) throw std::runtime_error("a file has no thumbnail");
      if (static_cast<int>(result.key) <= screen_ && ++shown_ == screen_)
        times_.first = Clock::now() - begin_;
    }
    waiting_ -= results.size();
    if (waiting_ > 0) return;
    times_.all = Clock::now() - begin_;
    done_ = true;
  }

  void changed(Changes) override {}

  EventLoop loop_;
  Services services_;
  const std::int32_t side_;
  const int screen_;
  Clock::time_point begin_;
  FolderLoader* loader_ = nullptr;
  std::size_t waiting_ = 0;
  int shown_ = 0;
  bool done_ = false;
  FolderTimes times_;
};

}  // namespace

FolderTimes loadFolder(const std::filesystem::path& folder, std::int32_t side, int screen,
                       std::shared_ptr<ThumbnailStore> store) {
  return Run(side, screen, std::move(store)).load(folder);
}

double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    constexpr std::string_view kPeak = "VmHWM:";
    if (line.starts_with(kPeak)) return std::stod(line.substr(kPeak.size())) * 1.024e-3;
  }
  throw std::runtime_error("the system does not report the memory");
}

}  // namespace kestrel::bench
