// KESTREL_VECTOR_TARGET=SSE4 (or AVX2, ..., Highway's names) limits a test program to this target and lower
// ones. An unknown or unsupported name ends the program: a run with another target must not pass.

#include <hwy/targets.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

[[maybe_unused]] const bool restricted = [] {
  const char* const wanted = std::getenv("KESTREL_VECTOR_TARGET");
  if (wanted == nullptr || *wanted == '\0') return false;
  std::string known;
  for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1) {
    const std::int64_t target = targets & -targets;
    const std::string name = hwy::TargetName(target);
    if (name == wanted) {
      hwy::DisableTargets(target - 1);  // better targets have lower bits
      return true;
    }
    known += ' ' + name;
  }
  std::fprintf(stderr, "KESTREL_VECTOR_TARGET is %s, but this machine has:%s\n", wanted, known.c_str());
  std::_Exit(2);
}();

}  // namespace
