#pragma once

#include "PictureOwner.h"
#include "imaging/contract/Alpha.h"

namespace kestrel::engine {

class AlphaPart final : public kestrel::Alpha {
 public:
  explicit AlphaPart(PictureOwner& owner) : owner_(owner) {}

  void Flatten(const Colour& color, const std::string& undoName) override;

 private:
  PictureOwner& owner_;
};

}  // namespace kestrel::engine
