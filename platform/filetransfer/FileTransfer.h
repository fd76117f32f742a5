#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/os/Entries.h"

/// Copies, moves and deletes lists of files and folders. Nothing is ever lost: the copy of a file appears
/// whole or not at all, an existing file is replaced in one step and only if the user says so, and the
/// original of a move is deleted after its copy is on the disk. A folder appears first and is filled then:
/// what a canceled or failed work has made of it stays, and is reported.
namespace kestrel::transfer {

enum class Operation {
  kCopy,
  kMove,
  kTrash,   ///< the trash of the desktop, from which files can be restored
  kDelete,  ///< for good
};

struct Request {
  Operation operation = Operation::kCopy;
  /// Files and folders. A symbolic link is copied, moved or deleted itself, not its target, also if its name
  /// has separators at its end.
  std::vector<std::filesystem::path> sources;
  /// Where to, for copies and moves. Must exist.
  std::filesystem::path folder;
  /// The user's own trash, for kTrash; see `homeTrash` in Trash.h.
  std::filesystem::path homeTrash;
};

/// How far the work is.
struct Progress {
  std::uint64_t files = 0;
  /// Including those that failed or were skipped. The files of a folder that was left out as a whole follow
  /// when all of its source is done.
  std::uint64_t filesDone = 0;
  std::uint64_t bytes = 0;  ///< of files that are copied; 0 if none is
  std::uint64_t bytesDone = 0;
  std::filesystem::path current;  ///< empty while the files are counted
};

/// A file as the user is asked about it.
struct FileInQuestion {
  std::filesystem::path path;
  os::EntryFacts facts;
};

struct Question {
  enum class Kind {
    kClash,    ///< there is an entry with the name already: kReplace, kKeepBoth, kSkip, kCancel
    kFolders,  ///< there is a folder with the name of a folder already: kMerge, kKeepBoth, kSkip, kCancel
    kNoTrash,  ///< the volume of the file has no trash that can be used: kDelete, kSkip, kCancel
  };

  Kind kind = Kind::kClash;
  FileInQuestion source;
  FileInQuestion target;  ///< of a clash or of folders
  /// Of a clash: false if one of them is a folder, if the source is a link to the target, or if this work has
  /// put the target there.
  bool canReplace = true;
  /// Of kNoTrash: why the trash cannot be used, as "the disk is full". Empty if there is none.
  std::string problem;
  bool more = false;  ///< further files may raise the same question
};

enum class Choice {
  kReplace,
  kMerge,     ///< the entries of the folder go into the existing one, with a question for each clash of files
  kKeepBoth,  ///< under a free name, as in "name (2).jpg"
  kSkip,
  kDelete,  ///< for good
  kCancel,  ///< ends the whole work
};

struct Answer {
  Choice choice = Choice::kCancel;
  /// The same for all further questions of that kind. Where it is impossible the user is asked again.
  bool forAll = false;
};

/// The side that the work is done for. Called on the thread that does it.
class Caller {
 public:
  virtual ~Caller() = default;

  virtual Answer ask(const Question& question) = 0;
  virtual void show(const Progress& progress) = 0;
  /// True ends the work; asked often.
  virtual bool canceled() = 0;
};

struct NotDone {
  std::filesystem::path path;
  /// A clause without capital and period, as "permission is denied". Empty if the work was canceled before.
  std::string reason;
};

/// What was done and what was not.
struct Report {
  std::uint64_t done = 0;        ///< sources that were processed completely
  std::vector<NotDone> failed;   ///< also entries of folders
  std::vector<NotDone> skipped;  ///< by the user
  std::vector<NotDone> left;     ///< sources not processed, or not completely, since the work was canceled
  bool canceled = false;

  bool complete() const { return failed.empty() && skipped.empty() && left.empty(); }
};

/// Does the work on this thread. Failures are in the report, also the lack of memory; raises only what the
/// caller raises.
Report carryOut(const Request& request, Caller& caller);

}  // namespace kestrel::transfer
