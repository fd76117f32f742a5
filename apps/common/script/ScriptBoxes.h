#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "imaging/contract/UserInterface.h"

namespace kestrel::app {

/// What a script knows of the boxes that its steps show.
struct BoxScript {
  /// The program's name, for lines on standard error.
  std::string program = {};
  /// Boxes do not wait for a user.
  bool unattended = false;
  /// The next box is shown all the same: the script takes a picture of it and closes it.
  bool showsNext = false;
  /// Answers for the next message boxes; see `kAnswerOK` and the other constants.
  std::deque<std::int32_t> answers = {};
  /// Number of unattended boxes that had no answer.
  int unexpected = 0;
};

/// The answer by the button's English text, in any case: "OK", "Cancel", "Abort", "Retry", "Ignore", "Yes" or
/// "No". Raises RuntimeError 5 for any other text.
std::int32_t answerOf(const std::string& button);

/// The boxes of a run by script. The script's answers come first. Without one, an unattended box is a line on
/// standard error and is closed as by Escape; an attended one is the desktop's.
class ScriptBoxes final : public UserInterface {
 public:
  /// `script` must outlive this object.
  ScriptBoxes(BoxScript& script, std::unique_ptr<UserInterface> desktop)
      : script_(script), desktop_(std::move(desktop)) {}

  std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                          WindowHandle owner) override;
  std::string InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                       const Point* position, WindowHandle owner) override;
  void AboutBox(const std::string& title, const std::string& versionText, const PicturePtr& picture,
                WindowHandle owner) override;

 private:
  void report(const std::string& text);
  /// Whether the next box is the desktop's.
  bool isShown();

  BoxScript& script_;
  std::unique_ptr<UserInterface> desktop_;
};

/// Writes the text as one line of that program to standard error; each line break becomes a blank.
void reportFailure(const std::string& program, const std::string& text);

}  // namespace kestrel::app
