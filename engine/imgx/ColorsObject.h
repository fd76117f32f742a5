#pragma once

#include <string>

#include "imaging/contract/Colors.h"

namespace kestrel::engine {

class ColorsObject final : public kestrel::Colors {
 public:
  std::string TypeName() const override { return "Colors"; }
  Colour Create(OLE_COLOR color, std::uint8_t alpha) const override { return Colour(color, alpha); }
};

}  // namespace kestrel::engine
