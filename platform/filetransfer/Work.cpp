#include "Work.h"

#include <new>
#include <system_error>
#include <utility>

#include "Trash.h"
#include "platform/os/FailureText.h"

namespace kestrel::transfer {
namespace {

namespace fs = std::filesystem;

constexpr char kNoMemory[] = "there is not enough memory";

bool hasTarget(Operation operation) { return operation == Operation::kCopy || operation == Operation::kMove; }

/// Whether the path ends with the name of an entry.
bool hasName(const fs::path& path) {
  const fs::path name = path.filename();
  return !name.empty() && name != "." && name != "..";
}

}  // namespace

Work::Work(const Request& request, Caller& caller) : request_(request), caller_(caller) {}

Report Work::run() {
  try {
    processAll();
  } catch (const std::bad_alloc&) {
    // What was done before stays in the report.
    for (; source_ < request_.sources.size(); ++source_) failed(request_.sources[source_], kNoMemory);
  }
  if (report_.canceled && report_.left.empty()) leave(source_, "");
  if (folderFacts_) os::flushFolder(folder_.open.itself());
  return std::move(report_);
}

void Work::processAll() {
  if (hasTarget(request_.operation)) prepareTarget();
  count();
  Progress before;
  while (source_ < request_.sources.size() && !stopped()) {
    partly_ = false;
    const End end = process(request_.sources[source_]);
    if (end == End::kStopped) {
      leave(source_, partly_ ? "only some of its files were processed" : "");
      return;
    }
    const Count& counted = counts_[source_++];
    if (end == End::kDone) ++report_.done;
    // Also for a source that was skipped, or that had fewer files than were counted.
    before.filesDone += counted.files;
    before.bytesDone += counted.bytes;
    progress_.filesDone = before.filesDone;
    progress_.bytesDone = before.bytesDone;
    caller_.show(progress_);
  }
}

/// The sources from that one on were not processed.
void Work::leave(std::size_t first, const std::string& reason) {
  for (std::size_t i = first; i < request_.sources.size(); ++i)
    report_.left.push_back({request_.sources[i], i == first ? reason : ""});
}

void Work::prepareTarget() {
  std::error_code error;
  // The user may have chosen a link to a folder.
  folder_.path = fs::canonical(request_.folder, error);
  os::EntryFacts facts;
  if (error || folder_.open.open(folder_.path) || os::readFacts(folder_.open.itself(), facts)) return;
  folderFacts_ = facts;
  os::removeStaleFiles(folder_.path);
}

void Work::count() {
  for (const fs::path& source : request_.sources) {
    counts_.push_back(stopped() ? Count() : countSource(source));
    progress_.files += counts_.back().files;
    progress_.bytes += counts_.back().bytes;
    caller_.show(progress_);
  }
}

Count Work::countSource(const fs::path& source) {
  if (!hasName(source)) return {};
  os::EntryFacts facts;
  // One call of the system each, however many files a folder has.
  const bool inOneStep = request_.operation == Operation::kTrash ||
                         (request_.operation == Operation::kMove && !os::readFacts(source, facts) &&
                          folderFacts_ && facts.id.device == folderFacts_->id.device);
  if (inOneStep) return {1, 0};
  Count count = countTree(source, [this] { return stopped(); });
  if (!hasTarget(request_.operation)) count.bytes = 0;
  return count;
}

Work::End Work::process(const fs::path& source) {
  if (!hasName(source)) return failed(source, "it is not the name of a file or folder");
  try {
    switch (request_.operation) {
      case Operation::kTrash:
        return trash(source);
      case Operation::kDelete:
        return remove(source);
      default:
        break;
    }
    if (!folderFacts_) {
      const os::FileFailure missing{os::FileProblem::kFolderMissing};
      return failed(source, os::reasonOf(missing, request_.folder / source.filename()));
    }
    return transferSource(source);
  } catch (const std::bad_alloc&) {
    return failed(source, kNoMemory);
  }
}

Work::End Work::transferSource(const fs::path& source) {
  Folder folder{source.parent_path(), {}};
  // The user may have come here through a link.
  if (const auto failure = folder.open.open(folder.path / ".")) return failed(source, *failure);
  return transfer({&folder, source.filename()}, {&folder_, source.filename()});
}

Work::End Work::trash(const fs::path& path) {
  begin(path);
  const TrashResult result = moveToTrash(path, request_.homeTrash, [this] { return stopped(); });
  if (result.hasTrash) {
    if (result.failure) return failed(path, *result.failure);
    countFile();
    return End::kDone;
  }
  Question question;
  question.kind = Question::Kind::kNoTrash;
  question.source.path = path;
  if (const auto failure = os::readFacts(path, question.source.facts)) return failed(path, *failure);
  if (result.failure) question.problem = os::reasonOf(*result.failure, path);
  const std::string reason = result.failure ? "it does not fit into the trash: " + question.problem
                                            : "there is no trash on its disk";
  const std::optional<Choice> answer = ask(std::move(question));
  if (!answer) return End::kStopped;
  if (*answer == Choice::kDelete) return remove(path);
  report_.skipped.push_back({path, reason});
  return End::kNotDone;
}

Work::End Work::remove(const fs::path& path) {
  begin(path);
  os::EntryFacts facts;
  if (const auto failure = os::readFacts(path, facts)) return failed(path, *failure);
  if (facts.type != os::EntryType::kFolder) {
    if (const auto failure = os::removeFile(path)) return failed(path, *failure);
    countFile();
    return End::kDone;
  }
  End end = End::kDone;
  os::removeTree(path, [&](const fs::path& entry, std::optional<os::FileFailure> failure) {
    if (failure) end = failed(entry, *failure);
    countFile();
    return !stopped();
  });
  os::EntryFacts rest;
  const bool gone = os::readFacts(path, rest).has_value();
  return report_.canceled && !gone ? End::kStopped : end;
}

bool Work::stopped() {
  report_.canceled = report_.canceled || caller_.canceled();
  return report_.canceled;
}

void Work::begin(const fs::path& path) {
  progress_.current = path;
  caller_.show(progress_);
}

void Work::countFile() {
  partly_ = true;
  passFile();
}

/// A tree may have got more files since they were counted.
void Work::passFile() {
  if (progress_.filesDone < progress_.files) ++progress_.filesDone;
  caller_.show(progress_);
}

Work::End Work::failed(const fs::path& path, std::string reason) {
  report_.failed.push_back({path, std::move(reason)});
  return End::kNotDone;
}

Work::End Work::failed(const fs::path& path, const os::FileFailure& failure) {
  return failed(path, os::reasonOf(failure, path));
}

/// None if the user cancels.
std::optional<Choice> Work::ask(Question question) {
  std::optional<Choice>& known = forAll(question);
  if (known) return known;
  question.more = depth_ > 0 || source_ + 1 < request_.sources.size();
  const Answer answer = caller_.ask(question);
  if (answer.choice == Choice::kCancel) {
    report_.canceled = true;
    return std::nullopt;
  }
  if (answer.forAll) known = answer.choice;
  return answer.choice;
}

/// The answer for all questions like that one.
std::optional<Choice>& Work::forAll(const Question& question) {
  switch (question.kind) {
    case Question::Kind::kNoTrash:
      return noTrashForAll_;
    case Question::Kind::kFolders:
      return foldersForAll_;
    default:
      // What cannot be replaced needs an answer of its own.
      return !question.canReplace && clashForAll_ == Choice::kReplace ? irreplaceableForAll_ : clashForAll_;
  }
}

}  // namespace kestrel::transfer
