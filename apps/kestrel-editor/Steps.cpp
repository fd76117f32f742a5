#include "Steps.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/kestrel-editor/script/DialogWords.h"
#include "apps/kestrel-editor/script/Words.h"

namespace kestrel::app {
namespace {

struct Stage {
  EditorWindow& window;
  qt::Desktop& desktop;
  BoxScript& boxes;
};

std::vector<Point> path(const Words& words) {
  if (words.size() % 2 != 0) refuse("A position is two numbers.");
  std::vector<Point> points;
  for (std::size_t i = 0; i < words.size(); i += 2)
    points.push_back({numberOf(words[i]), numberOf(words[i + 1])});
  return points;
}

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

bool useDialog(Stage stage, const Words& words) {
  const std::string& key = words[0];
  const DialogWords doings({words.begin() + 1, words.end()});
  DialogWords::Surroundings surroundings;
  surroundings.settle = [&] { stage.desktop.settle(); };
  surroundings.answer = [&](std::int32_t answer) { stage.boxes.answers.push_back(answer); };
  surroundings.save = [&](Form& dialog, const std::string& file) {
    return stage.desktop.saveScreenshot(dialog, file);
  };
  const Unattended scope(stage.boxes);
  const bool opened = stage.desktop.useOpenedDialog([&] { stage.window.runCommand(key); },
                                                    [&](Form& form) { doings.play(form, surroundings); });
  if (!opened) refuse("The command \"" + key + "\" opened no dialog.");
  return true;
}

/// A step that is not a command: its name, the minimum number of arguments, and its action.
struct Step {
  std::string_view name;
  std::size_t words;
  bool (*run)(Stage stage, const Words& words);
};

constexpr Step kSteps[] = {
    {"size", 2,
     [](Stage stage, const Words& words) {
       stage.window.form().Width(numberOf(words[0]));
       stage.window.form().Height(numberOf(words[1]));
       return true;
     }},
    {"colors", 2,
     [](Stage stage, const Words& words) {
       stage.window.editor().ForeColor(colorOf(words[0]));
       stage.window.editor().BackColor(colorOf(words[1]));
       return true;
     }},
    {"point", 2,
     [](Stage stage, const Words& words) {
       stage.desktop.movePointer(stage.window.editor().ImageControl(), path(words).front());
       return true;
     }},
    {"drag", 2,
     [](Stage stage, const Words& words) {
       stage.desktop.drag(stage.window.editor().ImageControl(), path(words));
       return true;
     }},
    {"picture", 1,
     [](Stage stage, const Words& words) {
       return stage.desktop.saveScreenshot(stage.window.form(), words[0]);
     }},
    {"opened", 2,
     [](Stage stage, const Words& words) {
       return stage.desktop.saveOpenedWindow([&] { stage.window.runCommand(words[1]); }, words[0]);
     }},
    {"dialog", 1, &useDialog},
};

}  // namespace

bool runStep(const std::string& line, EditorWindow& window, qt::Desktop& desktop, BoxScript& boxes) {
  Words words = wordsOf(line);
  if (words.empty()) return true;
  const std::string name = words.front();
  words.erase(words.begin());

  bool done = true;
  const auto* const step = std::find_if(std::begin(kSteps), std::end(kSteps),
                                        [&name](const Step& row) { return row.name == name; });
  if (step == std::end(kSteps)) {
    if (!words.empty()) refuse("The command \"" + name + "\" takes no arguments.");
    window.runCommand(name);
  } else {
    if (words.size() < step->words) refuse("\"" + name + "\" needs more arguments.");
    done = step->run({window, desktop, boxes}, words);
  }
  desktop.settle();
  return done;
}

}  // namespace kestrel::app
