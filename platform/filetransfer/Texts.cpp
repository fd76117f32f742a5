#include "Texts.h"

#include <algorithm>

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

void append(std::string& lines, const std::vector<NotDone>& entries) {
  for (const NotDone& entry : entries) {
    lines += "\r\"" + printable(os::textOf(entry.path)) + "\"";
    if (!entry.reason.empty()) lines += ": " + printable(entry.reason) + ".";
  }
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

std::string nameOf(const fs::path& path) { return "\"" + printable(os::textOf(path.filename())) + "\""; }

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
  return "The disk of " + nameOf(question.source.path) +
         " has no trash, so the file cannot be restored later. Do you want to delete it for good?";
}

std::string textOf(const Report& report, const Request& request) {
  if (!report.canceled && report.failed.empty()) return {};
  const Words words = wordsOf(request.operation);
  const std::size_t all = request.sources.size();
  std::string text;
  if (report.canceled) text = std::string(words.process) + " was canceled. ";
  text += std::to_string(report.done) + " of " + std::to_string(all) +
          (all == 1 ? " file was " : " files were ") + words.done + ".";
  if (report.complete()) return text;
  std::string lines;
  append(lines, report.failed);
  append(lines, report.skipped);
  append(lines, report.left);
  return text + " Not " + words.done + ":\r" + lines;
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
