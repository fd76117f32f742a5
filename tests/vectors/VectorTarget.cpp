// KESTREL_VECTOR_TARGET=SSE4 (or AVX2, ... as Highway names them) keeps a test program from using anything
// better, although the machine has it. A name that this machine does not know ends the program: a run that
// tests something else than was asked for must not pass.

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
      hwy::DisableTargets(target - 1);  // the better ones have the lower bits
      return true;
    }
    known += ' ' + name;
  }
  std::fprintf(stderr, "KESTREL_VECTOR_TARGET is %s, but this machine has:%s\n", wanted, known.c_str());
  std::_Exit(2);
}();

}  // namespace
