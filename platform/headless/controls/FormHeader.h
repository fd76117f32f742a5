#pragma once

#include <string>

#include "../Window.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/controls/FormHeader.h"

namespace kestrel::headless {

class FormHeader final : public WindowOf<kestrel::FormHeader> {
 public:
  using WindowOf::WindowOf;

  /// The strip at the top, the row at the bottom, and the margins at the sides of the dialog's area.
  static constexpr std::int32_t kStrip = 32;
  static constexpr std::int32_t kRow = 44;
  static constexpr std::int32_t kMargin = 8;

  std::string Title() const override {
    const auto* form = dynamic_cast<const kestrel::Form*>(parent());
    return form ? form->Caption() : std::string();
  }
  bool OKEnabled() const override { return okEnabled_; }
  void OKEnabled(bool value) override { okEnabled_ = value; }
  void PressOK() override {
    if (okEnabled_ && isUsable()) OKClick();
  }
  void PressCancel() override {
    if (isUsable()) CancelClick();
  }

  void containerLaidOut() override {
    const Rectangle& form = parent()->place();
    place({0, 0, form.Width, form.Height});
    Resize(kMargin, kStrip, form.Width - 2 * kMargin, form.Height - kStrip - kRow);
  }

 private:
  bool okEnabled_ = true;
};

}  // namespace kestrel::headless
