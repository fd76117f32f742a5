// How long the library for C takes to load in a program that has loaded the toolkit: the limit is 15 ms. Each
// load is in a process of its own.

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <utility>
#include <vector>

namespace {

constexpr int kLoads = 41;

/// In milliseconds; below 0 if the library cannot be loaded.
struct Times {
  double passed = -1;
  double processor = -1;
};

double processorTime() { return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

Times timesToLoad() {
  for (const char* const library : {"libQt6Widgets.so.6", "libQt6Svg.so.6"}) {
    if (!dlopen(library, RTLD_NOW | RTLD_GLOBAL)) return {};
  }
  const auto begin = std::chrono::steady_clock::now();
  const double processor = processorTime();
  if (!dlopen(KESTREL_LIBRARY, RTLD_NOW)) return {};
  const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - begin;
  return {passed.count(), processorTime() - processor};
}

Times timesInAnotherProcess() {
  int ends[2];
  if (pipe(ends) != 0) return {};
  if (fork() == 0) {
    const Times times = timesToLoad();
    _exit(write(ends[1], &times, sizeof(times)) == sizeof(times) ? 0 : 1);
  }
  Times times;
  const auto count = read(ends[0], &times, sizeof(times));
  close(ends[0]);
  close(ends[1]);
  wait(nullptr);
  return count == sizeof(times) ? times : Times();
}

void print(const char* what, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  std::printf("%s: median %.2f ms, least %.2f ms\n", what, times[times.size() / 2], times.front());
}

}  // namespace

int main() {
  std::vector<double> passed;
  std::vector<double> processor;
  for (int i = 0; i < kLoads; ++i) {
    const Times times = timesInAnotherProcess();
    if (times.passed < 0) {
      std::fprintf(stderr, "%s or the toolkit cannot be loaded.\n", KESTREL_LIBRARY);
      return 1;
    }
    passed.push_back(times.passed);
    processor.push_back(times.processor);
  }
  print("Time to load it beyond the toolkit", std::move(passed));
  print("Time of the processor", std::move(processor));
  return 0;
}
