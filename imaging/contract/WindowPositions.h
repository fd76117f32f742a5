#pragma once

#include <cstdint>
#include <string>

#include "Form.h"

namespace kestrel {

/// Where a window goes for which no position is stored yet; the values of `LoadPosition`'s third argument.
inline constexpr std::int32_t kPlaceAsIs = 0;
inline constexpr std::int32_t kPlaceOnScreenCentre = 2;

/// Remembers where windows stood and how large they were, per key and window. One per process.
class WindowPositions {
 public:
  virtual ~WindowPositions() = default;

  /// The key below which positions are stored and looked for, at each call anew. With an empty key nothing
  /// is stored or found.
  virtual std::string RegistryKey() const = 0;
  virtual void RegistryKey(const std::string& value) = 0;

  /// Puts a window's client area back where it was, moved and shrunk as far as it takes for the window to be
  /// on a screen that exists, title bar included once the frame is known, and maximises a window that was
  /// maximised. A stored position that is damaged counts as none, and so does its state. An empty `Name`
  /// means the form's own name. A window without a stored position is placed as `Placement` says, and is no
  /// larger than the screen; `Screen` is the screen that `Placement` means, 0 the first.
  virtual void LoadPosition(Form& form, const std::string& Name, std::int32_t Placement = kPlaceAsIs,
                            std::int32_t Screen = 0) = 0;

  /// Stores position and size, of a maximised window those that it is restored to. A minimised one leaves
  /// what is stored as it is.
  virtual void SavePosition(Form& form, const std::string& Name) = 0;
};

}  // namespace kestrel
