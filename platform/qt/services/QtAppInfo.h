#pragma once

#include <string>

#include "ProgramVersion.h"
#include "imaging/contract/AppInfo.h"

namespace kestrel::qt {

class QtAppInfo final : public AppInfo {
 public:
  explicit QtAppInfo(ProgramVersion version) : version_(std::move(version)) {}

  std::string Title() const override { return version_.title; }
  std::int32_t Major() const override { return version_.major; }
  std::int32_t Minor() const override { return version_.minor; }
  std::int32_t Revision() const override { return version_.revision; }
  std::string ModuleFilename() const override;
  std::string CommandLine() const override;

 private:
  ProgramVersion version_;
};

}  // namespace kestrel::qt
