#include <string>
#include <utility>

#include "../diagnostics/FakeDebugClient.h"
#include "Reports.h"
#include "apps/common/window/EditorWindow.h"
#include "browser/ImageBrowser.h"
#include "dialogs/frmResources.h"
#include "settings/MRU.h"

namespace kestrel {
namespace {

using modTollgarthSupport::Counted;

/// Each object of the component is already registered, with its index plus 1 as its id.
class CountedObjects : public Reports {
 protected:
  CountedObjects() {
    auto& state = modTollgarthSupport::State();
    state.qdkEnableInstanceCounts = true;
    state.qdkInstanceCountsMemory = std::make_unique<fakes::Counters>(tool_);
    std::int16_t id = 0;
    for (auto& entry : state.qdkInstanceCountComponentNames) entry = ++id;
  }

  /// How often the object was counted at creation and at destruction.
  std::pair<int, int> counts(Counted object) const {
    const std::string id = std::to_string(static_cast<std::int32_t>(object) + 1);
    const auto occurrences = [&](const std::string& note) {
      int count = 0;
      const std::string all = ";" + tool_.counters;
      for (auto at = all.find(note); at != all.npos; at = all.find(note, at + 1)) ++count;
      return count;
    };
    return {occurrences(";" + id + "+1;"), occurrences(";" + id + "-1;")};
  }
  void expectAlive(Counted object) const { EXPECT_EQ(counts(object), std::pair(1, 0)) << tool_.counters; }
  void expectGone(Counted object) const { EXPECT_EQ(counts(object), std::pair(1, 1)) << tool_.counters; }

  fakes::DebugTool tool_;
};

TEST_F(CountedObjects, AreTheClasses) {
  struct Sink : IImageEvents {};
  {
    const Options options;
    const MRU recent;
    const Sink sink;
    for (const Counted object : {Counted::kOptions, Counted::kMRU, Counted::kIImageEvents})
      expectAlive(object);
  }
  for (const Counted object : {Counted::kOptions, Counted::kMRU, Counted::kIImageEvents}) expectGone(object);
}

TEST_F(CountedObjects, AreTheControlAndItsToolWindows) {
  const auto objects = {Counted::kImageProcessingCtl, Counted::kfrmMaterials, Counted::kfrmZoom};
  {
    const auto site = headless_->createEditorSite();
    ImageProcessingCtl editor(*site);
    expectAlive(Counted::kImageProcessingCtl);
    EXPECT_EQ(counts(Counted::kfrmZoom), std::pair(0, 0));
    site->InitProperties();
    editor.Initialize();
    for (const Counted object : objects) expectAlive(object);
  }
  for (const Counted object : objects) expectGone(object);
}

TEST_F(CountedObjects, AreTheBrowserItsTreeAndItsWindow) {
  const auto objects = {Counted::kImageBrowser, Counted::kImageBrowserCtl, Counted::kFolderTreeView};
  {
    ImageBrowser browser;
    for (const Counted object : objects) expectAlive(object);
    EXPECT_EQ(counts(Counted::kfrmImageBrowser), std::pair(0, 0)) << "not loaded yet";
    browser.Show();
    expectAlive(Counted::kfrmImageBrowser);
  }
  for (const Counted object : objects) expectGone(object);
  expectGone(Counted::kfrmImageBrowser);
}

TEST_F(CountedObjects, AreTheDialogAndItsPreview) {
  const auto site = headless_->createEditorSite();
  ImageProcessingCtl editor(*site);
  site->InitProperties();
  editor.Initialize();
  ASSERT_TRUE(editor.OpenImage(picture_));
  user().uses("frmRotate", [this](Form& form) {
    expectAlive(Counted::kfrmRotate);
    expectAlive(Counted::kPreview);
    form.Hide();
  });
  editor.ShowRotateDialog();
  expectGone(Counted::kfrmRotate);
  expectGone(Counted::kPreview);
}

TEST_F(CountedObjects, AreWindowsThatAreNeverShown) {
  {
    const frmResources resources;
    expectAlive(Counted::kfrmResources);
  }
  expectGone(Counted::kfrmResources);
}

TEST_F(CountedObjects, AreWindowsFromLoadToUnload) {
  bool closed = false;
  app::EditorWindow window([&] { closed = true; });
  EXPECT_EQ(counts(Counted::kfrmImageEditor), std::pair(0, 0)) << "not loaded yet";
  window.form().Show();
  expectAlive(Counted::kfrmImageEditor);
  window.form().Unload();
  EXPECT_TRUE(closed);
  expectGone(Counted::kfrmImageEditor);
}

TEST_F(CountedObjects, AreAllWindowsThatCanBeMade) {
  EXPECT_THROW(CountedForm("frmControls"), RuntimeError) << "of a name that is not in the table";
  for (const char* name : {"frmMaterials", "frmZoom", "frmRotate", "frmDropShadow", "frmFlattenAlpha",
                           "frmPasteSpecial", "frmResize", "frmResizeCanvas", "frmOptions", "frmExport",
                           "frmGetThumnail", "frmResources", "frmImageEditor", "frmImageBrowser"}) {
    const CountedForm form(name);
    form->Load();
    expectAlive(modTollgarthSupport::CountedWindow(name));
  }
}

}  // namespace
}  // namespace kestrel
