#pragma once

#include <cstdint>
#include <string>

#include "Types.h"

namespace kestrel {

/// Common base of the windows on a form or control. Positions and sizes are pixels of the container.
class Control {
 public:
  virtual ~Control() = default;

  /// The name on its form; elements of a control array share one name.
  virtual const std::string& Name() const = 0;
  /// The index in its control array, -1 if it is not in one.
  virtual std::int32_t Index() const = 0;

  virtual std::int32_t Left() const = 0;
  virtual void Left(std::int32_t value) = 0;
  virtual std::int32_t Top() const = 0;
  virtual void Top(std::int32_t value) = 0;
  virtual std::int32_t Width() const = 0;
  virtual void Width(std::int32_t value) = 0;
  virtual std::int32_t Height() const = 0;
  virtual void Height(std::int32_t value) = 0;
  virtual void Move(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) = 0;

  /// The control's own setting; the container may still be hidden.
  virtual bool Visible() const = 0;
  virtual void Visible(bool value) = 0;
  virtual bool Enabled() const = 0;
  virtual void Enabled(bool value) = 0;

  /// Brings it in front of its siblings.
  virtual void ZOrder() = 0;
  virtual WindowHandle hWnd() const = 0;
};

}  // namespace kestrel
