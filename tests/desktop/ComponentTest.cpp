// The component in hosts that end in other ways than by destroying component and application object in order.
// Each host is a process of its own, since a process has one application object at a time.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QImage>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "imaging/contract/Image.h"
#include "platform/qt/embed/ImageEditor.h"

namespace kestrel::desktop {
namespace {

class ComponentOf : public testing::Test {
 protected:
  ComponentOf() { setenv("KESTREL_STORE", file("settings.store").c_str(), 1); }

  std::string file(const char* name) const { return folder_.filePath(QLatin1String(name)).toStdString(); }

  /// Runs a host in another process. Returns its exit code, -1 if it crashed.
  static int run(const std::function<int()>& host) {
    const pid_t process = fork();
    if (process == 0) {
      int code = 1;
      try {
        code = host();
      } catch (const std::exception& error) {
        std::fprintf(stderr, "The host failed: %s\n", error.what());
      }
      _exit(code);
    }
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  static std::unique_ptr<QApplication> application() {
    static int count = 1;
    static char name[] = "host";
    static char* values[] = {name, nullptr};
    return std::make_unique<QApplication>(count, values);
  }

 private:
  const QTemporaryDir folder_;
};

TEST_F(ComponentOf, AHostThatCallsExitDoesNotFail) {
  EXPECT_EQ(run([] {
              const auto host = application();
              qt::Component component;
              qt::ImageEditor editor(component);
              editor.control().Initialize();
              std::exit(7);
              return 1;
            }),
            7);
}

TEST_F(ComponentOf, AHostWithASecondApplicationServesIt) {
  const std::string picture = file("picture.png");
  ASSERT_TRUE(QImage(20, 10, QImage::Format_RGB32).save(QString::fromStdString(picture)));
  EXPECT_EQ(run([&] {
              auto host = application();
              qt::Component component;
              { qt::ImageEditor(component).control().Initialize(); }
              host.reset();
              host = application();
              qt::ImageEditor editor(component);
              editor.control().Initialize();
              if (!editor.control().OpenImage(picture)) return 1;
              return editor.control().Image()->Width();
            }),
            20);
}

}  // namespace
}  // namespace kestrel::desktop

int main(int count, char** values) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&count, values);
  return RUN_ALL_TESTS();
}
