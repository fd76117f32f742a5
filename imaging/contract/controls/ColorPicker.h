#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// Chooses a colour, or, by its extra button, something that is none.
class ColorPicker : public Control {
 public:
  virtual OLE_COLOR Value() const = 0;
  /// Gives up the extra button's choice. Raises `Change` if the colour differs.
  virtual void Value(OLE_COLOR value) = 0;
  /// The extra button is chosen instead of a colour.
  virtual bool EnhancedIsSelected() const = 0;
  virtual void EnhancedIsSelected(bool value) = 0;
  virtual void EnhancedVisible(bool value) = 0;
  virtual bool EnhancedVisible() const = 0;
  virtual void EnhancedCaption(const std::string& value) = 0;
  virtual std::string EnhancedCaption() const = 0;
  /// Opens the list of colours.
  virtual void DropDown() = 0;

  Event<OLE_COLOR> Change;
  Event<> EnhancedButtonClicked;
};

}  // namespace kestrel
