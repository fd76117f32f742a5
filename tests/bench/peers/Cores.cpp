#include "Cores.h"

#include <sched.h>

#include <cerrno>
#include <system_error>

namespace kestrel::bench {
namespace {

void check(int result) {
  if (result != 0) throw std::system_error(errno, std::generic_category(), "The cores cannot be chosen");
}

cpu_set_t givenCores() {
  cpu_set_t cores;
  check(sched_getaffinity(0, sizeof cores, &cores));
  return cores;
}

}  // namespace

void runOnCores(int count) {
  static const cpu_set_t given = givenCores();
  cpu_set_t chosen;
  CPU_ZERO(&chosen);
  for (int core = CPU_SETSIZE - 1; core >= 0 && CPU_COUNT(&chosen) < count; --core)
    if (CPU_ISSET(static_cast<unsigned>(core), &given)) CPU_SET(static_cast<unsigned>(core), &chosen);
  check(sched_setaffinity(0, sizeof chosen, &chosen));
}

}  // namespace kestrel::bench
