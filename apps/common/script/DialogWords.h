#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Words.h"
#include "imaging/contract/Form.h"

namespace kestrel::app {

/// The words of a `dialog` line after the command's key, in order:
///
/// - `NAME=VALUE` or `NAME(INDEX)=VALUE` sets a control: a text, a check state 0 or 1, a list index, an
/// option
///   button or a picture button 1, a slider's value, a color as RRGGBB or "none", a tab counted from 1
/// - `press NAME(INDEX)` presses a button; `press FormHeader.OK` and `press FormHeader.Cancel` those of a
///   header
/// - `answer BUTTON` answers the next message box by the English text of a button
/// - `picture PNG` saves a screenshot of the dialog
class DialogWords {
 public:
  /// What the words need of the program.
  struct Surroundings {
    std::function<void()> settle;                         ///< processes pending events; runs after each word
    std::function<void(std::int32_t)> answer;             ///< provides the answer of the next message box
    std::function<bool(Form&, const std::string&)> save;  ///< saves a screenshot; false if it failed
  };

  /// Raises RuntimeError 5 for a word that is none of these.
  explicit DialogWords(const Words& words);

  /// Carries out the words in an open dialog. Raises RuntimeError 5 for a control that is missing, hidden,
  /// disabled or of another class, for a value that does not fit, for words after the dialog was closed, and
  /// if the dialog is still open after the last one.
  void play(Form& dialog, const Surroundings& surroundings) const;

 private:
  enum class Verb { kSet, kPress, kAnswer, kPicture };
  struct Deed {
    Verb verb = Verb::kSet;
    std::string word;  ///< as written
    std::string name;  ///< of the control
    std::int32_t index = -1;
    std::string value;
  };

  static Deed deedOf(Verb verb, const std::string& word);
  static void carryOut(const Deed& deed, Form& dialog, const Surroundings& surroundings);

  std::vector<Deed> deeds_;
};

}  // namespace kestrel::app
