#pragma once

#include <cstdint>
#include <string>

#include "Picture.h"
#include "Types.h"

namespace kestrel {

/// Styles of a message box: the sum of one button set and one icon.
inline constexpr std::int32_t kBoxOK = 0;
inline constexpr std::int32_t kBoxYesNoCancel = 3;
inline constexpr std::int32_t kBoxCritical = 16;
inline constexpr std::int32_t kBoxQuestion = 32;
inline constexpr std::int32_t kBoxExclamation = 48;
inline constexpr std::int32_t kBoxInformation = 64;

/// Answers of a message box.
inline constexpr std::int32_t kAnswerOK = 1;
inline constexpr std::int32_t kAnswerCancel = 2;
inline constexpr std::int32_t kAnswerYes = 6;
inline constexpr std::int32_t kAnswerNo = 7;

/// Message, input and About boxes. Each call returns when the user has closed the box, or when the window
/// that owns it is destroyed, which counts as closing. Line ends are CR LF, or CR alone. An owner of 0 means
/// the active editor.
class UserInterface {
 public:
  virtual ~UserInterface() = default;

  /// An empty title means the application's. Closing the box counts as Cancel, or as OK if there is no
  /// Cancel.
  virtual std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title = {},
                                  WindowHandle owner = 0) = 0;
  /// The text that the user typed, empty when canceled. The position is in screen pixels; null centers the
  /// box.
  virtual std::string InputBox(const std::string& prompt, const std::string& title,
                               const std::string& defaultText = {}, const Point* position = nullptr,
                               WindowHandle owner = 0) = 0;
  /// The picture may be null.
  virtual void AboutBox(const std::string& title, const std::string& versionText, const PicturePtr& picture,
                        WindowHandle owner = 0) = 0;
};

}  // namespace kestrel
