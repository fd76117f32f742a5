#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "base/Event.h"

namespace kestrel {

/// A single-line text input.
class TextBox : public Control {
 public:
  virtual std::string Text() const = 0;
  /// Raises `Change` if the text differs.
  virtual void Text(const std::string& value) = 0;
  virtual std::string SelectedText() const = 0;

  Event<> Change;
  Event<> GotFocus;
};

}  // namespace kestrel
