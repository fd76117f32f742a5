#pragma once

#include <cstdint>
#include <string>

#include "imaging/contract/AppInfo.h"

namespace kestrel::headless {

class AppInfo final : public kestrel::AppInfo {
 public:
  std::string Title() const override { return title; }
  std::int32_t Major() const override { return major; }
  std::int32_t Minor() const override { return minor; }
  std::int32_t Revision() const override { return revision; }
  std::string ModuleFilename() const override { return moduleFilename; }
  std::string CommandLine() const override { return commandLine; }

  std::string title = "KestrelLib2";
  std::int32_t major = 2;
  std::int32_t minor = 0;
  std::int32_t revision = 0;
  std::string moduleFilename;
  std::string commandLine;
};

}  // namespace kestrel::headless
