// Hosts that cannot have a desktop, or end in other ways than by a stop. Each is a process of its own, of one
// that has neither threads nor an application object.

#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <cstdlib>
#include <memory>

#include "Host.h"

namespace kestrel::ctest {
namespace {

/// Runs a host in another process. Returns its exit code, -1 if it crashed.
int inAnotherProcess(const std::function<int()>& host) {
  const pid_t process = fork();
  if (process == 0) _exit(host());
  int status = 0;
  EXPECT_EQ(waitpid(process, &status, 0), process);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class CProcess : public Host {
 protected:
  CProcess() : Host(KESTREL_DESKTOP) {}
  void SetUp() override {}
  void TearDown() override {}
};

TEST_F(CProcess, WithoutADisplayThereIsAnErrorAndNoCrash) {
  EXPECT_EQ(inAnotherProcess([] {
              unsetenv("QT_QPA_PLATFORM");
              unsetenv("WAYLAND_DISPLAY");
              for (const char* const display : {"", ":4711"}) {
                setenv("DISPLAY", display, 1);
                kestrel_object* none = nullptr;
                if (Outcome(kestrel_create("ImgX", &none)) != "429 There is no display for windows.")
                  return 1;
              }
              return kestrel_start(KESTREL_HEADLESS) == KESTREL_OK ? 0 : 2;
            }),
            0);
}

TEST_F(CProcess, AnApplicationObjectWithoutWindowsIsRefused) {
  EXPECT_EQ(inAnotherProcess([] {
              int count = 1;
              char name[] = "host";
              char* values[] = {name, nullptr};
              const QCoreApplication application(count, values);
              const std::string outcome = Outcome(kestrel_start(KESTREL_DESKTOP));
              return outcome.starts_with("429 ") ? 0 : 1;
            }),
            0);
}

TEST_F(CProcess, AQtProgramMayEndItsApplicationObjectFirst) {
  EXPECT_EQ(inAnotherProcess([] {
              int count = 1;
              char name[] = "host";
              char* values[] = {name, nullptr};
              auto application = std::make_unique<QApplication>(count, values);
              kestrel_object* processing = nullptr;
              if (kestrel_create("ImageProcessing", &processing) != KESTREL_OK) return 1;
              kestrel_call(processing, "Initialize", nullptr, 0, nullptr, nullptr);
              kestrel_call(processing, "Show", nullptr, 0, nullptr, nullptr);
              application.reset();
              kestrel_value value{};
              if (kestrel_get(processing, "Visible", &value) != KESTREL_OBJECT_GONE) return 2;
              if (kestrel_release(processing) != KESTREL_OK) return 3;
              return kestrel_stop() == KESTREL_OK ? 0 : 4;
            }),
            0);
}

TEST_F(CProcess, AHostThatForgetsAllEndsWell) {
  EXPECT_EQ(inAnotherProcess([] {
              kestrel_object* processing = nullptr;
              if (kestrel_create("ImageProcessing", &processing) != KESTREL_OK) return 1;
              kestrel_call(processing, "Initialize", nullptr, 0, nullptr, nullptr);
              std::exit(7);
              return 2;
            }),
            7);
}

}  // namespace
}  // namespace kestrel::ctest
