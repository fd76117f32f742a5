// Each dialog in each language: nothing is cut off, and the access keys differ.

#include <gtest/gtest.h>

#include <QTabBar>

#include "../EditorBench.h"
#include "../dialogs/DialogLooks.h"
#include "UsedLanguage.h"

namespace kestrel::desktop {
namespace {

class DialogLanguages : public testing::TestWithParam<const char*> {
 protected:
  DialogLanguages() { bench.showPicture(noise(60, 40)); }

  void expectGoodDialog(const std::string& name, const std::string& englishTitle,
                        const std::function<void(IImageProcessingCtl&)>& open, int tab = -1) {
    SCOPED_TRACE(name);
    bool opened = false;
    whenModalOpens([&](QWidget& window) {
      opened = true;
      if (tab >= 0) window.findChild<QTabBar*>()->setCurrentIndex(tab);
      settle();
      EXPECT_NE(window.windowTitle().toStdString(), englishTitle);
      expectNothingCutOff(window);
      expectAccessKeys(window);
      writeScreenshot(window, name + "-" + GetParam());
      window.close();
    });
    open(bench.editor());
    EXPECT_TRUE(opened);
  }

  const UsedLanguage language{GetParam()};
  EditorBench bench;
};

TEST_P(DialogLanguages, ShowWholeTextsAndDistinctAccessKeys) {
  using Editor = IImageProcessingCtl;
  expectGoodDialog("rotate", "Rotate", &Editor::ShowRotateDialog);
  expectGoodDialog("resize", "Resize", &Editor::ShowResizeDialog);
  expectGoodDialog("resize-canvas", "Resize Canvas", &Editor::ShowResizeCanvasDialog);
  expectGoodDialog("drop-shadow", "Drop Shadow", &Editor::ShowDropShadowDialog);
  expectGoodDialog("contoured-drop-shadow", "Contoured Drop Shadow", &Editor::ShowMaskedDropShadowDialog);
  expectGoodDialog("flatten", "Flatten Transparency", &Editor::ShowFlattenAlphaDialog);
  const std::unique_ptr<Form> pasteSpecial = bench.platform().CreateForm("frmPasteSpecial");
  expectGoodDialog("paste-special", "Paste Special", [&](Editor&) { pasteSpecial->Show(true); });
  expectGoodDialog("export", "Export", &Editor::ShowExportDialog);
  expectGoodDialog("thumbnail", "Create Thumbnail", [](Editor& editor) { editor.ShowGetThumnailDialog(); });
  for (const int tab : {0, 1, 2}) {
    expectGoodDialog("options-" + std::to_string(tab), "Options", &Editor::ShowOptions, tab);
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, DialogLanguages, testing::Values("de", "es", "ja", "ar"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace kestrel::desktop
