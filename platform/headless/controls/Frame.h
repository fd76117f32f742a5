#pragma once

#include <string>
#include <utility>

#include "../Window.h"
#include "imaging/contract/controls/Frame.h"

namespace kestrel::headless {

class Frame final : public WindowOf<kestrel::Frame> {
 public:
  using WindowOf::WindowOf;

  std::string Caption() const override { return caption_; }
  void caption(std::string value) { caption_ = std::move(value); }
  void BackgroundPicture(const PicturePtr& value) override { picture_ = value; }
  PicturePtr BackgroundPicture() const override { return picture_; }

 private:
  std::string caption_;
  PicturePtr picture_;
};

}  // namespace kestrel::headless
