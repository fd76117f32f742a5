#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <utility>

#include "base/Numbers.h"
#include "dialogs/frmPasteSpecial.h"
#include "editor/ImageProcessingCtl.h"
#include "engine/effects/Flip.h"
#include "engine/effects/Rotate.h"
#include "engine/imgx/PictureObject.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/TextBox.h"
#include "platform/headless/Platform.h"
#include "platform/headless/controls/ColorPicker.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr std::int32_t kSection = 400;

engine::Bitmap photograph(std::int32_t width, std::int32_t height) {
  auto bitmap = engine::Bitmap::uninitialized(width, height);
  const engine::Pixels pixels = bitmap.writable();
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      reinterpret_cast<engine::Pixel*>(pixels.row(y))[x] = {static_cast<std::uint8_t>(x ^ y),
                                                            static_cast<std::uint8_t>(x + y),
                                                            static_cast<std::uint8_t>(x * 3), 255};
    }
  }
  return bitmap;
}

/// A started editor on the headless platform with a picture open.
class Editor {
 public:
  explicit Editor(engine::Bitmap picture) {
    headless::Setup setup;
    setup.scratch = std::filesystem::temp_directory_path().string();
    platform_ = std::make_unique<headless::Platform>(std::move(setup));
    modProcessing::Attach(*platform_);
    modProcessing::Main();
    site_ = platform_->createEditorSite();
    control_ = std::make_unique<ImageProcessingCtl>(*site_);
    site_->InitProperties();
    site_->Move(0, 0, 1600, 1000);
    control_->Initialize();
    control_->Picture(std::make_shared<engine::PictureObject>(std::move(picture)));
  }
  ~Editor() {
    control_.reset();
    site_.reset();
    modProcessing::Detach();
  }

  IImageProcessingCtl& control() { return *control_; }
  headless::ImageView& view() { return Bind<headless::ImageView>(*site_, "igxImage"); }
  headless::User& user() { return platform_->user(); }
  headless::Clipboard& clipboard() { return platform_->Clipboard(); }

 private:
  std::unique_ptr<headless::Platform> platform_;
  std::unique_ptr<headless::Site> site_;
  std::unique_ptr<ImageProcessingCtl> control_;
};

/// The engine's part of the two benchmarks of sections.
void flipPixelsAlone(benchmark::State& state) {
  const engine::Bitmap section = photograph(kSection, kSection);
  for (auto _ : state) {
    benchmark::DoNotOptimize(engine::flip(section, engine::FlipDirection::LeftToRight));
  }
}

void rotatePixelsAlone(benchmark::State& state) {
  const engine::Bitmap section = photograph(kSection, kSection);
  for (auto _ : state) benchmark::DoNotOptimize(engine::rotate(section, 30, {}));
}

void flipSectionOf100Megapixels(benchmark::State& state) {
  Editor editor(photograph(12'500, 8'000));
  for (auto _ : state) {
    editor.control().SetSelection(6000, 4000, kSection, kSection);
    editor.control().FlipHorizontally(true);
  }
}

void rotateSectionOf100Megapixels(benchmark::State& state) {
  Editor editor(photograph(12'500, 8'000));
  for (auto _ : state) {
    editor.control().SetSelection(6000, 4000, kSection, kSection);
    editor.control().Rotate(30, 0xFFFFFF, true);
  }
}

/// One change of the direction in the rotate dialog, with its preview; the argument is the picture's
/// megapixels.
void previewRotation(benchmark::State& state) {
  const auto height = static_cast<std::int32_t>(state.range(0)) * 500;
  Editor editor(photograph(2'000, height));
  editor.user().uses("frmRotate", [&](Form& form) {
    Bind<CheckBox>(form, "chkUseOriginalImage").Value(1);
    Bind<TextBox>(form, "txtDegrees").Text("30");
    std::int32_t direction = 0;
    for (auto _ : state) {
      Bind<OptionButton>(form, "optDirection", direction).Value(true);
      direction = 1 - direction;
    }
    Bind<CommandButton>(form, "cmdAction", 1).Press();
  });
  editor.control().ShowRotateDialog();
}

engine::Bitmap pictureOf(std::int64_t megapixels) {
  return photograph(2'000, static_cast<std::int32_t>(megapixels) * 500);
}

/// One typed change of the offset in the drop shadow dialog, with its preview. The second argument is 1 for
/// the contoured mode.
void previewShadow(benchmark::State& state) {
  const bool contoured = state.range(1) != 0;
  Editor editor(pictureOf(state.range(0)));
  editor.user().uses("frmDropShadow", [&](Form& form) {
    Bind<TextBox>(form, "txtField", 1).Text("7");
    Bind<CheckBox>(form, "chkUseOriginalImage").Value(1);
    auto& offset = Bind<TextBox>(form, "txtField", 0);
    std::int32_t next = 0;
    for (auto _ : state) offset.Text(ToText(10 + (next++ & 7)));
    Bind<CommandButton>(form, "cmdAction", 1).Press();
  });
  contoured ? editor.control().ShowMaskedDropShadowDialog() : editor.control().ShowDropShadowDialog();
}

/// One key of a four-digit offset, typed from an empty box; the first argument is the megapixels. The picture
/// grows with the offset.
void typeOffset(benchmark::State& state) {
  Editor editor(pictureOf(state.range(0)));
  editor.user().uses("frmDropShadow", [&](Form& form) {
    Bind<CheckBox>(form, "chkUseOriginalImage").Value(1);
    auto& offset = Bind<TextBox>(form, "txtField", 0);
    const char* const typed[] = {"1", "12", "123", "1234"};
    std::size_t next = 0;
    for (auto _ : state) offset.Text(typed[next++ % 4]);
    Bind<CommandButton>(form, "cmdAction", 1).Press();
  });
  editor.control().ShowDropShadowDialog();
}

/// One choice of a color in the dialog of flattening, with its preview.
void previewFlatten(benchmark::State& state) {
  Editor editor(pictureOf(state.range(0)));
  editor.user().uses("frmFlattenAlpha", [&](Form& form) {
    Bind<CheckBox>(form, "chkUseOriginalImage").Value(1);
    auto& color = Bind<headless::ColorPicker>(form, "cpkColor");
    OLE_COLOR next = 0;
    for (auto _ : state) color.pick(++next & 0xFFFFFF);
    Bind<CommandButton>(form, "cmdAction", 1).Press();
  });
  editor.control().ShowFlattenAlphaDialog();
}

/// One choice of a mask color in Paste Special, with its preview.
void previewPasteSpecial(benchmark::State& state) {
  Editor editor(photograph(40, 30));
  editor.clipboard().offer(pictureOf(state.range(0)));
  frmPasteSpecial dialog;
  editor.user().uses("frmPasteSpecial", [&](Form& form) {
    auto& color = Bind<headless::ColorPicker>(form, "cpkColor");
    OLE_COLOR next = 0;
    for (auto _ : state) color.pick(++next & 0xFFFFFF);
    Bind<CommandButton>(form, "cmdAction", 1).Press();
  });
  dialog.ShowModal();
}

/// One change of the size in the thumbnail dialog, with a shadow and its preview; the argument is the
/// picture's megapixels.
void previewThumbnail(benchmark::State& state) {
  Editor editor(pictureOf(state.range(0)));
  editor.user().uses("frmGetThumnail", [&](Form& form) {
    Bind<CheckBox>(form, "chkAddDropShadow").Value(1);
    bool larger = false;
    for (auto _ : state) {
      Bind<TextBox>(form, "txtField", 0).Text(larger ? "31" : "29");
      larger = !larger;
    }
    Bind<FormHeader>(form, "FormHeader").PressCancel();
  });
  editor.control().ShowGetThumnailDialog();
}

/// One move of the pointer with both tool windows open.
void followPointerOver100Megapixels(benchmark::State& state) {
  Editor editor(photograph(12'500, 8'000));
  std::int32_t x = 0;
  for (auto _ : state) editor.view().move(0, 0, {100 + (x++ & 255), 100});
}

BENCHMARK(flipPixelsAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(flipSectionOf100Megapixels)->Unit(benchmark::kMillisecond);
BENCHMARK(rotatePixelsAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(rotateSectionOf100Megapixels)->Unit(benchmark::kMillisecond);
BENCHMARK(previewRotation)->ArgName("megapixels")->Arg(2)->Arg(24)->Unit(benchmark::kMillisecond);
BENCHMARK(previewShadow)
    ->ArgNames({"megapixels", "contoured"})
    ->ArgsProduct({{2, 24}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(typeOffset)->ArgName("megapixels")->Arg(2)->Arg(24)->Unit(benchmark::kMillisecond);
BENCHMARK(previewFlatten)->ArgName("megapixels")->Arg(2)->Arg(24)->Unit(benchmark::kMillisecond);
BENCHMARK(previewPasteSpecial)->ArgName("megapixels")->Arg(2)->Arg(24)->Unit(benchmark::kMillisecond);
BENCHMARK(previewThumbnail)->ArgName("megapixels")->Arg(2)->Arg(24)->Unit(benchmark::kMillisecond);
BENCHMARK(followPointerOver100Megapixels)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kestrel
