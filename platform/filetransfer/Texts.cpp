#include "Texts.h"

#include <algorithm>
#include <map>
#include <utility>

#include "imaging/contract/UserInterface.h"
#include "platform/os/Paths.h"

namespace kestrel::transfer {
namespace {

namespace fs = std::filesystem;

/// The words of an operation in sentences.
struct Words {
  const char* title;
  const char* process;
  const char* done;
};

Words wordsOf(Operation operation) {
  switch (operation) {
    case Operation::kCopy:
      return {"Copy Files", "Copying", "copied"};
    case Operation::kMove:
      return {"Move Files", "Moving", "moved"};
    case Operation::kTrash:
      return {"Move to Trash", "Moving to the trash", "moved to the trash"};
    default:
      return {"Delete Files", "Deleting", "deleted"};
  }
}

/// A name may contain line ends, with which it could pass for a line of its own.
std::string printable(std::string text) {
  for (char& c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < ' ' || byte == 0x7F) c = '?';
  }
  return text;
}

std::string quoted(const fs::path& path) { return "\"" + printable(os::textOf(path)) + "\""; }

/// Entries of one folder that were not processed for one reason.
struct Group {
  fs::path folder;
  std::string reason;
  std::vector<fs::path> names;
};

/// In the order of their first entries.
std::vector<Group> groupsOf(const Report& report) {
  std::vector<Group> groups;
  std::map<std::pair<fs::path, std::string>, std::size_t> found;
  for (const auto* list : {&report.failed, &report.skipped, &report.left}) {
    for (const auto& [path, reason] : *list) {
      const fs::path folder = path.parent_path();
      const auto [place, isNew] = found.try_emplace({folder, reason}, groups.size());
      if (isNew) groups.push_back({folder, reason, {}});
      groups[place->second].names.push_back(path.filename());
    }
  }
  return groups;
}

std::string linesOf(const Group& group) {
  const std::string reason = printable(group.reason);
  if (group.names.size() == 1) {
    return "\r" + quoted(group.folder / group.names.front()) + (reason.empty() ? "" : ": " + reason + ".");
  }
  std::string lines = "\r" + std::to_string(group.names.size()) + " files in " + quoted(group.folder) +
                      (reason.empty() ? "" : " (" + reason + ")") + ":";
  for (const fs::path& name : group.names) lines += "\r" + quoted(name);
  return lines;
}

/// Whether the user has canceled before anything was done, and knows all there is to report.
bool isUntouched(const Report& report) {
  const auto hasReason = [](const NotDone& entry) { return !entry.reason.empty(); };
  return report.canceled && report.done == 0 &&
         std::none_of(report.left.begin(), report.left.end(), hasReason);
}

/// How many of the sources were processed: a sentence, empty for one that was not.
std::string countOf(const Report& report, const Request& request) {
  const std::size_t all = request.sources.size();
  const std::string done = wordsOf(request.operation).done;
  if (report.done == all) return (all == 1 ? "The file was " : "All files were ") + done + ".";
  if (all == 1) return {};
  if (report.done == 0) return "None of the " + std::to_string(all) + " files was " + done + ".";
  return std::to_string(report.done) + " of " + std::to_string(all) +
         (report.done == 1 ? " files was " : " files were ") + done + ".";
}

}  // namespace

std::vector<std::string> namesOf(std::string_view buffer) {
  std::vector<std::string> names;
  while (!buffer.empty()) {
    const std::size_t end = std::min(buffer.find('\0'), buffer.size());
    const std::string name(buffer.substr(0, end));
    buffer.remove_prefix(std::min(end + 1, buffer.size()));
    const bool isNew = std::find(names.begin(), names.end(), name) == names.end();
    if (!name.empty() && isNew) names.push_back(name);
  }
  return names;
}

std::string titleOf(Operation operation) { return wordsOf(operation).title; }

std::string processOf(Operation operation) { return wordsOf(operation).process; }

std::string nameOf(const fs::path& path) {
  const fs::path name = path.has_filename() ? path.filename() : path.parent_path().filename();
  return "\"" + printable(os::textOf(name)) + "\"";
}

std::string confirmationOf(const Request& request) {
  const std::string files = request.sources.size() == 1
                                ? nameOf(request.sources.front())
                                : "these " + std::to_string(request.sources.size()) + " files";
  if (request.operation == Operation::kTrash)
    return "Are you sure you want to move " + files + " to the trash?";
  return "Are you sure you want to delete " + files + " for good?";
}

std::int32_t confirmationStyleOf(Operation operation) {
  constexpr std::int32_t kSecondIsDefault = 256;
  return operation == Operation::kTrash ? kBoxYesNo + kBoxQuestion
                                        : kBoxYesNo + kBoxExclamation + kSecondIsDefault;
}

std::string noTrashQuestionOf(const Question& question) {
  const std::string name = nameOf(question.source.path);
  if (!question.problem.empty()) {
    return "The file " + name + " does not fit into the trash: " + question.problem +
           ". Do you want to delete it for good?";
  }
  return "The disk of " + name +
         " has no trash, so the file cannot be restored later. Do you want to delete it for good?";
}

std::string textOf(const Report& report, const Request& request) {
  if (report.failed.empty() && (!report.canceled || isUntouched(report))) return {};
  const Words words = wordsOf(request.operation);
  const std::vector<Group> groups = groupsOf(report);
  if (!report.canceled && request.sources.size() == 1 && groups.size() == 1 &&
      groups.front().names.size() == 1) {
    const auto& [folder, reason, names] = groups.front();
    return quoted(folder / names.front()) + " was not " + words.done + ": " + printable(reason) + ".";
  }
  std::string text;
  if (report.canceled) text = std::string(words.process) + " was canceled.";
  const std::string count = countOf(report, request);
  text += (text.empty() || count.empty() ? "" : " ") + count;
  if (report.complete()) return text;
  text += (text.empty() ? "Not " : " Not ") + std::string(words.done) + ":\r";
  for (const Group& group : groups) text += linesOf(group);
  return text;
}

std::optional<std::chrono::seconds> timeLeft(const Progress& progress, std::chrono::milliseconds elapsed) {
  constexpr std::chrono::seconds kTooEarly(2);
  constexpr double kTooLittle = 0.01;
  const bool byBytes = progress.bytes > 0;
  const auto all = static_cast<double>(byBytes ? progress.bytes : progress.files);
  const auto done = static_cast<double>(byBytes ? progress.bytesDone : progress.filesDone);
  if (all <= 0 || elapsed < kTooEarly || done / all < kTooLittle) return std::nullopt;
  const double left = std::chrono::duration<double>(elapsed).count() * (all - done) / done;
  return std::chrono::seconds(static_cast<std::int64_t>(left + 0.5));
}

std::string textOf(std::chrono::seconds left) {
  // Rounded, so that the text does not change with each glance.
  constexpr std::int64_t kStep = 5, kMinute = 60, kHour = 60 * kMinute;
  const std::int64_t seconds = left.count();
  if (seconds < kStep) return "A few seconds left";
  if (seconds < kMinute)
    return "About " + std::to_string((seconds + kStep - 1) / kStep * kStep) + " seconds left";
  if (seconds < kHour) {
    const std::int64_t minutes = (seconds + kMinute / 2) / kMinute;
    return "About " + std::to_string(minutes) + (minutes == 1 ? " minute left" : " minutes left");
  }
  const std::int64_t hours = (seconds + kHour / 2) / kHour;
  return "About " + std::to_string(hours) + (hours == 1 ? " hour left" : " hours left");
}

}  // namespace kestrel::transfer
