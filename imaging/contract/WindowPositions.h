#pragma once

#include <cstdint>
#include <string>

#include "Form.h"

namespace kestrel {

/// Placement of a window without a stored position; values of `LoadPosition`'s third argument.
inline constexpr std::int32_t kPlaceAsIs = 0;
inline constexpr std::int32_t kPlaceOnScreenCenter = 2;

/// Stores position and size of windows, per key and window. One per process.
class WindowPositions {
 public:
  virtual ~WindowPositions() = default;

  /// The key below which positions are stored, read at each call. With an empty key nothing is stored or
  /// found.
  virtual std::string RegistryKey() const = 0;
  virtual void RegistryKey(const std::string& value) = 0;

  /// Restores a window's client area, moved and shrunk as needed to fit on an existing screen, including the
  /// title bar once the frame is known, and its maximized state. An invalid stored position counts as none,
  /// and so does its state. An empty `Name` means the form's own name. A window without a stored position is
  /// placed by `Placement`, no larger than the screen; `Screen` is the screen for it, 0 the first.
  virtual void LoadPosition(Form& form, const std::string& Name, std::int32_t Placement = kPlaceAsIs,
                            std::int32_t Screen = 0) = 0;

  /// Stores position and size, of a maximized window those that it is restored to. A minimized one leaves the
  /// stored values unchanged.
  virtual void SavePosition(Form& form, const std::string& Name) = 0;
};

}  // namespace kestrel
