#pragma once

#include <cstdint>
#include <string>

#include "ControlContainer.h"
#include "base/Event.h"
#include "base/Variant.h"

namespace kestrel {

/// The size of a new preview control, 4800 by 3600 in units of which the desktop shows 15 to a pixel.
inline constexpr Size kPreviewDesignSize{4800 / 15, 3600 / 15};

/// Where a host keeps a control's properties.
class PropertyBag {
 public:
  virtual ~PropertyBag() = default;
  /// The stored value, or the default where there is none.
  virtual Variant ReadProperty(const std::string& name, const Variant& defaultValue) const = 0;
  /// Stores the value; one that equals its default need not be kept.
  virtual void WriteProperty(const std::string& name, const Variant& value, const Variant& defaultValue) = 0;
};

/// The side of one of our controls that its container sees: the window it stands in with the child windows
/// that its looks describe, what the container tells about itself, and what the container asks of it.
///
/// The container raises exactly one of `InitProperties` (a new control) and `ReadProperties` (a stored one)
/// after the control was made, then `Resize` for each size it is given.
class Site : public Control, public ControlContainer {
 public:
  /// True at run time, false on a design surface.
  virtual bool UserMode() const = 0;
  /// Tells the container that a property which it stores has changed.
  virtual void PropertyChanged(const std::string& name) = 0;
  /// Repaints the control.
  virtual void Refresh() = 0;
  virtual void TabStop(bool value) = 0;

  virtual std::int32_t ScaleWidth() const = 0;
  virtual std::int32_t ScaleHeight() const = 0;

  Event<> InitProperties;
  Event<const PropertyBag&> ReadProperties;
  Event<PropertyBag&> WriteProperties;
  Event<> Resize;
  Event<> Show;
  Event<> Hide;
  Event<std::int32_t, std::int32_t> KeyDown;  ///< key code, Shift
  /// Character code; 27 is Escape. A handler that sets it to 0 keeps the key from the container.
  Event<std::int32_t&> KeyPress;
  /// Whether Escape would end something in the control, so that no shortcut of the container takes it first.
  Event<bool&> QueryEscape;
  Event<std::int32_t, std::int32_t> KeyUp;
};

}  // namespace kestrel
