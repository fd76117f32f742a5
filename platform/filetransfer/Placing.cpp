// Copies and moves: what is done in which order, so that nothing is lost.

#include <algorithm>
#include <utility>

#include "FreeName.h"
#include "Work.h"
#include "platform/os/FailureText.h"
#include "platform/os/FileCopy.h"
#include "platform/os/Paths.h"

namespace kestrel::transfer {
namespace {

namespace fs = std::filesystem;
using os::EntryType;
using os::FileProblem;

std::pair<std::uint64_t, std::uint64_t> numberOf(const os::EntryFacts& facts) {
  return {facts.id.device, facts.id.inode};
}

/// Whether the folder, or one above it, is that one.
bool isInside(fs::path folder, const os::EntryFacts& outer) {
  for (;; folder = folder.parent_path()) {
    os::EntryFacts facts;
    if (!os::readFacts(folder, facts) && os::sameFile(facts, outer)) return true;
    if (folder == folder.parent_path()) return false;
  }
}

std::string deniedIn(const fs::path& folder) {
  return "permission to write to the folder \"" + os::textOf(folder) + "\" is denied";
}

}  // namespace

/// Whether the target, which has these facts, is the source itself and not another hard link.
bool Work::sameEntry(const Source& source, const Entry& target, const os::EntryFacts& facts) {
  if (!os::sameFile(source.facts, facts)) return false;
  if (facts.type == EntryType::kFolder || facts.names == 1) return true;
  os::EntryFacts one, other;
  return source.name == target.name && !os::readFacts(source.folder->open.itself(), one) &&
         !os::readFacts(target.folder->open.itself(), other) && os::sameFile(one, other);
}

/// Whether the source is a symbolic link to that file, which would be gone once the link replaced it.
bool Work::leadsTo(const Source& source, const os::EntryFacts& target) {
  os::EntryFacts facts;
  return source.facts.type == EntryType::kLink && !os::readTargetFacts(source.at(), facts) &&
         os::sameFile(facts, target);
}

Work::End Work::transfer(const Entry& source, const Entry& target) {
  begin(source.path());
  Source known{source, {}};
  if (const auto failure = os::readFacts(source.at(), known.facts)) return failed(source.path(), *failure);
  return known.facts.type == EntryType::kFolder ? transferFolder(known, target) : transferFile(known, target);
}

Work::End Work::transferFile(const Source& source, const Entry& target) {
  End end = request_.operation == Operation::kMove ? moveInPlace(source, target) : End::kOtherDisk;
  if (end == End::kOtherDisk) {
    end = source.facts.type == EntryType::kLink ? copyLink(source, target) : copyFile(source, target);
  }
  if (end == End::kDone) countFile();
  if (end == End::kNotDone) passFile();
  return end;
}

Work::End Work::moveInPlace(const Source& source, const Entry& target) {
  Placer placer;
  placer.canReplace = source.facts.type != EntryType::kFolder;
  placer.takesSource = true;
  placer.place = [&](const os::EntryPath& name, bool replace) {
    if (!replace) return os::moveEntry(source.at(), name);
    os::EntryFacts there;
    const bool isHardLink = !os::readFacts(name, there) && os::sameFile(there, source.facts);
    // The system leaves both names if they are hard links to one file.
    return isHardLink ? os::removeFile(source.at()) : os::moveOver(source.at(), name);
  };
  return settle(source, target, placer);
}

Work::End Work::copyFile(const Source& source, const Entry& target) {
  os::FileCopy copy;
  if (const auto failure = copy.open(source.at())) return failed(source.path(), *failure);
  const Folder& folder = *target.folder;
  const std::uint64_t before = progress_.bytesDone;
  Placer placer;
  placer.prepare = [&] {
    const auto failure = copy.fill(folder.open.itself(), [&](std::uint64_t copied) {
      progress_.bytesDone = std::min(before + copied, progress_.bytes);
      caller_.show(progress_);
      return !stopped();
    });
    if (!failure) return End::kDone;
    if (failure->problem == FileProblem::kCanceled) return End::kStopped;
    return failedToPlace(source, folder, *failure);
  };
  placer.place = [&](const os::EntryPath& name, bool replace) {
    return replace ? copy.replace(name) : copy.place(name);
  };
  Entry placed;
  const End end = settle(source, target, placer, &placed);
  if (end != End::kDone) progress_.bytesDone = before;
  if (end != End::kDone || request_.operation != Operation::kMove) return end;
  return removeOriginal(source, copy.facts(), placed);
}

Work::End Work::copyLink(const Source& source, const Entry& target) {
  Placer placer;
  placer.place = [&](const os::EntryPath& name, bool replace) {
    return os::copyLink(source.at(), name, replace);
  };
  Entry placed;
  const End end = settle(source, target, placer, &placed);
  if (end != End::kDone || request_.operation != Operation::kMove) return end;
  return removeOriginal(source, source.facts, placed);
}

/// The second half of a move to another file system.
Work::End Work::removeOriginal(const Source& original, const os::EntryFacts& copied, const Entry& copy) {
  os::flushFolder(copy.folder->open.itself());
  os::EntryFacts now;
  const fs::path path = original.path();
  if (const auto failure = os::readFacts(original.at(), now)) {
    // Somebody else may have removed it.
    if (failure->problem == FileProblem::kMissing) return End::kDone;
    return failed(path, "it was copied, but the original cannot be deleted: " + os::reasonOf(*failure, path));
  }
  if (!os::unchanged(copied, now)) {
    return failed(path,
                  "it was copied, but the original was kept, since another program changed it meanwhile");
  }
  if (const auto failure = os::removeFile(original.at());
      failure && failure->problem != FileProblem::kMissing) {
    return failed(path, "it was copied, but the original cannot be deleted: " + os::reasonOf(*failure, path));
  }
  return End::kDone;
}

Work::End Work::transferFolder(const Source& source, const Entry& target) {
  if (isInside(target.folder->path, source.facts)) {
    return failed(source.path(), request_.operation == Operation::kMove
                                     ? "a folder cannot be moved into itself"
                                     : "a folder cannot be copied into itself");
  }
  if (request_.operation == Operation::kMove) {
    const End end = moveInPlace(source, target);
    if (end == End::kDone) countFile();
    if (end == End::kMerge) return transferEntries(source, target, false);
    if (end != End::kOtherDisk) return end;
  }
  Placer placer;
  placer.canReplace = false;
  placer.place = [](const os::EntryPath& name, bool /*replace*/) { return os::makeFolder(name); };
  Entry made;
  const End end = settle(source, target, placer, &made);
  if (end == End::kMerge) return transferEntries(source, target, false);
  return end == End::kDone ? transferEntries(source, made, true) : end;
}

/// The entries of a folder go into another one, which was `made` for them or existed before.
Work::End Work::transferEntries(const Source& source, const Entry& target, bool made) {
  Folder from{source.path(), {}}, into{target.path(), {}};
  std::vector<fs::path> names;
  Failure failure = from.open.open(source.at());
  if (!failure) failure = os::listFolder(from.open.itself(), names);
  if (!failure) failure = into.open.open(target.at());
  if (failure) {
    if (made) os::removeEmptyFolder(target.at());
    return failed(from.path, *failure);
  }
  if (!made) os::removeStaleFiles(into.path);
  End all = transferEach(from, into, names);
  if (made) {
    failure = os::copyFolderFacts(from.open.itself(), into.open.itself());
    if (failure && all == End::kDone) {
      all = failed(from.path,
                   "its times and permissions cannot be copied: " + os::reasonOf(*failure, from.path));
    }
    os::flushFolder(into.open.itself());
  }
  if (all != End::kDone || request_.operation != Operation::kMove) return all;
  failure = os::removeEmptyFolder(source.at());
  if (!failure || failure->problem == FileProblem::kMissing) return all;
  return failed(from.path, failure->problem == FileProblem::kNotEmpty
                               ? "new files were put into it meanwhile, which were not moved"
                               : os::reasonOf(*failure, from.path));
}

Work::End Work::transferEach(const Folder& from, const Folder& into, const std::vector<fs::path>& names) {
  End all = End::kDone;
  ++depth_;
  for (const fs::path& name : names) {
    const End end = stopped() ? End::kStopped : transfer({&from, name}, {&into, name});
    if (end != End::kDone) all = end;
    if (end == End::kStopped) break;
  }
  --depth_;
  return all;
}

/// Gives the thing its name. A name that is taken is the user's to decide on, also if it is taken at the last
/// moment.
Work::End Work::settle(const Source& source, const Entry& target, const Placer& placer, Entry* placed) {
  std::optional<Choice> choice;
  os::EntryFacts there;
  // Before long preparations for a file that may not be wanted.
  const bool askFirst = placer.prepare && !os::readFacts(target.at(), there);
  for (bool ask = askFirst, prepared = false;; ask = true) {
    if (ask) {
      const End end = decide(source, target, placer, choice);
      if (end != End::kDone) return end;
    }
    if (!prepared && placer.prepare) {
      if (const End end = placer.prepare(); end != End::kDone) return end;
    }
    prepared = true;
    Entry entry = target;
    constexpr int kFirstNumber = 2;
    int number = kFirstNumber;
    if (choice == Choice::kKeepBoth) entry.name = numberedName(target.name, number);
    Failure failure = placer.place(entry.at(), choice == Choice::kReplace);
    while (failure && failure->problem == FileProblem::kExists && choice == Choice::kKeepBoth) {
      if (stopped()) return End::kStopped;
      entry.name = numberedName(target.name, ++number);
      failure = placer.place(entry.at(), false);
    }
    if (!failure) {
      if (!os::readFacts(entry.at(), there)) placed_.insert(numberOf(there));
      if (placed != nullptr) *placed = entry;
      return End::kDone;
    }
    if (failure->problem == FileProblem::kOtherDisk) return End::kOtherDisk;
    if (failure->problem != FileProblem::kExists) return failedToPlace(source, *target.folder, *failure);
  }
}

/// The user is not asked about a name that cannot be given anyway.
Work::End Work::checkFolders(const Source& source, const Entry& target, const Placer& placer) {
  std::vector<const Folder*> folders = {target.folder};
  if (placer.takesSource) folders.push_back(source.folder);
  for (const Folder* const folder : folders) {
    const Failure failure = os::checkWritable(folder->open.itself());
    if (failure && failure->problem == FileProblem::kDenied)
      return failed(source.path(), deniedIn(folder->path));
    if (failure) return failed(source.path(), *failure);
  }
  return End::kDone;
}

/// What is done about a name that is taken. Not `kDone` if the entry does not get a name.
Work::End Work::decide(const Source& source, const Entry& target, const Placer& placer,
                       std::optional<Choice>& choice) {
  os::EntryFacts there;
  // If it is gone again, the user's answer does no harm.
  if (os::readFacts(target.at(), there)) there = {};
  if (sameEntry(source, target, there)) {
    if (request_.operation == Operation::kMove) return failed(source.path(), "it is already in that folder");
    choice = Choice::kKeepBoth;
    return End::kDone;
  }
  const bool isFolder = there.type == EntryType::kFolder;
  const bool bothFolders = isFolder && source.facts.type == EntryType::kFolder;
  // The user has decided on the folders above.
  if (bothFolders && depth_ > 0) return End::kMerge;
  if (!bothFolders) {
    if (const End end = checkFolders(source, target, placer); end != End::kDone) return end;
  }
  Question question;
  question.kind = bothFolders ? Question::Kind::kFolders : Question::Kind::kClash;
  question.source = {source.path(), source.facts};
  question.target = {target.path(), there};
  question.canReplace =
      placer.canReplace && !isFolder && !leadsTo(source, there) && !placed_.contains(numberOf(there));
  const std::optional<Choice> answer = ask(question);
  if (!answer) return End::kStopped;
  if (*answer == Choice::kMerge) return End::kMerge;
  if (*answer == Choice::kSkip) {
    report_.skipped.push_back({source.path(), bothFolders ? "there is another folder with that name"
                                                          : "there is another file with that name"});
    return End::kNotDone;
  }
  choice = answer;
  return End::kDone;
}

/// The source could be read, so a missing permission is one to write.
Work::End Work::failedToPlace(const Source& source, const Folder& folder, const os::FileFailure& failure) {
  const fs::path path = source.path();
  if (failure.problem == FileProblem::kDenied && request_.operation == Operation::kCopy)
    return failed(path, deniedIn(folder.path));
  const bool isGone = failure.problem == FileProblem::kFolderMissing;
  return failed(path, os::reasonOf(failure, isGone ? folder.path / source.name : path));
}

}  // namespace kestrel::transfer
