#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// Chooses a color, or "no color" by its extra button.
class ColorPicker : public Control {
 public:
  virtual OLE_COLOR Value() const = 0;
  /// Selects a color instead of the extra button. Raises `Change` if the color differs.
  virtual void Value(OLE_COLOR value) = 0;
  /// Whether the extra button is selected instead of a color.
  virtual bool EnhancedIsSelected() const = 0;
  virtual void EnhancedIsSelected(bool value) = 0;
  virtual void EnhancedVisible(bool value) = 0;
  virtual bool EnhancedVisible() const = 0;
  virtual void EnhancedCaption(const std::string& value) = 0;
  virtual std::string EnhancedCaption() const = 0;
  /// Opens the list of colors.
  virtual void DropDown() = 0;

  Event<OLE_COLOR> Change;
  Event<> EnhancedButtonClicked;
};

}  // namespace kestrel
