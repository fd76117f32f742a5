#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/TextBox.h"
#include "platform/headless/Platform.h"

namespace kestrel {

/// Shows a dialog, cancels it, and expects that its load writes each box of `txtField`, and applies the skin
/// after the last of them.
template <typename Dialog>
void expectWrittenBeforeSkin(headless::Platform& platform, Dialog& dialog, std::int32_t boxes) {
  const std::string name = dialog.TypeName();
  const auto hasSkin = [&] {
    const auto& applied = platform.FormSkin().applied();
    return std::any_of(applied.begin(), applied.end(), [&](const auto& each) { return each.name == name; });
  };
  ASSERT_FALSE(hasSkin());
  std::vector<bool> written(static_cast<std::size_t>(boxes));
  std::vector<Connection> connections;
  for (std::int32_t i = 0; i < boxes; ++i) {
    connections.push_back(Bind<TextBox>(dialog.Form(), "txtField", i).Change.Connect([&, i] {
      written[static_cast<std::size_t>(i)] = true;
      EXPECT_FALSE(hasSkin()) << name << " writes box " << i << " after the skin";
    }));
  }
  platform.user().uses(name, [](Form& form) { Bind<CommandButton>(form, "cmdAction", 1).Press(); });
  EXPECT_FALSE(dialog.ShowModal());
  EXPECT_THAT(written, testing::Each(true)) << "the order of a box that is not written is unknown";
  EXPECT_TRUE(hasSkin());
}

}  // namespace kestrel
