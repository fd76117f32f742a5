#pragma once

#include "../Window.h"
#include "imaging/contract/controls/PictureBox.h"

namespace kestrel::headless {

class PictureBox final : public WindowOf<kestrel::PictureBox> {
 public:
  using WindowOf::WindowOf;

  PicturePtr Picture() const override { return picture_; }
  void Picture(const PicturePtr& value) override { picture_ = value; }

 private:
  PicturePtr picture_;
};

}  // namespace kestrel::headless
