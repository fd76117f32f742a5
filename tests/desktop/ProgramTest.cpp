#include <gtest/gtest.h>

#include <QGuiApplication>

#include "base/RuntimeError.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/app/Desktop.h"
#include "platform/store/MemoryStore.h"

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

}  // namespace
}  // namespace kestrel::desktop

int main(int count, char** values) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&count, values);
  return RUN_ALL_TESTS();
}
