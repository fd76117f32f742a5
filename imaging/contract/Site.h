#pragma once

#include <cstdint>
#include <string>

#include "ControlContainer.h"
#include "base/Event.h"
#include "base/Variant.h"

namespace kestrel {

/// The size of a new preview control: 4800 by 3600 twips, of which the desktop has 15 per pixel.
inline constexpr Size kPreviewDesignSize{4800 / 15, 3600 / 15};

/// The host's storage for a control's properties.
class PropertyBag {
 public:
  virtual ~PropertyBag() = default;
  /// The stored value, or the default if there is none.
  virtual Variant ReadProperty(const std::string& name, const Variant& defaultValue) const = 0;
  /// Stores the value; a value equal to its default may be omitted.
  virtual void WriteProperty(const std::string& name, const Variant& value, const Variant& defaultValue) = 0;
};

/// The interface between one of our controls and its container: the control's window with its child windows,
/// the container's properties, and the container's requests.
///
/// After the control is made, the container raises exactly one of `InitProperties` (a new control) and
/// `ReadProperties` (a stored one), then `Resize` for each new size.
class Site : public Control, public ControlContainer {
 public:
  /// True at run time, false on a design surface.
  virtual bool UserMode() const = 0;
  /// Notifies the container that a stored property has changed.
  virtual void PropertyChanged(const std::string& name) = 0;
  /// Repaints the control.
  virtual void Refresh() = 0;
  virtual void TabStop(bool value) = 0;
  /// Whether the container lets the user drop files on the control.
  virtual bool AcceptsFiles() const = 0;

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
  Event<> AcceptsFilesChanged;
  /// Whether the control would take a dropped file now. False if no handler sets it.
  Event<bool&> QueryFileDrop;
  /// The user has dropped files; the name of the first one.
  Event<const std::string&> FileDrop;
};

}  // namespace kestrel
