#include <gtest/gtest.h>

#include "TestMoorage.h"
#include "platform/docking/HotKeyText.h"

namespace kestrel::docking {
namespace {

struct Row {
  const char* text;
  StoredHotKey key;
};

constexpr Row kRows[] = {{"Ctrl+O", {2, 79}},     {"Shift+S", {1, 83}},
                         {"Alt+F4", {4, 115}},    {"F9", {0, 120}},
                         {"Z", {0, 90}},          {"0", {0, 48}},
                         {"Num+", {0, 107}},      {"Num-", {0, 109}},
                         {"Ctrl+Num+", {2, 107}}, {"Ctrl+Alt+Shift+F24", {7, 135}},
                         {"Ctrl+#27", {2, 27}}};

TEST(HotKeyText, ConvertsBothWays) {
  for (const Row& row : kRows) {
    EXPECT_EQ(hotKeyText(row.key), row.text);
    EXPECT_EQ(hotKeyFromText(row.text), row.key) << row.text;
  }
}

TEST(HotKeyText, IgnoresCaseAndTheOrderOfModifiers) {
  EXPECT_EQ(hotKeyFromText("shift+CTRL+a"), (StoredHotKey{3, 65}));
}

TEST(HotKeyText, RejectsOtherTexts) {
  for (const char* text :
       {"", "Ctrl+", "Ctrl+Ctrl+A", "F25", "F0", "Fx", "Escape", "Num*", "#0", "#256", "Ctrl-A"}) {
    EXPECT_EQ(errorOf([&] { hotKeyFromText(text); }), 5) << text;
  }
}

}  // namespace
}  // namespace kestrel::docking
