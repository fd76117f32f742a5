#pragma once

#include "imaging/contract/Clipboard.h"

namespace kestrel::qt {

class QtClipboard final : public Clipboard {
 public:
  bool GetFormat(std::int32_t format) override;
};

}  // namespace kestrel::qt
