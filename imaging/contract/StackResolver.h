#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kestrel {

/// A place in the source.
struct SourcePlace {
  std::string Function;  ///< as the line table has it; may be empty
  std::string File;
  std::int32_t Line = 0;
};

/// Maps code addresses to places in the source by the line table that is compiled into the program.
class StackResolver {
 public:
  virtual ~StackResolver() = default;

  /// The places of the call with this return address: from the innermost inlined function to the function
  /// itself. Empty if the address is not in the line table. Raises nothing.
  virtual std::vector<SourcePlace> Resolve(std::uintptr_t returnAddress) = 0;
};

}  // namespace kestrel
