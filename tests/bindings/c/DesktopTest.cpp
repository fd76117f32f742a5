// Hosts without an event loop of their own, on the desktop.

#include <QCoreApplication>
#include <clocale>
#include <thread>

#include "Host.h"

namespace kestrel::ctest {
namespace {

using testing::StartsWith;

class CDesktop : public Host {
 protected:
  CDesktop() : Host(KESTREL_DESKTOP) {}

  static Object shown() {
    Object processing = started();
    EXPECT_EQ(Call(processing, "Show"), "");
    return processing;
  }
};

TEST_F(CDesktop, ARunEndsAfterItsTime) {
  const Object processing = shown();
  EXPECT_TRUE(GetBoolean(processing, "Visible"));
  std::int32_t reason = -1;
  EXPECT_EQ(Outcome(kestrel_run(processing, 20, &reason)), "");
  EXPECT_EQ(reason, KESTREL_RUN_TIMED_OUT);
  EXPECT_EQ(Outcome(kestrel_run(nullptr, 20, &reason)), "");
  EXPECT_EQ(reason, KESTREL_RUN_TIMED_OUT);
  EXPECT_EQ(Outcome(kestrel_run(processing, 0, nullptr)), "");
}

TEST_F(CDesktop, ARunEndsWithTheWindow) {
  const Object processing = shown();
  EXPECT_EQ(Call(processing, "Terminate"), "");
  std::int32_t reason = -1;
  EXPECT_EQ(Outcome(kestrel_run(processing, -1, &reason)), "");
  EXPECT_EQ(reason, KESTREL_RUN_CLOSED);
}

TEST_F(CDesktop, ARunEndsWithTheLastWindow) {
  std::int32_t reason = -1;
  EXPECT_EQ(Outcome(kestrel_run(nullptr, -1, &reason)), "");
  EXPECT_EQ(reason, KESTREL_RUN_CLOSED);
}

TEST_F(CDesktop, ARunDoesNotKeepItsWindow) {
  Object processing = shown();
  kestrel_object* const handle = processing;
  std::thread other([&] { processing.release(); });
  std::int32_t reason = -1;
  const kestrel_status status = kestrel_run(handle, -1, &reason);
  other.join();
  // The other thread may have been the first.
  if (status == KESTREL_OK) {
    EXPECT_EQ(reason, KESTREL_RUN_CLOSED);
  } else {
    EXPECT_EQ(status, KESTREL_OBJECT_GONE);
  }
}

TEST_F(CDesktop, AnObjectWithoutAWindowCannotBeWaitedFor) {
  EXPECT_THAT(Outcome(kestrel_run(Create("Palette"), -1, nullptr)), StartsWith("438 "));
}

/// Calls a function on the desktop's thread while that processes events. The function is called at the end of
/// a connection, which another thread ends; a first one is before it, since the next call of the library does
/// what is posted before it processes events.
class Later {
 public:
  explicit Later(std::function<void()> work) : work_(std::move(work)), sink_(Create("IImageEvents")) {
    const auto nothing = [](void*, kestrel_value*, std::int32_t) { return kestrel_status{KESTREL_OK}; };
    const auto first = [](void* user) { end(static_cast<Later*>(user)->second_); };
    const auto second = [](void* user) { static_cast<Later*>(user)->work_(); };
    EXPECT_EQ(Outcome(kestrel_connect(sink_, "ImageOpen", nothing, this, first, &first_)), "");
    EXPECT_EQ(Outcome(kestrel_connect(sink_, "ImageOpen", nothing, this, second, &second_)), "");
  }
  void start() const { end(first_); }

 private:
  static void end(kestrel_connection* connection) {
    std::thread([connection] { kestrel_disconnect(connection); }).join();
  }

  std::function<void()> work_;
  Object sink_;
  kestrel_connection* first_ = nullptr;
  kestrel_connection* second_ = nullptr;
};

TEST_F(CDesktop, QuitEndsTheInnermostRun) {
  const Object processing = shown();
  EXPECT_THAT(Outcome(kestrel_quit()), StartsWith("5 "));
  std::int32_t inner = -1;
  const Later quit([] { EXPECT_EQ(Outcome(kestrel_quit()), ""); });
  const Later nested([&] {
    quit.start();
    EXPECT_EQ(Outcome(kestrel_run(processing, -1, &inner)), "");
    EXPECT_THAT(Outcome(kestrel_stop()), StartsWith("5 ")) << "within a run";
    EXPECT_EQ(Outcome(kestrel_quit()), "");
  });
  nested.start();
  std::int32_t outer = -1;
  EXPECT_EQ(Outcome(kestrel_run(processing, -1, &outer)), "");
  EXPECT_EQ(inner, KESTREL_RUN_QUIT);
  EXPECT_EQ(outer, KESTREL_RUN_QUIT);
}

TEST_F(CDesktop, WorkOfAnotherThreadIsDoneWhileEventsAreProcessed) {
  int done = 0;
  const Later work([&] { ++done; });
  work.start();
  EXPECT_EQ(done, 0);
  EXPECT_EQ(Outcome(kestrel_process_events(0)), "");
  EXPECT_EQ(done, 1);
}

TEST_F(CDesktop, TheWindowsEventsArrive) {
  const Object processing = shown();
  Handler closed;
  ASSERT_EQ(closed.connect(processing, "WindowClosed"), "");
  Handler opened;
  ASSERT_EQ(opened.connect(processing, "ImageOpen"), "");
  const std::string picture = png();
  EXPECT_EQ(Call(processing, "OpenImage", {Text(picture.c_str())}), "");
  EXPECT_EQ(opened.calls, 1);
  EXPECT_EQ(GetNumber(GetObject(processing, "Image"), "Width"), 40);
  EXPECT_EQ(Call(processing, "Terminate"), "");
  EXPECT_EQ(closed.calls, 1);
}

TEST_F(CDesktop, AStopEndsTheApplicationObjectAndAStartMakesAnother) {
  const Object processing = shown();
  EXPECT_NE(QCoreApplication::instance(), nullptr);
  EXPECT_EQ(Outcome(kestrel_stop()), "");
  EXPECT_EQ(QCoreApplication::instance(), nullptr);
  Result value;
  EXPECT_THAT(Outcome(kestrel_get(processing, "Visible", value.place())), StartsWith("91 "));
  const Object second = shown();
  EXPECT_NE(QCoreApplication::instance(), nullptr) << "started by the first object";
  EXPECT_TRUE(GetBoolean(second, "Visible"));
}

TEST_F(CDesktop, TheDesktopIsOneThread) {
  std::thread([] {
    EXPECT_THAT(Outcome(kestrel_start(KESTREL_DESKTOP)), StartsWith("-2147417842 "));
    kestrel_object* none = nullptr;
    EXPECT_THAT(Outcome(kestrel_create("ImgX", &none)), StartsWith("-2147417842 "));
    ASSERT_EQ(Outcome(kestrel_start(KESTREL_HEADLESS)), "") << "without a display it can work";
    EXPECT_NE(Create("ImgX").handle, nullptr);
    EXPECT_EQ(Outcome(kestrel_stop()), "");
  }).join();
}

TEST_F(CDesktop, AHostsNumbersAreWrittenAsBefore) { EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C"); }

TEST_F(CDesktop, AControlAsAWidget) {
  for (const char* const name : {"ImageProcessingCtl", "imagebrowserctl"}) {
    Object control;
    void* widget = nullptr;
    std::uint64_t window = 0;
    ASSERT_EQ(Outcome(kestrel_embed(name, nullptr, &control.handle, &widget, &window)), "");
    EXPECT_NE(widget, nullptr);
    EXPECT_NE(window, 0u);
    Result value;
    EXPECT_EQ(Outcome(kestrel_get(control, "ShowMenuBar", value.place())), "") << name;
    EXPECT_EQ(Outcome(kestrel_unembed(control)), "");
    EXPECT_THAT(Outcome(kestrel_get(control, "ShowMenuBar", value.place())), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_unembed(control)), StartsWith("91 "));
  }
}

TEST_F(CDesktop, WidgetsThatThereAreNot) {
  Object control;
  void* widget = nullptr;
  int onTheStack = 0;
  EXPECT_THAT(Outcome(kestrel_embed("ImgX", nullptr, &control.handle, &widget, nullptr)), StartsWith("429 "));
  EXPECT_THAT(Outcome(kestrel_embed(nullptr, nullptr, &control.handle, &widget, nullptr)),
              StartsWith("429 "));
  EXPECT_THAT(Outcome(kestrel_embed("ImageBrowserCtl", &onTheStack, &control.handle, &widget, nullptr)),
              StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_embed("ImageBrowserCtl", nullptr, nullptr, &widget, nullptr)),
              StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_embed("ImageBrowserCtl", nullptr, &control.handle, nullptr, nullptr)),
              StartsWith("5 "));
  EXPECT_EQ(control.handle, nullptr);
  EXPECT_EQ(widget, nullptr);
  EXPECT_THAT(Outcome(kestrel_unembed(GetObject(started(), "Control"))), StartsWith("5 "));
}

TEST_F(CDesktop, AStopDestroysTheWidgetsThatAreLeft) {
  Object control;
  void* widget = nullptr;
  ASSERT_EQ(Outcome(kestrel_embed("ImageProcessingCtl", nullptr, &control.handle, &widget, nullptr)), "");
  EXPECT_EQ(Outcome(kestrel_stop()), "");
  Result value;
  EXPECT_THAT(Outcome(kestrel_get(control, "Filename", value.place())), StartsWith("91 "));
}

}  // namespace
}  // namespace kestrel::ctest
