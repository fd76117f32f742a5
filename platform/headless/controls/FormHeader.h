#pragma once

#include "../Window.h"
#include "imaging/contract/controls/FormHeader.h"

namespace kestrel::headless {

class FormHeader final : public WindowOf<kestrel::FormHeader> {
 public:
  using WindowOf::WindowOf;

  bool OKEnabled() const override { return okEnabled_; }
  void OKEnabled(bool value) override { okEnabled_ = value; }

  void pressOK() {
    if (okEnabled_ && isUsable()) OKClick();
  }
  void pressCancel() {
    if (isUsable()) CancelClick();
  }

 private:
  bool okEnabled_ = true;
};

}  // namespace kestrel::headless
