#include "User.h"

#include <cstdlib>
#include <iostream>
#include <utility>

#include "FileAnswers.h"
#include "FileDialog.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/UserInterface.h"
#include "platform/filetransfer/Texts.h"

namespace kestrel::headless {
namespace {

constexpr std::int32_t kButtonsMask = 15;

bool hasButton(std::int32_t style, std::int32_t answer) {
  if ((style & kButtonsMask) == transfer::kBoxYesNo) return answer == kAnswerYes || answer == kAnswerNo;
  if ((style & kButtonsMask) == kBoxFileQuestion) {
    const std::int32_t once = answer > kAnswerForAll ? answer - kAnswerForAll : answer;
    return once == kAnswerYes || once == kAnswerNo || once == kAnswerKeepBoth || answer == kAnswerCancel;
  }
  if ((style & kButtonsMask) == kBoxYesNoCancel) {
    return answer == kAnswerYes || answer == kAnswerNo || answer == kAnswerCancel;
  }
  return answer == kAnswerOK;
}

std::int32_t answerOfClosing(std::int32_t style) {
  for (const std::int32_t answer : {kAnswerCancel, kAnswerOK}) {
    if (hasButton(style, answer)) return answer;
  }
  return kAnswerNo;
}

}  // namespace

void User::answers(std::int32_t answer) { script_.emplace_back(Answer{answer}); }
void User::types(std::string text) { script_.emplace_back(Typing{std::move(text)}); }
void User::cancelsInput() { script_.emplace_back(Typing{}); }
void User::closesAbout() { script_.emplace_back(Closing{}); }
void User::uses(std::string form, std::function<void(kestrel::Form&)> doing) {
  script_.emplace_back(Using{std::move(form), std::move(doing)});
}
void User::chooses(std::string filename) { chooses(std::move(filename), {}); }
void User::chooses(std::string filename, std::function<void(FileDialog&)> before) {
  script_.emplace_back(Choosing{std::move(filename), std::move(before)});
}
void User::cancelsFileDialog(std::function<void(FileDialog&)> before) {
  script_.emplace_back(Choosing{std::nullopt, std::move(before)});
}
void User::choosesFolder(std::string folder) { script_.emplace_back(ChoosingFolder{std::move(folder)}); }
void User::cancelsFolderDialog() { script_.emplace_back(ChoosingFolder{}); }
void User::picks(std::string commandKey) { script_.emplace_back(Picking{std::move(commandKey)}); }

std::string User::words(const Step& step) {
  struct Words {
    std::string operator()(const Answer& s) const {
      return "a message box to answer with " + std::to_string(s.answer);
    }
    std::string operator()(const Typing& s) const {
      return s.text ? "an input box for \"" + *s.text + "\"" : "an input box to cancel";
    }
    std::string operator()(const Closing&) const { return "the about box"; }
    std::string operator()(const Using& s) const { return "the window " + s.form; }
    std::string operator()(const Choosing& s) const {
      return s.filename ? "a file dialog for \"" + *s.filename + "\"" : "a file dialog to cancel";
    }
    std::string operator()(const ChoosingFolder& s) const {
      return s.folder.empty() ? "a folder dialog to cancel" : "a folder dialog for \"" + s.folder + "\"";
    }
    std::string operator()(const Picking& s) const { return "a popup menu to pick \"" + s.key + "\" from"; }
  };
  return std::visit(Words{}, step);
}

std::string User::left() const {
  std::string result;
  for (const Step& step : script_) result += (result.empty() ? "" : ", then ") + words(step);
  return result;
}

void User::forget() {
  boxes_.clear();
  questions_.clear();
  folderQuestions_.clear();
  abouts_.clear();
}

template <typename T>
std::optional<T> User::next(const std::string& whatCameUp) {
  if (script_.empty()) {
    complain("Nobody expected " + whatCameUp + ".");
    return std::nullopt;
  }
  if (!std::holds_alternative<T>(script_.front())) {
    complain("There came " + whatCameUp + ", but the user expected " + words(script_.front()) + ".");
    return std::nullopt;
  }
  T step = std::move(std::get<T>(script_.front()));
  script_.pop_front();
  return step;
}

std::int32_t User::answerBox(const Box& box) {
  boxes_.push_back(box);
  const std::string what = "the message box \"" + box.title + "\" (" + box.text + ")";
  const auto step = next<Answer>(what);
  if (!step) return answerOfClosing(box.style);
  if (!hasButton(box.style, step->answer)) {
    complain("There is no button for the answer " + std::to_string(step->answer) + " on " + what + ".");
    return answerOfClosing(box.style);
  }
  return step->answer;
}

std::optional<std::string> User::answerQuestion(const Question& question) {
  questions_.push_back(question);
  const auto step = next<Typing>("the input box \"" + question.title + "\" (" + question.prompt + ")");
  return step ? step->text : std::nullopt;
}

void User::recordAbout(const About& about) {
  abouts_.push_back(about);
  next<Closing>("the about box \"" + about.title + "\"");
}

void User::useForm(kestrel::Form& form) {
  const OpenCalls::Call call(calls_);
  const std::string what = "the window " + form.Name();
  if (const auto step = next<Using>(what)) {
    if (step->form != form.Name()) {
      complain("There came " + what + ", but the user expected the window " + step->form + ".");
    } else {
      step->doing(form);
      if (form.Visible()) complain("The user left " + what + " open.");
    }
  }
  if (form.Visible()) form.Hide();
}

std::optional<std::string> User::useFileDialog(FileDialog& dialog) {
  const OpenCalls::Call call(calls_);
  const auto step = next<Choosing>("the file dialog");
  if (!step) return std::nullopt;
  if (step->before) step->before(dialog);
  return step->filename;
}

std::string User::chooseFolder(const FolderQuestion& question) {
  folderQuestions_.push_back(question);
  const auto step =
      next<ChoosingFolder>("the folder dialog \"" + question.title + "\" (" + question.prompt + ")");
  return step ? step->folder : std::string();
}

std::string User::usePopup(const std::string& menu) {
  const auto step = next<Picking>("the popup menu " + menu);
  return step ? step->key : std::string();
}

void User::complain(const std::string& text) const {
  if (onComplaint) {
    onComplaint(text);
    return;
  }
  std::cerr << text << std::endl;
  std::abort();
}

}  // namespace kestrel::headless
