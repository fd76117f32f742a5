#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Counting.h"
#include "FileTransfer.h"
#include "platform/os/OpenFolder.h"

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

  /// A folder at work, with its path for reports. Its entries are reached through the open one, so that no
  /// link or folder that takes its name leads the work elsewhere.
  struct Folder {
    std::filesystem::path path;
    os::OpenFolder open;
  };

  /// A name in a folder. There may be no such entry.
  struct Entry {
    const Folder* folder = nullptr;
    std::filesystem::path name;

    std::filesystem::path path() const { return folder->path / name; }
    os::EntryPath at() const { return folder->open.entry(name); }
  };

  struct Source : Entry {
    os::EntryFacts facts;
  };

  /// Something that can be given a name.
  struct Placer {
    /// Called before, unless the user skips the entry. May be null.
    std::function<End()> prepare;
    /// Fails with kExists if the name is taken, unless it shall replace.
    std::function<Failure(const os::EntryPath& target, bool replace)> place;
    bool canReplace = true;
    bool takesSource = false;  ///< `place` removes the source from its folder
  };

  // Work.cpp
  void processAll();
  void prepareTarget();
  void count();
  Count countSource(const std::filesystem::path& source);
  End process(const std::filesystem::path& source);
  End transferSource(const std::filesystem::path& source);
  void leave(std::size_t first, const std::string& reason);
  End trash(const std::filesystem::path& path);
  End remove(const std::filesystem::path& path);
  bool stopped();
  void begin(const std::filesystem::path& path);
  /// A file is done.
  void countFile();
  /// A file needs no more work, done or not.
  void passFile();
  End failed(const std::filesystem::path& path, std::string reason);
  End failed(const std::filesystem::path& path, const os::FileFailure& failure);
  std::optional<Choice> ask(Question question);
  std::optional<Choice>& forAll(const Question& question);

  // Placing.cpp
  static bool sameEntry(const Source& source, const Entry& target, const os::EntryFacts& facts);
  static bool leadsTo(const Source& source, const os::EntryFacts& target);
  End transfer(const Entry& source, const Entry& target);
  End transferFile(const Source& source, const Entry& target);
  End copyFile(const Source& source, const Entry& target);
  End copyLink(const Source& source, const Entry& target);
  End transferFolder(const Source& source, const Entry& target);
  End transferEntries(const Source& source, const Entry& target, bool made);
  End transferEach(const Folder& from, const Folder& into, const std::vector<std::filesystem::path>& names);
  End moveInPlace(const Source& source, const Entry& target);
  End settle(const Source& source, const Entry& target, const Placer& placer, Entry* placed = nullptr);
  End checkFolders(const Source& source, const Entry& target, const Placer& placer);
  End decide(const Source& source, const Entry& target, const Placer& placer, std::optional<Choice>& choice);
  End removeOriginal(const Source& original, const os::EntryFacts& copied, const Entry& copy);
  End failedToPlace(const Source& source, const Folder& folder, const os::FileFailure& failure);

  const Request& request_;
  Caller& caller_;
  Report report_;
  Progress progress_;
  std::vector<Count> counts_;  ///< of each source
  std::size_t source_ = 0;     ///< the first one whose end is not in the report
  int depth_ = 0;              ///< of folders in it
  bool partly_ = false;        ///< some of its files are done
  Folder folder_;              ///< the target
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
