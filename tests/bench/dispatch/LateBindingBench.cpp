// What late binding costs beyond the member itself: compare each with its direct call.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>

#include "editor/ImageProcessingCtl.h"
#include "host/dispatch/Convert.h"
#include "host/dispatch/Invoke.h"
#include "imaging/contract/Moorage.h"
#include "platform/headless/Platform.h"
#include "settings/modProcessing.h"

namespace kestrel::dispatch {
namespace {

class Editor {
 public:
  Editor() {
    headless::Setup setup;
    setup.scratch = std::filesystem::temp_directory_path().string();
    platform_ = std::make_unique<headless::Platform>(std::move(setup));
    modProcessing::Attach(*platform_);
    modProcessing::Main();
    site_ = platform_->createEditorSite();
    control_ = std::make_unique<ImageProcessingCtl>(*site_);
    site_->InitProperties();
    site_->Move(0, 0, 800, 600);
    control_->Initialize();
    reference_ = Reference::Watch(Describe<IImageProcessingCtl>(), &direct(), token_);
  }
  ~Editor() {
    control_.reset();
    site_.reset();
    modProcessing::Detach();
  }

  IImageProcessingCtl& direct() { return *control_; }
  const Reference& late() { return *reference_; }

 private:
  std::unique_ptr<headless::Platform> platform_;
  std::unique_ptr<headless::Site> site_;
  std::unique_ptr<ImageProcessingCtl> control_;
  std::shared_ptr<char> token_ = std::make_shared<char>();
  Reference::Pointer reference_;
};

Editor& editor() {
  static Editor one;
  return one;
}

void DirectGet(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(editor().direct().UndoLevels());
}
BENCHMARK(DirectGet);

void GetByNumber(benchmark::State& state) {
  const std::int32_t number = editor().late().Class().FindMember("UndoLevels")->number;
  for (auto _ : state) benchmark::DoNotOptimize(Invoke(editor().late(), number, Use::kGet));
}
BENCHMARK(GetByNumber);

void GetByName(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Invoke(editor().late(), "UndoLevels", Use::kGet));
}
BENCHMARK(GetByName);

void PutByName(benchmark::State& state) {
  for (auto _ : state) Put(editor().late(), "ShowClose", false);
}
BENCHMARK(PutByName);

void DirectCommand(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(editor().direct().Commands()("btnFileOpen").Enabled());
}
BENCHMARK(DirectCommand);

void CommandByDefaultMember(benchmark::State& state) {
  for (auto _ : state) {
    const Variant command = Call(editor().late(), "Commands", "btnFileOpen");
    benchmark::DoNotOptimize(Get(ReferenceIn(command), "Enabled"));
  }
}
BENCHMARK(CommandByDefaultMember);

void GetOfAPart(benchmark::State& state) {
  const Variant command = Call(editor().late(), "Commands", "btnFileOpen");
  for (auto _ : state) benchmark::DoNotOptimize(Get(ReferenceIn(command), "Enabled"));
}
BENCHMARK(GetOfAPart);

void EventWithArgumentsByReference(benchmark::State& state) {
  const Connection connection = Connect(editor().late(), "RequestOpenFilename",
                                        [](std::span<Variant> arguments) { arguments[1] = true; });
  std::string name = "a";
  bool cancel = false;
  for (auto _ : state) editor().direct().RequestOpenFilename(name, cancel);
}
BENCHMARK(EventWithArgumentsByReference);

}  // namespace
}  // namespace kestrel::dispatch
