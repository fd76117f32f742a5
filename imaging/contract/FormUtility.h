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

/// What windows share. One per process.
class FormUtility {
 public:
  virtual ~FormUtility() = default;

  /// The pointer over all of this process's windows: 13 arrow and hourglass, 11 hourglass, 0 default.
  virtual void SetPointer(std::int32_t pointer) = 0;
  virtual void SelectAllText(TextBox& textBox) = 0;
  virtual void SetFocusTo(Control& control) = 0;
  /// Shows a window modally (`mode` 1), returns when it is hidden or its owner is destroyed, and then returns
  /// what it answers to `Form::QueryResult`. The owner is a form or a control; null is the editor that is
  /// active.
  virtual bool ShowDialog(Form& form, std::int32_t mode, Control* owner) = 0;
  /// True for an existing file or folder.
  virtual bool FileExists(const std::string& path) = 0;
  /// Whether the modifier that turns a click of the zoom tool round is held: either Shift key.
  virtual bool IsModifierDown() = 0;
};

}  // namespace kestrel
