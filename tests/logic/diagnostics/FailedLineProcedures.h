#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Procedures of every shape a failing statement can have in the logic. Each sets `expectedLine` to the line
/// of the statement that is about to fail.
namespace kestrel::procedures {

extern std::int32_t expectedLine;

struct Procedure {
  const char* name;
  std::function<void()> run;
};

const std::vector<Procedure>& RaisingRuntimeErrors();
/// Exceptions of the standard library and of no class: their line is known by the hook of the throw alone.
const std::vector<Procedure>& RaisingOtherExceptions();

}  // namespace kestrel::procedures
