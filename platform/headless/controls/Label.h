#pragma once

#include <string>

#include "../Window.h"
#include "imaging/contract/controls/Label.h"

namespace kestrel::headless {

class Label final : public WindowOf<kestrel::Label> {
 public:
  using WindowOf::WindowOf;

  std::string Caption() const override { return caption_; }
  void Caption(const std::string& value) override { caption_ = value; }

 private:
  std::string caption_;
};

}  // namespace kestrel::headless
