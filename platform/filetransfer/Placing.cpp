// Copies and moves: what is done in which order, so that nothing is lost.

#include <algorithm>
#include <system_error>
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

/// Whether both paths name the same entry of the same folder, and not two hard links.
bool sameEntry(const FileInQuestion& one, const FileInQuestion& other) {
  if (!os::sameFile(one.facts, other.facts)) return false;
  if (one.facts.type == EntryType::kFolder || one.facts.names == 1) return true;
  std::error_code error;
  return one.path.filename() == other.path.filename() &&
         fs::equivalent(one.path.parent_path(), other.path.parent_path(), error) && !error;
}

/// Whether the source is a symbolic link to that file, which would be gone once the link replaced it.
bool leadsTo(const FileInQuestion& source, const FileInQuestion& target) {
  os::EntryFacts facts;
  return source.facts.type == EntryType::kLink && !os::readTargetFacts(source.path, facts) &&
         os::sameFile(facts, target.facts);
}

std::pair<std::uint64_t, std::uint64_t> numberOf(const FileInQuestion& file) {
  return {file.facts.id.device, file.facts.id.inode};
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

Work::End Work::transfer(const fs::path& source, const fs::path& target) {
  begin(source);
  FileInQuestion file{source, {}};
  if (const auto failure = os::readFacts(source, file.facts)) return failed(source, *failure);
  return file.facts.type == EntryType::kFolder ? transferFolder(file, target) : transferFile(file, target);
}

Work::End Work::transferFile(const FileInQuestion& source, const fs::path& target) {
  if (request_.operation == Operation::kMove) {
    const End end = moveInPlace(source, target);
    if (end == End::kDone) countFile();
    if (end != End::kOtherDisk) return end;
  }
  const End end = source.facts.type == EntryType::kLink ? copyLink(source, target) : copyFile(source, target);
  if (end == End::kDone) countFile();
  return end;
}

Work::End Work::moveInPlace(const FileInQuestion& source, const fs::path& target) {
  Placer placer;
  placer.canReplace = source.facts.type != EntryType::kFolder;
  placer.takesSource = true;
  placer.place = [&](const fs::path& name, bool replace) {
    if (!replace) return os::moveEntry(source.path, name);
    os::EntryFacts there;
    const bool isHardLink = !os::readFacts(name, there) && os::sameFile(there, source.facts);
    // The system leaves both names if they are hard links to one file.
    return isHardLink ? os::removeFile(source.path) : os::moveOver(source.path, name);
  };
  return settle(source, target, placer);
}

Work::End Work::copyFile(const FileInQuestion& source, const fs::path& target) {
  os::FileCopy copy;
  if (const auto failure = copy.open(source.path)) return failed(source.path, *failure);
  const fs::path folder = target.parent_path();
  const std::uint64_t before = progress_.bytesDone;
  Placer placer;
  placer.prepare = [&] {
    const auto failure = copy.fill(folder, [&](std::uint64_t copied) {
      progress_.bytesDone = std::min(before + copied, progress_.bytes);
      caller_.show(progress_);
      return !stopped();
    });
    if (!failure) return End::kDone;
    if (failure->problem == FileProblem::kCanceled) return End::kStopped;
    return failedToPlace(source.path, folder, *failure);
  };
  placer.place = [&](const fs::path& name, bool replace) {
    return replace ? copy.replace(name) : copy.place(name);
  };
  fs::path placed;
  const End end = settle(source, target, placer, &placed);
  if (end != End::kDone) progress_.bytesDone = before;
  if (end != End::kDone || request_.operation != Operation::kMove) return end;
  return removeOriginal(source, copy.facts(), placed);
}

Work::End Work::copyLink(const FileInQuestion& source, const fs::path& target) {
  Placer placer;
  placer.place = [&](const fs::path& name, bool replace) { return os::copyLink(source.path, name, replace); };
  fs::path placed;
  const End end = settle(source, target, placer, &placed);
  if (end != End::kDone || request_.operation != Operation::kMove) return end;
  return removeOriginal(source, source.facts, placed);
}

/// The second half of a move to another file system.
Work::End Work::removeOriginal(const FileInQuestion& original, const os::EntryFacts& copied,
                               const fs::path& copy) {
  os::flushFolder(copy.parent_path());
  os::EntryFacts now;
  if (os::readFacts(original.path, now)) return End::kDone;  // somebody else has removed it
  if (!os::unchanged(copied, now)) {
    return failed(original.path,
                  "it was copied, but the original was kept, since another program changed it meanwhile");
  }
  if (const auto failure = os::removeFile(original.path)) {
    return failed(original.path, "it was copied, but the original cannot be deleted: " +
                                     os::reasonOf(*failure, original.path));
  }
  return End::kDone;
}

Work::End Work::transferFolder(const FileInQuestion& source, const fs::path& target) {
  if (isInside(target.parent_path(), source.facts)) {
    return failed(source.path, request_.operation == Operation::kMove
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
  placer.place = [](const fs::path& name, bool /*replace*/) { return os::makeFolder(name); };
  fs::path made;
  const End end = settle(source, target, placer, &made);
  if (end == End::kMerge) return transferEntries(source, target, false);
  return end == End::kDone ? transferEntries(source, made, true) : end;
}

/// The entries of a folder go into another one, which was `made` for them or existed before.
Work::End Work::transferEntries(const FileInQuestion& source, const fs::path& target, bool made) {
  std::vector<fs::path> names;
  if (const auto failure = os::listFolder(source.path, names)) {
    if (made) os::removeEmptyFolder(target);
    return failed(source.path, *failure);
  }
  End all = End::kDone;
  ++depth_;
  for (const fs::path& name : names) {
    const End end = stopped() ? End::kStopped : transfer(source.path / name, target / name);
    if (end != End::kDone) all = end;
    if (end == End::kStopped) break;
  }
  --depth_;
  if (made) {
    const auto failure = os::copyFolderFacts(source.path, target);
    if (failure && all == End::kDone) {
      all = failed(source.path,
                   "its times and permissions cannot be copied: " + os::reasonOf(*failure, source.path));
    }
    os::flushFolder(target);
  }
  if (all != End::kDone || request_.operation != Operation::kMove) return all;
  const auto failure = os::removeEmptyFolder(source.path);
  if (!failure || failure->problem == FileProblem::kMissing) return all;
  return failed(source.path, failure->problem == FileProblem::kNotEmpty
                                 ? "new files were put into it meanwhile, which were not moved"
                                 : os::reasonOf(*failure, source.path));
}

/// Gives the thing its name. A name that is taken is the user's to decide on, also if it is taken at the last
/// moment.
Work::End Work::settle(const FileInQuestion& source, const fs::path& target, const Placer& placer,
                       fs::path* placed) {
  std::optional<Choice> choice;
  os::EntryFacts there;
  // Before long preparations for a file that may not be wanted.
  const bool askFirst = placer.prepare && !os::readFacts(target, there);
  for (bool ask = askFirst, prepared = false;; ask = true) {
    if (ask) {
      const End end = decide(source, target, placer, choice);
      if (end != End::kDone) return end;
    }
    if (!prepared && placer.prepare) {
      if (const End end = placer.prepare(); end != End::kDone) return end;
    }
    prepared = true;
    fs::path name = target;
    constexpr int kFirstNumber = 2;
    int number = kFirstNumber;
    if (choice == Choice::kKeepBoth) name = numberedName(target, number);
    Failure failure = placer.place(name, choice == Choice::kReplace);
    while (failure && failure->problem == FileProblem::kExists && choice == Choice::kKeepBoth) {
      if (stopped()) return End::kStopped;
      name = numberedName(target, ++number);
      failure = placer.place(name, false);
    }
    if (!failure) {
      FileInQuestion result{name, {}};
      if (!os::readFacts(name, result.facts)) placed_.insert(numberOf(result));
      if (placed != nullptr) *placed = name;
      return End::kDone;
    }
    if (failure->problem == FileProblem::kOtherDisk) return End::kOtherDisk;
    if (failure->problem != FileProblem::kExists) {
      return failedToPlace(source.path, target.parent_path(), *failure);
    }
  }
}

/// The user is not asked about a name that cannot be given anyway.
Work::End Work::checkFolders(const FileInQuestion& source, const fs::path& target, const Placer& placer) {
  std::vector<fs::path> folders = {target.parent_path()};
  if (placer.takesSource) folders.push_back(source.path.parent_path());
  for (const fs::path& folder : folders) {
    const Failure failure = os::checkWritable(folder);
    if (failure && failure->problem == FileProblem::kDenied) return failed(source.path, deniedIn(folder));
    if (failure) return failed(source.path, *failure);
  }
  return End::kDone;
}

/// What is done about a name that is taken. Not `kDone` if the entry does not get a name.
Work::End Work::decide(const FileInQuestion& source, const fs::path& target, const Placer& placer,
                       std::optional<Choice>& choice) {
  Question question;
  question.source = source;
  question.target.path = target;
  // If it is gone again, the user's answer does no harm.
  if (os::readFacts(target, question.target.facts)) question.target.facts = {};
  if (sameEntry(source, question.target)) {
    if (request_.operation == Operation::kMove) return failed(source.path, "it is already in that folder");
    choice = Choice::kKeepBoth;
    return End::kDone;
  }
  const bool isFolder = question.target.facts.type == EntryType::kFolder;
  const bool bothFolders = isFolder && source.facts.type == EntryType::kFolder;
  // The user has decided on the folders above.
  if (bothFolders && depth_ > 0) return End::kMerge;
  if (!bothFolders) {
    if (const End end = checkFolders(source, target, placer); end != End::kDone) return end;
  }
  question.kind = bothFolders ? Question::Kind::kFolders : Question::Kind::kClash;
  question.canReplace = placer.canReplace && !isFolder && !leadsTo(source, question.target) &&
                        !placed_.contains(numberOf(question.target));
  const std::optional<Choice> answer = ask(question);
  if (!answer) return End::kStopped;
  if (*answer == Choice::kMerge) return End::kMerge;
  if (*answer == Choice::kSkip) {
    report_.skipped.push_back({source.path, bothFolders ? "there is another folder with that name"
                                                        : "there is another file with that name"});
    return End::kNotDone;
  }
  choice = *answer;
  return End::kDone;
}

/// The source could be read, so a missing permission is one to write.
Work::End Work::failedToPlace(const fs::path& path, const fs::path& folder, const os::FileFailure& failure) {
  if (failure.problem == FileProblem::kDenied && request_.operation == Operation::kCopy)
    return failed(path, deniedIn(folder));
  return failed(
      path, os::reasonOf(failure,
                         failure.problem == FileProblem::kFolderMissing ? folder / path.filename() : path));
}

}  // namespace kestrel::transfer
