#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// The header of a dialog with OK and Cancel; it lays out the rest of the window below.
class FormHeader : public Control {
 public:
  virtual bool OKEnabled() const = 0;
  virtual void OKEnabled(bool value) = 0;

  Event<> OKClick;
  Event<> CancelClick;
  /// The area that is left for the dialog: left, top, width, height.
  Event<std::int32_t, std::int32_t, std::int32_t, std::int32_t> Resize;
};

}  // namespace kestrel
