#pragma once

#include "imaging/contract/UserInterface.h"

namespace kestrel::app {

/// Message boxes for unattended runs: each is a line on standard error and counts as a failure; questions are
/// answered with Cancel.
class ConsoleBoxes final : public UserInterface {
 public:
  /// `shown` counts the boxes; it must outlive this object.
  explicit ConsoleBoxes(int& shown) : shown_(shown) {}

  std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                          WindowHandle owner) override;
  std::string InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                       const Point* position, WindowHandle owner) override;
  void AboutBox(const std::string& title, const std::string& versionText, const PicturePtr& picture,
                WindowHandle owner) override;

 private:
  int& shown_;
};

/// Writes the text as one line to standard error; line breaks become blanks.
void reportFailure(std::string text);

}  // namespace kestrel::app
