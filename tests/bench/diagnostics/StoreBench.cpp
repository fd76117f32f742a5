#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "platform/posix/LineTable.h"
#include "platform/sqlite/SqliteStore.h"
#include "platform/store/StoredPositions.h"
#include "settings/modProcessing.h"
#include "tests/logic/fakes/FakeForm.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {
namespace {

/// A store on disk with all settings written.
class StoreBench : public benchmark::Fixture {
 public:
  void SetUp(benchmark::State&) override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrelXXXXXX").string();
    folder_ = mkdtemp(name.data());
    store_ = std::make_unique<sqlite::SqliteStore>(folder_ / "a.store");
    positions_ = std::make_unique<store::StoredPositions>(*store_, screens_);
    platform_.store = store_.get();
    platform_.positions = positions_.get();
    modProcessing::Attach(platform_);
    modProcessing::Main();
    for (int i = 0; i < 200; ++i) {
      store_->WriteValue(HKEY_CURRENT_USER, "Key" + std::to_string(i % 20), "name" + std::to_string(i), i,
                         kStoreNumber);
    }
    options_ = modProcessing::GetOptions();
  }
  void TearDown(benchmark::State&) override {
    options_.reset();
    modProcessing::Detach();
    store_.reset();
    std::filesystem::remove_all(folder_);
  }

 protected:
  std::filesystem::path folder_;
  std::unique_ptr<sqlite::SqliteStore> store_;
  fakes::FakeScreens screens_;
  std::unique_ptr<store::StoredPositions> positions_;
  fakes::FakePlatform platform_;
  std::shared_ptr<Options> options_;
};

BENCHMARK_F(StoreBench, ReadANumber)(benchmark::State& state) {
  options_->JPEGQuality(80);
  for (auto _ : state) benchmark::DoNotOptimize(options_->JPEGQuality());
}

BENCHMARK_F(StoreBench, ReadAText)(benchmark::State& state) {
  options_->MaterialBackColor(255);
  for (auto _ : state) benchmark::DoNotOptimize(options_->MaterialBackColor());
}

BENCHMARK_F(StoreBench, ReadAMissingValue)(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(options_->RotateAngle());
}

BENCHMARK_F(StoreBench, WriteANumber)(benchmark::State& state) {
  std::int32_t value = 0;
  for (auto _ : state) options_->JPEGQuality(++value);
}

}  // namespace
}  // namespace kestrel
