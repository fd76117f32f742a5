#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "LeftFiles.h"
#include "Snapshot.h"
#include "imaging/contract/Recovery.h"
#include "platform/os/OwnedFile.h"

namespace kestrel::engine {

/// The journal of one editor: a file in a folder, written by a thread of its own. The thread starts with the
/// first request and owns the file; all other members belong to the thread that made the journal.
class Journal final : public RecoveryJournal {
 public:
  explicit Journal(std::filesystem::path folder, RecoveryBounds bounds);
  ~Journal() override;
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  void Keep(ImgX& Picture, const std::string& Filename) override;
  void Discard() override;
  void Leave() override;
  void Adopt(std::unique_ptr<TakenPicture> Taken) override;
  void Finish() override;
  std::string Failure() const override;

 private:
  struct Request {
    enum Kind { kKeep, kDiscard, kLeave, kAdopt } kind;
    Snapshot snapshot = {};
    os::OwnedFile file = {};
  };

  void add(Request request);
  void serve();
  void carryOut(Request& request);
  void keep(Snapshot& snapshot);
  bool isCanceled() const;

  const std::filesystem::path folder_;
  const RecoveryBounds bounds_;
  os::OwnedFile file_;

  mutable std::mutex mutex_;
  std::condition_variable wake_, idle_;
  std::deque<Request> requests_;
  bool working_ = false;
  bool canceled_ = false;  ///< the write under way shall end
  bool ending_ = false;
  std::string failure_;
  std::thread thread_;
};

}  // namespace kestrel::engine
