#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>
#include <QWidget>

#include "apps/common/window/EditorWindow.h"
#include "base/RuntimeError.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/app/Desktop.h"
#include "platform/store/MemoryStore.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

qt::DesktopParts parts() {
  qt::DesktopParts parts;
  parts.version = {"KestrelLib2 Image Editor", 2, 0, 0};
  auto store = std::make_unique<store::MemoryStore>();
  parts.objectFactory = std::make_unique<posix::SharedLibraryFactory>(*store);
  parts.store = std::move(store);
  parts.stackResolver = std::make_unique<posix::LineTable>();
  return parts;
}

// The toolkit appends the application's display name to the caption of each window that doesn't end in it.
// Without a display name it is the name of the program's file, and captions stay unchanged.
TEST(Program, AppendsNoNameToTheCaptionsOfItsWindows) {
  int count = 1;
  char name[] = "kestrel-editor";
  char* values[] = {name, nullptr};
  qt::Desktop desktop(count, values, "kestrel-editor");
  desktop.assemble(parts());
  EXPECT_EQ(QGuiApplication::applicationDisplayName(), "kestrel-editor");
}

// The event loop ends with the round of events that closes the window, and waits for no timer and no other
// window: what is left of the process is its cleaning up.
TEST(Program, EndsAsItsEditorsWindowCloses) {
  int count = 1;
  char name[] = "kestrel-editor";
  char* values[] = {name, nullptr};
  qt::Desktop desktop(count, values, "kestrel-editor");
  desktop.assemble(parts());
  modProcessing::Attach(desktop.platform());
  modProcessing::Main();
  {
    app::EditorWindow window([&desktop] { desktop.quit(); });
    window.form().Show();
    QWidget help;  // as a help window that is still open
    help.show();
    int later = 0;
    QTimer next;
    QObject::connect(&next, &QTimer::timeout, &next, [&later] { ++later; });
    QTimer::singleShot(0, [&] {
      next.start(0);
      window.runCommand("fileclose");
    });
    EXPECT_EQ(desktop.run(), 0);
    EXPECT_LE(later, 1) << "only the round of events in progress goes on";
    EXPECT_FALSE(window.form().Visible());
    EXPECT_TRUE(help.isVisible());
  }
  modProcessing::Detach();
}

}  // namespace
}  // namespace kestrel::desktop

int main(int count, char** values) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&count, values);
  return RUN_ALL_TESTS();
}
