#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/OpenCalls.h"
#include "imaging/contract/Types.h"

namespace kestrel {
class Command;
class Control;
class Form;
}  // namespace kestrel

namespace kestrel::headless {

class FileDialog;
class Window;

/// The simulated user: a script of actions for the boxes and dialogs in the order in which they appear, and
/// input by keys and pointer.
///
/// An unexpected box or dialog is a complaint and is canceled, so that nothing ever waits. Complaints go to
/// `onComplaint`, or end the program with their text if none is set.
class User {
 public:
  struct Box {
    std::string text;
    std::int32_t style = 0;
    std::string title;
  };
  struct Question {
    std::string prompt;
    std::string title;
    std::string defaultText;
  };
  struct FolderQuestion {
    std::string prompt;
    std::string title;
    std::string start;
  };
  struct About {
    std::string title;
    std::string versionText;
    bool hasPicture = false;
  };

  /// What the user does in a form or a file dialog counts as a call; `calls` must outlive this object.
  explicit User(OpenCalls& calls) : calls_(calls) {}

  std::function<void(const std::string&)> onComplaint;

  // The script.
  /// Presses that button of the next message box, which must have it; see `kAnswerOK` and the other
  /// constants.
  void answers(std::int32_t answer);
  /// Types into the next input box and confirms.
  void types(std::string text);
  void cancelsInput();
  void closesAbout();
  /// Operates the next form shown modally, which must have that name; `doing` must leave it hidden.
  void uses(std::string form, std::function<void(kestrel::Form&)> doing);
  /// Chooses a file in the next file dialog. If the dialog asks whether to replace an existing file,
  /// confirms.
  void chooses(std::string filename);
  /// The same, after calling `before` with the dialog.
  void chooses(std::string filename, std::function<void(FileDialog&)> before);
  void cancelsFileDialog(std::function<void(FileDialog&)> before = {});
  /// Chooses a folder in the next folder dialog.
  void choosesFolder(std::string folder);
  void cancelsFolderDialog();
  /// Chooses from the next popup menu by the key of a command; an empty key closes the menu.
  void picks(std::string commandKey);

  /// The remaining script in words; empty when it is complete.
  std::string left() const;

  // Boxes and dialogs shown so far.
  const std::vector<Box>& boxes() const { return boxes_; }
  const std::vector<Question>& questions() const { return questions_; }
  const std::vector<FolderQuestion>& folderQuestions() const { return folderQuestions_; }
  const std::vector<About>& abouts() const { return abouts_; }
  void forget();

  // Called by the platform.
  std::int32_t answerBox(const Box& box);
  std::optional<std::string> answerQuestion(const Question& question);
  void recordAbout(const About& about);
  void useForm(kestrel::Form& form);
  /// The chosen name, none if the dialog was canceled.
  std::optional<std::string> useFileDialog(FileDialog& dialog);
  /// The chosen folder, empty if the dialog was canceled.
  std::string chooseFolder(const FolderQuestion& question);
  std::string usePopup(const std::string& menu);
  void complain(const std::string& text) const;

 private:
  struct Answer {
    std::int32_t answer;
  };
  struct Typing {
    std::optional<std::string> text;
  };
  struct Closing {};
  struct Using {
    std::string form;
    std::function<void(kestrel::Form&)> doing;
  };
  struct Choosing {
    std::optional<std::string> filename;
    std::function<void(FileDialog&)> before;
  };
  struct ChoosingFolder {
    std::string folder;
  };
  struct Picking {
    std::string key;
  };
  using Step = std::variant<Answer, Typing, Closing, Using, Choosing, ChoosingFolder, Picking>;

  static std::string words(const Step& step);
  /// The next step of the script if it is a `T`; else complains.
  template <typename T>
  std::optional<T> next(const std::string& whatCameUp);

  OpenCalls& calls_;
  std::deque<Step> script_;
  std::vector<Box> boxes_;
  std::vector<Question> questions_;
  std::vector<FolderQuestion> folderQuestions_;
  std::vector<About> abouts_;
};

}  // namespace kestrel::headless
