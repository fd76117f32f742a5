#include "FileHelpers.h"

#include <filesystem>
#include <map>

#include "../FileAnswers.h"
#include "imaging/contract/UserInterface.h"
#include "platform/filetransfer/Texts.h"
#include "platform/os/Paths.h"

namespace kestrel::headless {
namespace {

using transfer::Answer;
using transfer::Choice;
using transfer::Operation;
using transfer::Question;

/// Answers by the user's script.
class ScriptedCaller final : public transfer::Caller {
 public:
  ScriptedCaller(Operation operation, User& user) : operation_(operation), user_(user) {}

  Answer ask(const Question& question) override {
    const std::string text =
        question.kind == Question::Kind::kNoTrash
            ? transfer::noTrashQuestionOf(question)
            : "There is already an entry with the name " + transfer::nameOf(question.source.path) + ".";
    const std::int32_t answer =
        user_.answerBox({text, kBoxFileQuestion + kBoxQuestion, transfer::titleOf(operation_)});
    const bool forAll = answer > kAnswerForAll;
    switch (forAll ? answer - kAnswerForAll : answer) {
      case kAnswerYes:
        return {yesTo(question.kind), forAll};
      case kAnswerNo:
        return {Choice::kSkip, forAll};
      case kAnswerKeepBoth:
        return {Choice::kKeepBoth, forAll};
      default:
        return {Choice::kCancel, false};
    }
  }
  void show(const transfer::Progress& /*progress*/) override {}
  bool canceled() override { return false; }

 private:
  static Choice yesTo(Question::Kind kind) {
    return kind == Question::Kind::kClash     ? Choice::kReplace
           : kind == Question::Kind::kFolders ? Choice::kMerge
                                              : Choice::kDelete;
  }

  Operation operation_;
  User& user_;
};

}  // namespace

bool FileHelpers::run(Operation operation, const std::string& buffer, const std::string& folder) {
  transfer::Request request;
  request.operation = operation;
  // The user sees the names of the simulated file system.
  std::map<std::filesystem::path, std::string> names;
  for (const std::string& name : transfer::namesOf(buffer)) {
    const std::filesystem::path path = std::filesystem::absolute(os::pathOf(files_.host(name)));
    request.sources.push_back(path);
    names[path] = name;
  }
  request.folder = os::pathOf(files_.host(folder));
  request.homeTrash = os::pathOf(files_.host(files_.scratch())) / ".trash";
  if (request.sources.empty()) return true;

  const std::string title = transfer::titleOf(operation);
  if (operation == Operation::kTrash || operation == Operation::kDelete) {
    const std::int32_t style = transfer::confirmationStyleOf(operation);
    if (user_.answerBox({transfer::confirmationOf(request), style, title}) != kAnswerYes) return false;
  }
  ScriptedCaller caller(operation, user_);
  transfer::Report report = transfer::carryOut(request, caller);
  for (auto* const list : {&report.failed, &report.skipped, &report.left}) {
    for (transfer::NotDone& entry : *list) {
      if (const auto name = names.find(entry.path); name != names.end())
        entry.path = os::pathOf(name->second);
    }
  }
  const std::string text = transfer::textOf(report, request);
  if (!text.empty()) user_.answerBox({text, kBoxExclamation, title});
  return report.complete();
}

bool FileHelpers::CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                            kestrel::WindowHandle /*Owner*/) {
  return run(Operation::kCopy, Buffer, Folder);
}

bool FileHelpers::MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                            kestrel::WindowHandle /*Owner*/) {
  return run(Operation::kMove, Buffer, Folder);
}

bool FileHelpers::DeleteFiles(const std::string& Buffer, const std::string& /*Folder*/, std::int32_t Flags,
                              kestrel::WindowHandle /*Owner*/) {
  return run((Flags & kAllowUndo) != 0 ? Operation::kTrash : Operation::kDelete, Buffer, {});
}

}  // namespace kestrel::headless
