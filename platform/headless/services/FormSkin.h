#pragma once

#include <string>
#include <vector>

#include "base/RuntimeError.h"
#include "imaging/contract/FormSkin.h"

namespace kestrel::headless {

/// Records the calls of `ApplyToForm`.
class FormSkin final : public kestrel::FormSkin {
 public:
  struct Application {
    std::string name;
    OLE_COLOR foreColor = kNoColor;
    OLE_COLOR backColor = kNoColor;
  };

  void ApplyToForm(Control& formOrControl, OLE_COLOR foreColor, OLE_COLOR backColor) override {
    applied_.push_back({formOrControl.Name(), foreColor, backColor});
    if (failing) throw RuntimeError(err::kInvalidCall, "The look could not be applied.");
  }

  /// If set, every call raises.
  bool failing = false;
  const std::vector<Application>& applied() const { return applied_; }

 private:
  std::vector<Application> applied_;
};

}  // namespace kestrel::headless
