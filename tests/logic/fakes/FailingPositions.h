#pragma once

#include <cstdint>
#include <string>

#include "base/RuntimeError.h"
#include "imaging/contract/WindowPositions.h"

namespace kestrel::fakes {

/// Positions that can be neither read nor stored.
class FailingPositions final : public WindowPositions {
 public:
  std::string RegistryKey() const override { return "Software"; }
  void RegistryKey(const std::string& /*value*/) override {}
  void LoadPosition(Form& /*form*/, const std::string& /*Name*/, std::int32_t /*Placement*/,
                    std::int32_t /*Screen*/) override {
    throw RuntimeError(err::kDeviceIO, "The position cannot be read.");
  }
  void SavePosition(Form& /*form*/, const std::string& /*Name*/) override {
    throw RuntimeError(err::kDiskFull, "The position cannot be stored.");
  }
};

}  // namespace kestrel::fakes
