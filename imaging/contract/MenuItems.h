#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

/// One entry of a window's menu.
class MenuItem {
 public:
  virtual ~MenuItem() = default;
  virtual void Caption(const std::string& value) = 0;
  virtual void Tag(const std::string& value) = 0;
  virtual void Enabled(bool value) = 0;
  virtual void Visible(bool value) = 0;
};

/// A window with menu entries in a control array that can grow and shrink.
class MenuItems {
 public:
  virtual ~MenuItems() = default;
  /// Raises 340 if there is no such element.
  virtual MenuItem& Item(const std::string& name, std::int32_t index) = 0;
  /// Adds an element, a hidden copy of element 0; raises 360 if it already exists.
  virtual MenuItem& Load(const std::string& name, std::int32_t index) = 0;
  /// Raises 340 if there is no such element, 362 for an element of the form itself.
  virtual void Unload(const std::string& name, std::int32_t index) = 0;
};

}  // namespace kestrel
