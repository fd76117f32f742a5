// How long the library for C takes to load in a program that has loaded the toolkit: the limit is 15 ms. Each
// load is in a process of its own.

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

constexpr int kLoads = 41;

/// In milliseconds; below 0 if it cannot be loaded.
double timeToLoad() {
  for (const char* const library : {"libQt6Widgets.so.6", "libQt6Svg.so.6"}) {
    if (!dlopen(library, RTLD_NOW | RTLD_GLOBAL)) return -1;
  }
  const auto begin = std::chrono::steady_clock::now();
  if (!dlopen(KESTREL_LIBRARY, RTLD_NOW)) return -1;
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

double timeInAnotherProcess() {
  int ends[2];
  if (pipe(ends) != 0) return -1;
  if (fork() == 0) {
    const double time = timeToLoad();
    _exit(write(ends[1], &time, sizeof(time)) == sizeof(time) ? 0 : 1);
  }
  double time = -1;
  const auto count = read(ends[0], &time, sizeof(time));
  close(ends[0]);
  close(ends[1]);
  wait(nullptr);
  return count == sizeof(time) ? time : -1;
}

}  // namespace

int main() {
  std::vector<double> times;
  for (int i = 0; i < kLoads; ++i) times.push_back(timeInAnotherProcess());
  std::sort(times.begin(), times.end());
  if (times.front() < 0) {
    std::fprintf(stderr, "The libraries cannot be loaded: %s\n", KESTREL_LIBRARY);
    return 1;
  }
  std::printf("Load of %s beyond the toolkit: median %.2f ms, least %.2f ms\n", KESTREL_LIBRARY,
              times[times.size() / 2], times.front());
  return 0;
}
