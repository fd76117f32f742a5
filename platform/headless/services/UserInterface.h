#pragma once

#include <string>
#include <utility>

#include "../User.h"
#include "imaging/contract/UserInterface.h"

namespace kestrel::headless {

/// Passes every box to the scripted user.
class UserInterface final : public kestrel::UserInterface {
 public:
  UserInterface(User& user, std::string applicationTitle)
      : user_(user), applicationTitle_(std::move(applicationTitle)) {}

  std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                          WindowHandle /*owner*/) override {
    return user_.answerBox({text, style, title.empty() ? applicationTitle_ : title});
  }
  std::string InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                       const Point* /*position*/, WindowHandle /*owner*/) override {
    return user_.answerQuestion({prompt, title, defaultText}).value_or("");
  }
  void AboutBox(const std::string& title, const std::string& versionText, const PicturePtr& picture,
                WindowHandle /*owner*/) override {
    user_.recordAbout({title, versionText, picture != nullptr});
  }

 private:
  User& user_;
  std::string applicationTitle_;
};

}  // namespace kestrel::headless
