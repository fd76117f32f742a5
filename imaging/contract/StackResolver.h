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

/// Turns addresses of code into places in the source, by the line table that is compiled into the program.
class StackResolver {
 public:
  virtual ~StackResolver() = default;

  /// The places at which the call with this return address stands: that of the innermost inlined function
  /// first, that of the function itself last. Empty where the line table knows nothing of it. Raises nothing.
  virtual std::vector<SourcePlace> Resolve(std::uintptr_t returnAddress) = 0;
};

}  // namespace kestrel
