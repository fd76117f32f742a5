#include <gtest/gtest.h>

#include "../EditorBench.h"
#include "DialogLooks.h"
#include "DialogUser.h"

namespace kestrel::desktop {
namespace {

TEST(RotateLooks, AreReadableInEveryLook) {
  EditorBench bench;
  bench.showPicture(noise(60, 40));
  expectGoodLooks("rotate", [&] { bench.editor().ShowRotateDialog(); });
}

TEST(RotateLooks, TheFreeAngleIsSteppedByKeysAndByTheWheel) {
  EditorBench bench;
  bench.showPicture(noise(60, 40));
  useDialog([&] { bench.editor().ShowRotateDialog(); },
            [](DialogUser& user) {
              user.click("txtDegrees");
              user.type("30");
              user.press(Qt::Key_Up);
              EXPECT_EQ(user.text("txtDegrees"), "31");
              user.turnWheel("txtDegrees", -240);
              EXPECT_EQ(user.text("txtDegrees"), "29");
              EXPECT_TRUE(user.part<QAbstractButton>("optDegree_3").isChecked());
            });
}

}  // namespace
}  // namespace kestrel::desktop
