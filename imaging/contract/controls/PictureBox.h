#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "../Picture.h"

namespace kestrel {

/// Shows a picture, which its form stores or code sets.
class PictureBox : public Control {
 public:
  virtual PicturePtr Picture() const = 0;
  virtual void Picture(const PicturePtr& value) = 0;
};

}  // namespace kestrel
