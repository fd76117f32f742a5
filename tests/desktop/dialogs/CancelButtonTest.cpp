// Return on the focused Cancel button of each dialog.

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>

#include "../EditorBench.h"
#include "DialogUser.h"
#include "imaging/contract/Image.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

Options& options() { return *modProcessing::GetOptions(); }

/// A dialog, an edit in it, and the option that OK would write.
struct Case {
  const char* name;
  std::function<bool(EditorBench&)> accepted;  ///< shows the dialog
  std::function<void(DialogUser&)> edit;
  std::function<std::int32_t()> stored;
};

std::ostream& operator<<(std::ostream& out, const Case& dialog) { return out << dialog.name; }

bool pasteSpecial(EditorBench& bench) {
  QApplication::clipboard()->setImage(noise(20, 10));
  bench.moorage().CommandClick(bench.command("btnEditPasteSpecial"));
  return bench.command("btnEditPaste").Checked();
}

void type7(DialogUser& user) { user.type("7"); }
void pickColor(DialogUser& user) {
  user.press(Qt::Key_Down);
  user.press(Qt::Key_Right);
  user.press(Qt::Key_Return);
}

std::vector<Case> everyDialog() {
  return {
      {"Resize", [](EditorBench& bench) { return bench.editor().ShowResizeDialog(); }, &type7,
       [] { return options().ResizeWidth(); }},
      {"ResizeCanvas", [](EditorBench& bench) { return bench.editor().ShowResizeCanvasDialog(); }, &type7,
       [] { return options().ResizeCanvasWidth(); }},
      {"DropShadow", [](EditorBench& bench) { return bench.editor().ShowDropShadowDialog(); }, &type7,
       [] { return options().DropShadowHorizontalOffset(); }},
      {"ContouredDropShadow", [](EditorBench& bench) { return bench.editor().ShowMaskedDropShadowDialog(); },
       &type7, [] { return options().DropShadowHorizontalOffset(); }},
      {"FlattenAlpha", [](EditorBench& bench) { return bench.editor().ShowFlattenAlphaDialog(); }, &pickColor,
       [] { return options().FlattenAlphaColor(); }},
      {"PasteSpecial", &pasteSpecial, &pickColor, [] { return options().PasteSpecialMaskColor(); }},
      {"Rotate", [](EditorBench& bench) { return bench.editor().ShowRotateDialog() != 0; },
       [](DialogUser& user) {
         user.click("txtDegrees");
         user.type("7");
       },
       [] { return options().RotateAngle(); }},
      {"Export", [](EditorBench& bench) { return bench.editor().ShowExportDialog(); }, &type7,
       [] { return 0; }},
      {"Options", [](EditorBench& bench) { return bench.editor().ShowOptions(); },
       [](DialogUser& user) {
         for (int i = 0; i < 30 && user.focus() != "cboGridSize"; ++i) user.press(Qt::Key_Tab);
         user.press(Qt::Key_Down);
       },
       [] { return options().BackgroundGridSize(); }},
  };
}

class CancelButton : public testing::TestWithParam<Case> {
 protected:
  CancelButton() {
    bench.showPicture(noise(60, 40));
    options().DropShadowBlur(16);
    options().FlattenAlphaColor(0);
    options().PasteSpecialMaskColor(0);
  }

  EditorBench bench;
};

TEST_P(CancelButton, IsPressedByReturnWhenItHasTheFocus) {
  const std::int32_t before = GetParam().stored();
  bool accepted = true;
  useDialog([&] { accepted = GetParam().accepted(bench); },
            [&](DialogUser& user) {
              GetParam().edit(user);
              ASSERT_TRUE(user.isOpen());
              for (int i = 0; i < 30 && user.focus() != "cmdAction_1"; ++i) user.press(Qt::Key_Tab);
              ASSERT_EQ(user.focus(), "cmdAction_1");
              user.press(Qt::Key_Return);
              EXPECT_FALSE(user.isOpen());
            });
  EXPECT_FALSE(accepted);
  EXPECT_EQ(GetParam().stored(), before);
  EXPECT_FALSE(bench.editor().Changed());
  EXPECT_EQ(bench.editor().Image()->Width(), 60);
}

INSTANTIATE_TEST_SUITE_P(OfEveryDialog, CancelButton, testing::ValuesIn(everyDialog()),
                         [](const auto& dialog) { return std::string(dialog.param.name); });

}  // namespace
}  // namespace kestrel::desktop
