// The readable text from which a layout is compiled.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SmallLayout.h"
#include "base/RuntimeError.h"
#include "tools/layout/LayoutSource.h"

namespace kestrel::docking {
namespace {

using testing::ElementsAre;
using tools::parseLayoutSource;

TEST(LayoutSource, ReadsOneItemOfEveryKind) {
  const StoredLayout layout = parseLayoutSource(R"(
# A comment, and a blank line before it.
font "Sans Serif" 9
images "Open" "Save"
category "File"
button btnOpen        # a comment after a word
  caption "&Open # 1"
  short "Open"
  description "Opens"
  image "Open"
  hotkey Ctrl+O
  hidden
  pressed
panel pnlA
  caption " "
  spring
  progress
  width 53
category "Menus"
combo cboA
  text "1:1"
list lstA
menu mnuA
  entries btnOpen | cboA
  entries | lstA
toolbar "Tools"
  edge left
  row 2
  hidden
  entries btnOpen
pane "Right"
  edge right
  size 200
window dkwA
  caption "A"
  hidden
)");
  StoredCommand open{kCommandButton, "btnOpen", "&Open # 1", "Open", "Opens", "File", "Open", {{2, 'O'}},
                     false,          true,      {},          0,      false,   false,  {}};
  StoredCommand panel{kCommandPanel, "pnlA", " ", {}, {},   "File", {}, {},
                      true,          false,  {},  53, true, true,   {}};
  StoredCommand combo{kCommandCombo, "cboA", {},    {}, {},    "Menus", {}, {},
                      true,          false,  "1:1", 0,  false, false,   {}};
  StoredCommand list{kCommandList, "lstA", {}, {}, {}, "Menus", {}, {}, true, false, {}, 0, false, false, {}};
  StoredCommand menu{
      kCommandMenu, "mnuA", {},    {},    {},
      "Menus",      {},     {},    true,  false,
      {},           0,      false, false, {{"btnOpen", false}, {"cboA", true}, {"lstA", true}}};
  EXPECT_THAT(layout.commands, ElementsAre(open, panel, combo, list, menu));
  EXPECT_THAT(layout.bars,
              ElementsAre(StoredBar{"Tools", BarKind::ToolBar, false, Edge::Left, 2, {{"btnOpen", false}}}));
  EXPECT_THAT(layout.panes, ElementsAre(StoredPane{"Right", Edge::Right, 200}));
  EXPECT_THAT(layout.dockWindows, ElementsAre(StoredDockWindow{"dkwA", "A", "Right", false}));
  EXPECT_THAT(layout.categories, ElementsAre("File", "Menus"));
  EXPECT_EQ(layout.images.size(), 2u);
  EXPECT_EQ(layout.font.height, 90000);
}

std::string failure(const char* text) {
  try {
    parseLayoutSource(text);
    return "read";
  } catch (const RuntimeError& error) {
    return error.Description();
  }
}

TEST(LayoutSource, ReportsTheLineOfAnError) {
  EXPECT_EQ(failure("\n\nbuton btnOpen"), "Line 3: \"buton\" is not allowed here");
  EXPECT_EQ(failure("caption \"x\""), "Line 1: \"caption\" is not allowed here");
  EXPECT_EQ(failure("button btnA\n  edge top"), "Line 2: \"edge\" is not allowed here");
  EXPECT_EQ(failure("button btnA\n  caption \"x"), "Line 2: a quotation mark is missing");
  EXPECT_EQ(failure("button"), "Line 1: \"button\" takes 1 argument");
  EXPECT_EQ(failure("button btnA\n  hidden yes"), "Line 2: \"hidden\" takes 0 arguments");
  EXPECT_EQ(failure("button btnA\n  width 4x"), "Line 2: \"4x\" is not a number");
  EXPECT_EQ(failure("button btnA\n  hotkey Foo"), "Line 2: \"Foo\" is not a hot key.");
  EXPECT_EQ(failure("toolbar \"A\"\n  edge middle"), "Line 2: \"middle\" is not an edge");
  EXPECT_EQ(failure("menu mnuA\n  entries btnA |"), "Line 2: a separator has no entry after it");
  EXPECT_EQ(failure("window dkwA"), "Line 1: a window comes before the first pane");
}

}  // namespace
}  // namespace kestrel::docking
