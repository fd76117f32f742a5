#pragma once

#include <map>
#include <string>
#include <string_view>

namespace kestrel::tools {

/// The GUIDs of a type library by the names of what they identify. Hosts are compiled against them, so that a
/// GUID that was given once never changes.
class Identifiers {
 public:
  /// Reads lines of a name and a GUID; empty lines and those that begin with '#' are skipped. Raises
  /// RuntimeError 5 for any other line, and for a name or a GUID that is there twice.
  explicit Identifiers(std::string_view text);

  /// Raises RuntimeError 5 for a name without a GUID.
  const std::string& Of(std::string_view name) const;

 private:
  std::map<std::string, std::string, std::less<>> guids_;
};

}  // namespace kestrel::tools
