#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

/// Title, version, file and command line of the running program.
class AppInfo {
 public:
  virtual ~AppInfo() = default;

  virtual std::string Title() const = 0;
  virtual std::int32_t Major() const = 0;
  virtual std::int32_t Minor() const = 0;
  virtual std::int32_t Revision() const = 0;
  /// Full path of the file with this component's code; empty if unknown.
  virtual std::string ModuleFilename() const = 0;
  /// The process's command line, the program included, with quotes around each part that needs them.
  virtual std::string CommandLine() const = 0;
};

}  // namespace kestrel
