#pragma once

#include "imaging/contract/FormSkin.h"

namespace kestrel::qt {

/// The look that all dialogs share is the desktop's own; colours of one's own go over it.
class QtFormSkin final : public FormSkin {
 public:
  void ApplyToForm(Control& formOrControl, OLE_COLOR foreColor, OLE_COLOR backColor) override;
};

}  // namespace kestrel::qt
