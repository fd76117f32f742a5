#include "Steps.h"

namespace kestrel::app {
namespace {

std::vector<Point> path(const Words& words) {
  if (words.size() % 2 != 0) refuse("A position is two numbers.");
  std::vector<Point> points;
  for (std::size_t i = 0; i < words.size(); i += 2)
    points.push_back({numberOf(words[i]), numberOf(words[i + 1])});
  return points;
}

}  // namespace

std::vector<Step> editorSteps(EditorWindow& window, qt::Desktop& desktop) {
  return {
      {"colors", 2,
       [&window](const Words& words) {
         window.editor().ForeColor(colorOf(words[0]));
         window.editor().BackColor(colorOf(words[1]));
         return true;
       }},
      {"point", 2,
       [&window, &desktop](const Words& words) {
         desktop.movePointer(window.editor().ImageControl(), path(words).front());
         return true;
       }},
      {"drag", 2,
       [&window, &desktop](const Words& words) {
         desktop.drag(window.editor().ImageControl(), path(words));
         return true;
       }},
  };
}

void runKey(EditorWindow& window, const std::string& key) {
  if (key != "thumbnail") return window.runCommand(key);
  if (!window.editor().Image()) refuse("A thumbnail needs a picture.");
  window.editor().ShowGetThumnailDialog();
}

}  // namespace kestrel::app
