#pragma once

#include <cstdint>
#include <string>

#include "../Control.h"
#include "../Picture.h"

namespace kestrel {

/// A panel around other controls, with a caption.
class Frame : public Control {
 public:
  virtual std::string Caption() const = 0;
  virtual void BackgroundPicture(const PicturePtr& value) = 0;
  virtual PicturePtr BackgroundPicture() const = 0;
};

}  // namespace kestrel
