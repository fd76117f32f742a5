#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "../Desktop.h"
#include "../FileSystem.h"
#include "imaging/contract/FormUtility.h"

namespace kestrel::headless {

class FormUtility final : public kestrel::FormUtility {
 public:
  FormUtility(Desktop& desktop, const FileSystem& files) : desktop_(desktop), files_(files) {}

  void SetPointer(std::int32_t pointer) override { pointers_.push_back(pointer); }
  void SelectAllText(kestrel::TextBox& textBox) override;
  void SetFocusTo(Control& control) override;
  bool ShowDialog(kestrel::Form& form, std::int32_t mode, kestrel::Control* owner) override;
  bool FileExists(const std::string& path) override { return files_.exists(path); }
  bool IsModifierDown() override { return (desktop_.shift & kShiftMask) != 0; }

  /// All pointers that were set, in order.
  const std::vector<std::int32_t>& pointers() const { return pointers_; }
  void forgetPointers() { pointers_.clear(); }

 private:
  Desktop& desktop_;
  const FileSystem& files_;
  std::vector<std::int32_t> pointers_;
};

}  // namespace kestrel::headless
