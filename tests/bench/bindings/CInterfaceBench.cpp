// What the interface for C costs beyond the member itself: compare with bench_dispatch.

#include <benchmark/benchmark.h>
#include <kestrel.h>

namespace {

/// An editor on a thread without a display.
kestrel_object* editor() {
  static kestrel_object* const one = [] {
    kestrel_object* made = nullptr;
    kestrel_start(KESTREL_HEADLESS);
    kestrel_create("ImageProcessing", &made);
    kestrel_call(made, "Initialize", nullptr, 0, nullptr, nullptr);
    return made;
  }();
  return one;
}

void GetByNumber(benchmark::State& state) {
  std::int32_t member = 0;
  kestrel_find_member(editor(), "ShowClose", &member);
  kestrel_value value{};
  for (auto _ : state) {
    kestrel_invoke(editor(), member, KESTREL_GET, nullptr, 0, nullptr, &value);
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(GetByNumber);

void GetByName(benchmark::State& state) {
  kestrel_value value{};
  for (auto _ : state) {
    kestrel_get(editor(), "ShowClose", &value);
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(GetByName);

void GetText(benchmark::State& state) {
  kestrel_value value{};
  for (auto _ : state) {
    kestrel_get(editor(), "Title", &value);
    kestrel_value_clear(&value);
  }
}
BENCHMARK(GetText);

void GetObject(benchmark::State& state) {
  kestrel_value value{};
  for (auto _ : state) {
    kestrel_get(editor(), "CommandBars", &value);
    kestrel_value_clear(&value);
  }
}
BENCHMARK(GetObject);

void SetByName(benchmark::State& state) {
  kestrel_value value{};
  value.type = KESTREL_BOOLEAN;
  for (auto _ : state) kestrel_set(editor(), "ShowClose", &value);
}
BENCHMARK(SetByName);

void RaisedEvent(benchmark::State& state) {
  kestrel_object* sink = nullptr;
  kestrel_create("IImageEvents", &sink);
  kestrel_connection* connection = nullptr;
  kestrel_connect(
      sink, "ImageOpen", [](void*, kestrel_value*, std::int32_t) { return kestrel_status{KESTREL_OK}; },
      nullptr, nullptr, &connection);
  kestrel_value name{};
  name.type = KESTREL_STRING;
  for (auto _ : state) kestrel_call(sink, "ImageOpen", &name, 1, nullptr, nullptr);
  kestrel_disconnect(connection);
  kestrel_release(sink);
}
BENCHMARK(RaisedEvent);

}  // namespace
