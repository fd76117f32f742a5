#include "Steps.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <string_view>
#include <vector>

#include "base/RuntimeError.h"
#include "imaging/contract/Types.h"

namespace kestrel::app {
namespace {

using Words = std::vector<std::string>;

struct Stage {
  EditorWindow& window;
  qt::Desktop& desktop;
};

[[noreturn]] void refuse(const std::string& reason) { throw RuntimeError(err::kInvalidCall, reason); }

std::int32_t number(const std::string& word, int base = 10) {
  std::int32_t value = 0;
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value, base);
  if (error != std::errc() || stop != end) refuse("\"" + word + "\" is not a number.");
  return value;
}

OLE_COLOR color(const std::string& word) {
  if (word == "none") return -1;
  constexpr int kHex = 16;
  const std::int32_t rgb = number(word, kHex);
  return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | (rgb >> 16 & 0xFF);
}

std::vector<Point> path(const Words& words) {
  if (words.size() % 2 != 0) refuse("A position is two numbers.");
  std::vector<Point> points;
  for (std::size_t i = 0; i < words.size(); i += 2)
    points.push_back({number(words[i]), number(words[i + 1])});
  return points;
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
       stage.window.form().Width(number(words[0]));
       stage.window.form().Height(number(words[1]));
       return true;
     }},
    {"colors", 2,
     [](Stage stage, const Words& words) {
       stage.window.editor().ForeColor(color(words[0]));
       stage.window.editor().BackColor(color(words[1]));
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
};

}  // namespace

bool runStep(const std::string& line, EditorWindow& window, qt::Desktop& desktop) {
  std::istringstream text(line);
  std::string name;
  text >> name;
  Words words;
  for (std::string word; text >> word;) words.push_back(word);

  bool done = true;
  const auto* const step = std::find_if(std::begin(kSteps), std::end(kSteps),
                                        [&name](const Step& row) { return row.name == name; });
  if (step == std::end(kSteps)) {
    if (!words.empty()) refuse("The command \"" + name + "\" takes no arguments.");
    window.runCommand(name);
  } else {
    if (words.size() < step->words) refuse("\"" + name + "\" needs more arguments.");
    done = step->run({window, desktop}, words);
  }
  desktop.settle();
  return done;
}

}  // namespace kestrel::app
