#pragma once

#include <cstdint>

#include "Control.h"

namespace kestrel {

/// The look that all dialogs share. One per process.
class FormSkin {
 public:
  virtual ~FormSkin() = default;
  /// Applies the shared look to a form or control and all its children. A color of -1 is the desktop's own.
  virtual void ApplyToForm(Control& formOrControl, OLE_COLOR foreColor, OLE_COLOR backColor) = 0;
};

}  // namespace kestrel
