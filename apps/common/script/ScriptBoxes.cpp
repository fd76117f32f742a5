#include "ScriptBoxes.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <span>
#include <utility>

#include "Words.h"
#include "base/Numbers.h"

namespace kestrel::app {
namespace {

/// The buttons of a box in the order of their answers' numbers.
constexpr std::array kButtons = {"OK", "Cancel", "Abort", "Retry", "Ignore", "Yes", "No"};

constexpr std::int32_t kAnswerAbort = 3;
constexpr std::int32_t kAnswerRetry = 4;
constexpr std::int32_t kAnswerIgnore = 5;

/// The button set of a style, and the button that Escape presses.
struct ButtonSet {
  std::array<std::int32_t, 3> answers;  ///< 0 for none
  std::int32_t escape;
};

constexpr ButtonSet kSets[] = {
    {{kAnswerOK}, kAnswerOK},
    {{kAnswerOK, kAnswerCancel}, kAnswerCancel},
    {{kAnswerAbort, kAnswerRetry, kAnswerIgnore}, kAnswerAbort},
    {{kAnswerYes, kAnswerNo, kAnswerCancel}, kAnswerCancel},
    {{kAnswerYes, kAnswerNo}, kAnswerNo},
    {{kAnswerRetry, kAnswerCancel}, kAnswerCancel},
};

const ButtonSet& buttonsOf(std::int32_t style) {
  constexpr std::int32_t kButtonBits = 0x0F;
  const auto set = static_cast<std::size_t>(style & kButtonBits);
  return set < std::size(kSets) ? kSets[set] : kSets[0];
}

std::string nameOf(std::int32_t answer) { return kButtons.at(static_cast<std::size_t>(answer) - 1); }

}  // namespace

std::int32_t answerOf(const std::string& button) {
  const auto* const found = std::find_if(kButtons.begin(), kButtons.end(),
                                         [&](const char* name) { return EqualIgnoringCase(name, button); });
  if (found == kButtons.end()) refuse("No box has a button \"" + button + "\".");
  return static_cast<std::int32_t>(found - kButtons.begin()) + 1;
}

void reportFailure(const std::string& program, const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c == '\n' && line.ends_with('\r')) continue;
    line += c;
  }
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  std::cerr << program << ": " << line << '\n';
}

bool ScriptBoxes::isShown() { return std::exchange(script_.showsNext, false) || !script_.unattended; }

void ScriptBoxes::report(const std::string& text) {
  ++script_.unexpected;
  reportFailure(script_.program, text);
}

std::int32_t ScriptBoxes::MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                                     WindowHandle owner) {
  const std::string words = title.empty() ? text : title + ": " + text;
  const ButtonSet& set = buttonsOf(style);
  if (!script_.answers.empty()) {
    const std::int32_t answer = script_.answers.front();
    script_.answers.pop_front();
    if (std::find(set.answers.begin(), set.answers.end(), answer) != set.answers.end()) return answer;
    report(words + " (The box has no button \"" + nameOf(answer) + "\".)");
    return set.escape;
  }
  if (isShown()) return desktop_->MessageBox(text, style, title, owner);
  report(words);
  return set.escape;
}

std::string ScriptBoxes::InputBox(const std::string& prompt, const std::string& title,
                                  const std::string& defaultText, const Point* position, WindowHandle owner) {
  if (isShown()) return desktop_->InputBox(prompt, title, defaultText, position, owner);
  report(title + ": " + prompt);
  return {};
}

void ScriptBoxes::AboutBox(const std::string& title, const std::string& versionText,
                           const PicturePtr& picture, WindowHandle owner) {
  if (isShown()) return desktop_->AboutBox(title, versionText, picture, owner);
  std::cout << title << ' ' << versionText << '\n';
}

}  // namespace kestrel::app
