#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "base/RuntimeError.h"
#include "platform/thumbnailview/Services.h"

namespace kestrel::thumbnails::test {

/// A folder in memory. Its pictures are 400 by 300, one color each; decoding can be held up, and the changes
/// of the folder are reported when the test says so.
class FakeAccess final : public FolderAccess {
 public:
  struct File {
    std::uint64_t size = 1000;
    std::int64_t modified = 1;
    std::uint8_t shade = 0;
    bool broken = false;
    bool denied = false;
    std::int64_t changed = 1;
    std::uint64_t inode = 0;
    os::EntryKind kind = os::EntryKind::kRegular;
  };

  // The test's side.

  void put(const std::string& name) { put(name, File()); }
  void put(const std::string& name, const File& file) {
    const std::lock_guard lock(mutex_);
    files_[name] = file;
  }
  void remove(const std::string& name) {
    const std::lock_guard lock(mutex_);
    files_.erase(name);
  }
  void rename(const std::string& from, const std::string& to) {
    const std::lock_guard lock(mutex_);
    files_[to] = files_.at(from);
    files_.erase(from);
  }
  void fail(std::optional<os::FileFailure> failure) {
    const std::lock_guard lock(mutex_);
    failure_ = failure;
  }
  void watchable(bool value) {
    const std::lock_guard lock(mutex_);
    watchable_ = value;
  }

  /// Decoders wait from now on, each at its beginning.
  void hold() {
    const std::lock_guard lock(mutex_);
    held_ = true;
  }
  /// Held decoders end at once when they are canceled, as those of the engine do.
  void noticeCancellation() {
    const std::lock_guard lock(mutex_);
    noticesCancellation_ = true;
  }
  /// Lets all decoders go on.
  void release() {
    {
      const std::lock_guard lock(mutex_);
      held_ = false;
      allowed_ = 0;
    }
    changed_.notify_all();
  }
  /// Lets this many held decoders go on.
  void allow(int count) {
    {
      const std::lock_guard lock(mutex_);
      allowed_ += count;
    }
    changed_.notify_all();
  }
  /// Waits until so many decoders have begun since the start. False after a minute.
  bool waitForBegun(std::size_t count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::minutes(1), [&] { return begun_.size() >= count; });
  }
  /// The names in the order in which their decoders began.
  std::vector<std::string> begun() {
    const std::lock_guard lock(mutex_);
    return begun_;
  }
  std::size_t canceled() {
    const std::lock_guard lock(mutex_);
    return canceled_;
  }
  std::size_t finished() {
    const std::lock_guard lock(mutex_);
    return finished_;
  }
  int scans() {
    const std::lock_guard lock(mutex_);
    return scans_;
  }
  bool watching() {
    const std::lock_guard lock(mutex_);
    return watcher_ != nullptr;
  }
  /// Called once on the worker's thread in the next listing, after its last entry.
  void inNextScan(std::function<void()> call) {
    const std::lock_guard lock(mutex_);
    inScan_ = std::move(call);
  }
  /// Called on the worker's thread at the end of each decoder, before its result is judged. It may raise.
  void atEndOfDecode(std::function<void(const std::string& name)> call) {
    const std::lock_guard lock(mutex_);
    atEnd_ = std::move(call);
  }

  /// Reports changes, as the thread of the watch does.
  void report(os::FolderChanges changes) {
    os::FolderWatch::Changed watcher;
    {
      const std::lock_guard lock(mutex_);
      if (watcher_) watcher = *watcher_;
    }
    if (watcher) watcher(std::move(changes));
  }
  void reportChanged(const std::string& name) {
    os::FolderChanges changes;
    changes.changes.push_back({os::FolderChange::Kind::kChanged, name, {}});
    report(std::move(changes));
  }
  void reportGone(const std::string& name) {
    os::FolderChanges changes;
    changes.changes.push_back({os::FolderChange::Kind::kGone, name, {}});
    report(std::move(changes));
  }

  void reportRenamed(const std::vector<std::pair<std::string, std::string>>& renamings) {
    os::FolderChanges changes;
    for (const auto& [from, to] : renamings) {
      changes.changes.push_back({os::FolderChange::Kind::kRenamed, to, from});
    }
    report(std::move(changes));
  }
  void reportFolderGone() {
    os::FolderChanges changes;
    changes.folderGone = true;
    report(std::move(changes));
  }

  // The view's side.

  std::optional<os::FileFailure> scan(const std::filesystem::path& /*folder*/,
                                      const std::function<bool(os::FolderEntry&&)>& visit) override {
    std::map<std::string, File> files;
    std::optional<os::FileFailure> failure;
    std::function<void()> inScan;
    {
      const std::lock_guard lock(mutex_);
      ++scans_;
      files = files_;
      failure = failure_;
      inScan = std::exchange(inScan_, nullptr);
    }
    for (const auto& [name, file] : files) {
      if (!visit(entryOf(name, file))) return os::FileFailure{os::FileProblem::kCanceled};
    }
    if (inScan) inScan();
    return failure;
  }

  std::optional<os::FileFailure> examine(const std::filesystem::path& path, os::FolderEntry& entry) override {
    const std::lock_guard lock(mutex_);
    const auto file = files_.find(path.filename().string());
    if (file == files_.end()) return os::FileFailure{os::FileProblem::kMissing};
    entry = entryOf(file->first, file->second);
    return std::nullopt;
  }

  std::unique_ptr<Watch> watch(const std::filesystem::path& /*folder*/,
                               os::FolderWatch::Changed changed) override {
    const std::lock_guard lock(mutex_);
    watcher_ = std::make_shared<os::FolderWatch::Changed>(std::move(changed));
    return std::make_unique<FakeWatch>(*this, watcher_, watchable_);
  }

  std::optional<DecodedThumbnail> decode(const std::filesystem::path& path, std::int32_t side,
                                         const std::stop_token& canceled) override {
    const std::stop_callback wake(canceled, [this] {
      // A decoder is either waiting or has not looked yet.
      { const std::lock_guard lock(mutex_); }
      changed_.notify_all();
    });
    const auto isCanceled = [&] { return noticesCancellation_ && canceled.stop_requested(); };
    const std::string name = path.filename().string();
    File file;
    std::function<void(const std::string&)> atEnd;
    {
      std::unique_lock lock(mutex_);
      begun_.push_back(name);
      if (const auto found = files_.find(name); found != files_.end()) file = found->second;
      changed_.notify_all();
      changed_.wait(lock, [&] { return !held_ || allowed_ > 0 || isCanceled(); });
      if (isCanceled()) {
        ++canceled_;
        return std::nullopt;
      }
      if (held_) --allowed_;
      atEnd = atEnd_;
    }
    if (atEnd) atEnd(name);
    {
      const std::lock_guard lock(mutex_);
      ++finished_;
    }
    changed_.notify_all();
    if (file.denied) throw RuntimeError(err::kPermissionDenied, "Permission is denied.");
    if (file.broken) throw RuntimeError(err::kInvalidPicture, "The file is not a picture.");
    const std::int32_t width = std::min(side, 400);
    return DecodedThumbnail{
        engine::Bitmap::filled(width, width * 3 / 4, {file.shade, 0, 0, 255}), {400, 300}, {}};
  }

 private:
  class FakeWatch final : public Watch {
   public:
    FakeWatch(FakeAccess& access, std::shared_ptr<os::FolderWatch::Changed> watcher, bool available)
        : access_(access), watcher_(std::move(watcher)), available_(available) {}
    ~FakeWatch() override {
      const std::lock_guard lock(access_.mutex_);
      if (access_.watcher_ == watcher_) access_.watcher_ = nullptr;
    }
    bool available() const override { return available_; }

   private:
    FakeAccess& access_;
    std::shared_ptr<os::FolderWatch::Changed> watcher_;
    bool available_;
  };

  static os::FolderEntry entryOf(const std::string& name, const File& file) {
    os::FolderEntry entry;
    entry.name = name;
    entry.kind = file.kind;
    entry.size = file.size;
    entry.modified = file.modified;
    entry.changed = file.changed;
    entry.id = {1, file.inode};
    return entry;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::string, File> files_;
  std::optional<os::FileFailure> failure_;
  bool watchable_ = true;
  bool held_ = false;
  int allowed_ = 0;
  int scans_ = 0;
  std::vector<std::string> begun_;
  std::size_t finished_ = 0;
  std::size_t canceled_ = 0;
  bool noticesCancellation_ = false;
  std::function<void(const std::string&)> atEnd_;
  std::function<void()> inScan_;
  std::shared_ptr<os::FolderWatch::Changed> watcher_;
};

}  // namespace kestrel::thumbnails::test
