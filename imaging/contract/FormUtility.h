#pragma once

#include <cstdint>
#include <string>

#include "Control.h"
#include "Form.h"
#include "controls/TextBox.h"

namespace kestrel {

/// Values of `FormUtility::SetPointer`.
inline constexpr std::int32_t kBusyDefault = 0;
inline constexpr std::int32_t kBusyHourglass = 11;
inline constexpr std::int32_t kBusyArrowHourglass = 13;

/// Services for all windows. One per process.
class FormUtility {
 public:
  virtual ~FormUtility() = default;

  /// The pointer over all of this process's windows: 13 arrow and hourglass, 11 hourglass, 0 default.
  virtual void SetPointer(std::int32_t pointer) = 0;
  virtual void SelectAllText(TextBox& textBox) = 0;
  virtual void SetFocusTo(Control& control) = 0;
  /// Shows a window modally (`mode` 1), returns when it is hidden or its owner is destroyed, and returns its
  /// answer to `Form::QueryResult`. The owner is a form or a control; null means the active editor.
  virtual bool ShowDialog(Form& form, std::int32_t mode, Control* owner) = 0;
  /// True for an existing file or folder.
  virtual bool FileExists(const std::string& path) = 0;
  /// Whether a Shift key is held, which reverses a click of the zoom tool.
  virtual bool IsModifierDown() = 0;
};

}  // namespace kestrel
