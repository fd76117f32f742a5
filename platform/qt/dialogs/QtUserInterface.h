#pragma once

#include <QString>
#include <string>

#include "imaging/contract/UserInterface.h"

namespace kestrel::qt {

class QtUserInterface final : public UserInterface {
 public:
  /// `applicationTitle` heads boxes without a title of their own.
  explicit QtUserInterface(std::string applicationTitle) : applicationTitle_(std::move(applicationTitle)) {}

  std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title) override;
  std::string InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                       const Point* position) override;
  void AboutBox(const std::string& title, const std::string& versionText, const PicturePtr& picture) override;

 private:
  QString titleOf(const std::string& title) const;

  std::string applicationTitle_;
};

}  // namespace kestrel::qt
