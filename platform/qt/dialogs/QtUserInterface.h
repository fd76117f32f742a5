#pragma once

#include <QString>
#include <string>

#include "base/OpenCalls.h"
#include "imaging/contract/UserInterface.h"

namespace kestrel::qt {

class QtUserInterface final : public UserInterface {
 public:
  /// `applicationTitle` is the title of boxes without one.
  QtUserInterface(std::string applicationTitle, OpenCalls& calls)
      : applicationTitle_(std::move(applicationTitle)), calls_(calls) {}

  std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                          WindowHandle owner) override;
  std::string InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                       const Point* position, WindowHandle owner) override;
  void AboutBox(const std::string& title, const std::string& versionText, const PicturePtr& picture,
                WindowHandle owner) override;

 private:
  QString titleOf(const std::string& title) const;

  std::string applicationTitle_;
  OpenCalls& calls_;
};

}  // namespace kestrel::qt
