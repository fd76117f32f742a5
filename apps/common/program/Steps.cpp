#include "Steps.h"

#include <algorithm>
#include <utility>

#include "apps/common/script/DialogWords.h"

namespace kestrel::app {
namespace {

/// No box waits for a user, and answers that no box has taken are dropped at the end.
class Unattended {
 public:
  explicit Unattended(BoxScript& boxes) : boxes_(boxes), before_(std::exchange(boxes.unattended, true)) {}
  Unattended(const Unattended&) = delete;
  Unattended& operator=(const Unattended&) = delete;
  ~Unattended() {
    boxes_.unattended = before_;
    boxes_.answers.clear();
  }

 private:
  BoxScript& boxes_;
  const bool before_;
};

bool useDialog(const Stage& stage, const Words& words) {
  const std::string& key = words[0];
  const DialogWords doings({words.begin() + 1, words.end()});
  DialogWords::Surroundings surroundings;
  surroundings.settle = [&] { stage.desktop.settle(); };
  surroundings.answer = [&](std::int32_t answer) { stage.boxes.answers.push_back(answer); };
  surroundings.save = [&](Form& dialog, const std::string& file) {
    return stage.desktop.saveScreenshot(dialog, file);
  };
  const Unattended scope(stage.boxes);
  const bool opened = stage.desktop.useOpenedDialog([&] { stage.runCommand(key); },
                                                    [&](Form& form) { doings.play(form, surroundings); });
  if (!opened) refuse("The command \"" + key + "\" opened no dialog.");
  return true;
}

/// The next box is shown, also in an unattended run.
class ShownBox {
 public:
  explicit ShownBox(BoxScript& boxes) : boxes_(boxes) { boxes_.showsNext = true; }
  ShownBox(const ShownBox&) = delete;
  ShownBox& operator=(const ShownBox&) = delete;
  ~ShownBox() { boxes_.showsNext = false; }

 private:
  BoxScript& boxes_;
};

/// Takes a picture of what a command opens: a dialog, a box or a window that stays.
bool pictureOpened(const Stage& stage, const std::string& file, const std::string& key) {
  const ShownBox scope(stage.boxes);
  bool opened = false;
  const bool saved = stage.desktop.saveOpenedWindow([&] { stage.runCommand(key); }, file, opened);
  if (!opened) refuse("The command \"" + key + "\" opened no window.");
  return saved;
}

std::vector<Step> sharedSteps(const Stage& stage) {
  return {
      {"size", 2,
       [&stage](const Words& words) {
         stage.form.Width(numberOf(words[0]));
         stage.form.Height(numberOf(words[1]));
         return true;
       }},
      {"picture", 1,
       [&stage](const Words& words) { return stage.desktop.saveScreenshot(stage.form, words[0]); }},
      {"opened", 2, [&stage](const Words& words) { return pictureOpened(stage, words[0], words[1]); }},
      {"dialog", 1, [&stage](const Words& words) { return useDialog(stage, words); }},
  };
}

const Step* find(const std::vector<Step>& steps, const std::string& name) {
  const auto found =
      std::find_if(steps.begin(), steps.end(), [&name](const Step& row) { return row.name == name; });
  return found == steps.end() ? nullptr : &*found;
}

}  // namespace

bool runStep(const std::string& line, const Stage& stage, const std::vector<Step>& own) {
  Words words = wordsOf(line);
  if (words.empty()) return true;
  const std::string name = words.front();
  words.erase(words.begin());

  bool done = true;
  const std::vector<Step> shared = sharedSteps(stage);
  const Step* step = find(own, name);
  if (!step) step = find(shared, name);
  if (!step) {
    if (!words.empty()) refuse("The command \"" + name + "\" takes no arguments.");
    stage.runCommand(name);
  } else {
    if (words.size() < step->words) refuse("\"" + name + "\" needs more arguments.");
    done = step->run(words);
  }
  stage.desktop.settle();
  return done;
}

}  // namespace kestrel::app
