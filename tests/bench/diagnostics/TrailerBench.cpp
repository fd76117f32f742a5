#include <benchmark/benchmark.h>

#include "SmallProcedure.h"
#include "base/RuntimeError.h"
#include "base/ThrowRecord.h"
#include "diagnostics/modTollgarthSupport.h"
#include "platform/posix/LineTable.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {
namespace {

const std::string kName = "picture.png";

void ProcedureWithTrailer(benchmark::State& state) {
  std::int32_t value = 1;
  for (auto _ : state) benchmark::DoNotOptimize(value = bench::withTrailer(value & 0xFF, kName));
}
BENCHMARK(ProcedureWithTrailer);

void ProcedureWithoutTrailer(benchmark::State& state) {
  std::int32_t value = 1;
  for (auto _ : state) benchmark::DoNotOptimize(value = bench::withoutTrailer(value & 0xFF, kName));
}
BENCHMARK(ProcedureWithoutTrailer);

void RaiseAndCatch(benchmark::State& state) {
  for (auto _ : state) {
    try {
      throw RuntimeError(err::kInvalidCall, "Invalid.");
    } catch (const RuntimeError& error) {
      benchmark::DoNotOptimize(error.Number());
    }
  }
}
BENCHMARK(RaiseAndCatch);

/// The same on a thread that records its throws, as each thread with an editor.
void RaiseAndCatchRecorded(benchmark::State& state) {
  const ThrowRecord record;
  RaiseAndCatch(state);
}
BENCHMARK(RaiseAndCatchRecorded);

void FailAndReport(benchmark::State& state) {
  fakes::FakePlatform platform;
  posix::LineTable lines;
  platform.lines = &lines;
  modTollgarthSupport::Attach(&platform);
  for (auto _ : state) benchmark::DoNotOptimize(bench::failing(-1));
  modTollgarthSupport::Attach(nullptr);
}
BENCHMARK(FailAndReport);

}  // namespace
}  // namespace kestrel
