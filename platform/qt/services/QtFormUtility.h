#pragma once

#include "imaging/contract/FormUtility.h"

namespace kestrel::qt {

class QtFormUtility final : public FormUtility {
 public:
  void SetPointer(std::int32_t pointer) override;
  void SelectAllText(TextBox& textBox) override;
  void SetFocusTo(Control& control) override;
  bool ShowDialog(Form& form, std::int32_t mode, Control* owner) override;
  bool FileExists(const std::string& path) override;
  bool IsModifierDown() override;
};

}  // namespace kestrel::qt
