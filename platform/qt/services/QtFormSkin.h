#pragma once

#include "imaging/contract/FormSkin.h"

namespace kestrel::qt {

/// The shared look of dialogs is the desktop's own, with optional colors on top.
class QtFormSkin final : public FormSkin {
 public:
  void ApplyToForm(Control& formOrControl, OLE_COLOR foreColor, OLE_COLOR backColor) override;
};

}  // namespace kestrel::qt
