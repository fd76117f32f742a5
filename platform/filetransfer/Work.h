#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Counting.h"
#include "FileTransfer.h"

namespace kestrel::transfer {

/// One run of a request.
class Work {
 public:
  Work(const Request& request, Caller& caller);

  Report run();

 private:
  using Failure = std::optional<os::FileFailure>;

  /// How the work on an entry ended. What is not done is in the report.
  enum class End {
    kDone,
    kNotDone,
    kStopped,    ///< canceled
    kOtherDisk,  ///< cannot be moved without a copy
    kMerge,      ///< the entries of the folder go into an existing one
  };

  /// Something that can be given a name.
  struct Placer {
    /// Called before, unless the user skips the entry. May be null.
    std::function<End()> prepare;
    /// Fails with kExists if the name is taken, unless it shall replace.
    std::function<Failure(const std::filesystem::path& target, bool replace)> place;
    bool canReplace = true;
    bool takesSource = false;  ///< `place` removes the source from its folder
  };

  // Work.cpp
  void processAll();
  void prepareTarget();
  void count();
  Count countSource(const std::filesystem::path& source);
  End process(const std::filesystem::path& source);
  void leave(std::size_t first, const std::string& reason);
  End trash(const std::filesystem::path& path);
  End remove(const std::filesystem::path& path);
  bool stopped();
  void begin(const std::filesystem::path& path);
  void countFile();
  End failed(const std::filesystem::path& path, std::string reason);
  End failed(const std::filesystem::path& path, const os::FileFailure& failure);
  std::optional<Choice> ask(Question question);
  std::optional<Choice>& forAll(const Question& question);

  // Placing.cpp
  End transfer(const std::filesystem::path& source, const std::filesystem::path& target);
  End transferFile(const FileInQuestion& source, const std::filesystem::path& target);
  End copyFile(const FileInQuestion& source, const std::filesystem::path& target);
  End copyLink(const FileInQuestion& source, const std::filesystem::path& target);
  End transferFolder(const FileInQuestion& source, const std::filesystem::path& target);
  End transferEntries(const FileInQuestion& source, const std::filesystem::path& target, bool made);
  End moveInPlace(const FileInQuestion& source, const std::filesystem::path& target);
  End settle(const FileInQuestion& source, const std::filesystem::path& target, const Placer& placer,
             std::filesystem::path* placed = nullptr);
  End checkFolders(const FileInQuestion& source, const std::filesystem::path& target, const Placer& placer);
  End decide(const FileInQuestion& source, const std::filesystem::path& target, const Placer& placer,
             std::optional<Choice>& choice);
  End removeOriginal(const FileInQuestion& original, const os::EntryFacts& copied,
                     const std::filesystem::path& copy);
  End failedToPlace(const std::filesystem::path& path, const std::filesystem::path& folder,
                    const os::FileFailure& failure);

  const Request& request_;
  Caller& caller_;
  Report report_;
  Progress progress_;
  std::vector<Count> counts_;  ///< of each source
  std::size_t source_ = 0;     ///< the first one whose end is not in the report
  int depth_ = 0;              ///< of folders in it
  std::filesystem::path folder_;
  std::optional<os::EntryFacts> folderFacts_;
  // Answers for all further questions.
  std::optional<Choice> clashForAll_;
  std::optional<Choice> irreplaceableForAll_;
  std::optional<Choice> foldersForAll_;
  std::optional<Choice> noTrashForAll_;
  /// The numbers of disk and file of what this work has given a name.
  std::set<std::pair<std::uint64_t, std::uint64_t>> placed_;
};

}  // namespace kestrel::transfer
