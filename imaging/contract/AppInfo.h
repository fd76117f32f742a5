#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

/// What the program knows of itself.
class AppInfo {
 public:
  virtual ~AppInfo() = default;

  virtual std::string Title() const = 0;
  virtual std::int32_t Major() const = 0;
  virtual std::int32_t Minor() const = 0;
  virtual std::int32_t Revision() const = 0;
  /// Full path of the file with this component's code; empty where it can't be told.
  virtual std::string ModuleFilename() const = 0;
  /// The process's command line, with quotes around each part that needs them, the program too.
  virtual std::string CommandLine() const = 0;
};

}  // namespace kestrel
