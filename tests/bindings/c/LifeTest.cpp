// The life of handles and objects, and threads.

#include <thread>

#include "Host.h"

namespace kestrel::ctest {
namespace {

using testing::StartsWith;

class CLife : public Host {
 protected:
  CLife() : Host(KESTREL_HEADLESS) {}
};

template <typename Work>
void onAnotherThread(Work work) {
  std::thread(work).join();
}

TEST_F(CLife, NoHandleIsAnErrorAndNoCrash) {
  Object picture = Create("ImgX");
  kestrel_object* const released = picture;
  picture.release();
  int on_the_stack = 0;
  kestrel_object* const wrong[] = {nullptr, released, reinterpret_cast<kestrel_object*>(&on_the_stack),
                                   reinterpret_cast<kestrel_object*>(1),
                                   reinterpret_cast<kestrel_object*>(-1)};
  for (kestrel_object* const handle : wrong) {
    Result value;
    std::int32_t number = 0;
    const kestrel_class* description = nullptr;
    kestrel_connection* connection = nullptr;
    kestrel_pixels pixels;
    kestrel_pixel_lock* lock = nullptr;
    const kestrel_value one = Number(1);
    const auto handler = [](void*, kestrel_value*, std::int32_t) { return kestrel_status{KESTREL_OK}; };
    EXPECT_THAT(Outcome(kestrel_get(handle, "Image", value.place())), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_set(handle, "BackColor", &one)), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_call(handle, "Image", nullptr, 0, nullptr, nullptr)), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_invoke(handle, 1, KESTREL_GET, nullptr, 0, nullptr, nullptr)),
                StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_find_member(handle, "Image", &number)), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_next(handle, &number, value.place())), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_is_same(handle, handle, &number)), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_retain(handle)), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_class_of(handle, &description)), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_connect(handle, "X", handler, nullptr, nullptr, &connection)),
                StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_lock_pixels(handle, &pixels, &lock)), StartsWith("91 "));
    EXPECT_THAT(Outcome(kestrel_unembed(handle)), StartsWith("91 "));
    if (handle) {
      EXPECT_THAT(Outcome(kestrel_release(handle)), StartsWith("91 "));
      EXPECT_THAT(Outcome(kestrel_run(handle, 0, &number)), StartsWith("91 "));
      EXPECT_THAT(Outcome(kestrel_disconnect(reinterpret_cast<kestrel_connection*>(handle))),
                  StartsWith("91 "));
      EXPECT_THAT(Outcome(kestrel_unlock_pixels(reinterpret_cast<kestrel_pixel_lock*>(handle))),
                  StartsWith("91 "));
    }
    EXPECT_EQ(value.value.type, KESTREL_EMPTY);
  }
  EXPECT_EQ(Outcome(kestrel_release(nullptr)), "");
  EXPECT_EQ(Outcome(kestrel_disconnect(nullptr)), "");
  EXPECT_EQ(Outcome(kestrel_unlock_pixels(nullptr)), "");
}

TEST_F(CLife, AHandleIsNotGivenTwice) {
  kestrel_object* const first = Create("Palette").handle;
  for (int i = 0; i < 1000; ++i) EXPECT_NE(Create("Palette").handle, first);
  Result value;
  EXPECT_THAT(Outcome(kestrel_get(first, "Type", value.place())), StartsWith("91 "));
}

TEST_F(CLife, ARetainedHandleNeedsOneReleaseMore) {
  const Object picture = Create("Palette");
  EXPECT_EQ(Outcome(kestrel_retain(picture)), "");
  EXPECT_EQ(Outcome(kestrel_release(picture)), "");
  EXPECT_EQ(GetNumber(picture, "Type"), 0);
}

TEST_F(CLife, AHandleOfAnotherKindIsNone) {
  const Object sink = Create("IImageEvents");
  EXPECT_THAT(Outcome(kestrel_disconnect(reinterpret_cast<kestrel_connection*>(sink.handle))),
              StartsWith("91 "));
  EXPECT_THAT(Outcome(kestrel_unlock_pixels(reinterpret_cast<kestrel_pixel_lock*>(sink.handle))),
              StartsWith("91 "));
  EXPECT_EQ(Outcome(kestrel_retain(sink)), "") << "it is still there";
  EXPECT_EQ(Outcome(kestrel_release(sink)), "");
}

TEST_F(CLife, WhatATerminatedWindowHandedOutIsGone) {
  const Object processing = started();
  const Object control = GetObject(processing, "Control");
  const Object bars = GetObject(processing, "CommandBars");
  EXPECT_EQ(Call(processing, "Terminate"), "");
  Result value;
  EXPECT_THAT(Outcome(kestrel_get(control, "Filename", value.place())), StartsWith("91 "));
  EXPECT_THAT(Outcome(kestrel_get(bars, "Count", value.place())), StartsWith("91 "));
  EXPECT_THAT(Outcome(kestrel_get(processing, "Filename", value.place())), StartsWith("91 "));
  const kestrel_class* description = nullptr;
  EXPECT_EQ(Outcome(kestrel_class_of(bars, &description)), "") << "the class is still known";
}

TEST_F(CLife, TheFormOfAToolWindowIsTheOneThatThereIs) {
  const Object processing = started();
  const Object control = GetObject(processing, "Control");
  const Object form = GetObject(GetObject(control, "ZoomWindow"), "Form");
  EXPECT_EQ(Call(control, "Initialize"), "") << "makes the tool windows again";
  Result caption;
  EXPECT_EQ(Outcome(kestrel_get(form, "Caption", caption.place())), "");
}

TEST_F(CLife, APartKeepsTheObjectThatHandedItOut) {
  Object processing = started();
  const Object bars = GetObject(processing, "CommandBars");
  processing.release();
  EXPECT_GT(GetNumber(bars, "Count"), 0);
}

TEST_F(CLife, HandlesThatAreLeftAfterAStopAreThoseOfObjectsThatAreGone) {
  const Object processing = started();
  const Object control = GetObject(processing, "Control");
  Handler handler;
  ASSERT_EQ(handler.connect(control, "Change"), "");
  EXPECT_EQ(Outcome(kestrel_stop()), "");
  EXPECT_EQ(handler.releases, 1) << "the handler is not called again";
  Result value;
  EXPECT_THAT(Outcome(kestrel_get(control, "Filename", value.place())), StartsWith("91 "));
  EXPECT_THAT(Outcome(kestrel_get(processing, "Filename", value.place())), StartsWith("91 "));
  EXPECT_EQ(Outcome(kestrel_stop()), "") << "there is nothing to stop";

  ASSERT_EQ(Outcome(kestrel_start(KESTREL_HEADLESS)), "");
  EXPECT_THAT(Outcome(kestrel_get(control, "Filename", value.place())), StartsWith("91 "));
  EXPECT_EQ(GetText(started(), "Filename"), "") << "a new start is a new platform";
}

TEST_F(CLife, AThreadHasOnePlatform) {
  EXPECT_EQ(Outcome(kestrel_start(KESTREL_HEADLESS)), "");
  EXPECT_THAT(Outcome(kestrel_start(KESTREL_DESKTOP)), StartsWith("5 "));
  onAnotherThread([] { EXPECT_THAT(Outcome(kestrel_start(17)), StartsWith("5 ")); });
}

TEST_F(CLife, CallsFromAnotherThreadAreRefusedWithASentence) {
  const Object processing = started();
  Handler handler;
  onAnotherThread([&] {
    Result value;
    std::int32_t number = 0;
    kestrel_pixels pixels;
    kestrel_pixel_lock* lock = nullptr;
    const kestrel_value one = Number(1);
    const std::string refused =
        "-2147417842 An object of class ImageProcessing can be used only on the thread that it was made on.";
    EXPECT_EQ(Outcome(kestrel_get(processing, "Title", value.place())), refused);
    EXPECT_EQ(Outcome(kestrel_set(processing, "Title", &one)), refused);
    EXPECT_EQ(Outcome(kestrel_call(processing, "Undo", nullptr, 0, nullptr, nullptr)), refused);
    EXPECT_EQ(Outcome(kestrel_find_member(processing, "Title", &number)), refused);
    EXPECT_EQ(Outcome(kestrel_is_same(processing, processing, &number)), refused);
    EXPECT_EQ(Outcome(kestrel_run(processing, 0, &number)), refused);
    EXPECT_EQ(Outcome(kestrel_lock_pixels(processing, &pixels, &lock)), refused);
    EXPECT_EQ(handler.connect(processing, "ImageOpen"), refused);
  });
  EXPECT_EQ(Outcome(KESTREL_OK), "");
  EXPECT_EQ(GetText(processing, "Title"), "");
}

TEST_F(CLife, AnObjectOfAnotherThreadIsRefusedAsAnArgument) {
  const Object mine = Create("ImgX");
  onAnotherThread([&] {
    ASSERT_EQ(Outcome(kestrel_start(KESTREL_HEADLESS)), "");
    {
      const Object picture = Create("ImgX");
      EXPECT_THAT(Call(GetObject(picture, "Document"), "CopyFrom", {ObjectValue(mine)}),
                  StartsWith("-2147417842 Argument 1 of CopyFrom: "));
      EXPECT_EQ(kestrel_last_error()->position, 1);
    }
    EXPECT_EQ(Outcome(kestrel_stop()), "");
  });
}

TEST_F(CLife, EachThreadHasItsOwnErrors) {
  kestrel_object* none = nullptr;
  EXPECT_THAT(Outcome(kestrel_create("Nobody", &none)), StartsWith("429 "));
  onAnotherThread([] {
    EXPECT_EQ(kestrel_last_error()->number, 0);
    EXPECT_STREQ(kestrel_last_error()->description, "");
  });
  EXPECT_EQ(kestrel_last_error()->number, 429);
}

TEST_F(CLife, AReleaseOnAnotherThreadIsDoneOnTheObjectsOwn) {
  const Object sink = Create("IImageEvents");
  Handler handler;
  std::thread::id released;
  kestrel_connection* connection = nullptr;
  ASSERT_EQ(
      Outcome(kestrel_connect(
          sink, "ImageOpen", [](void*, kestrel_value*, std::int32_t) { return kestrel_status{KESTREL_OK}; },
          &released, [](void* user) { *static_cast<std::thread::id*>(user) = std::this_thread::get_id(); },
          &connection)),
      "");
  Object last = Create("ImageProcessing");
  onAnotherThread([&] {
    EXPECT_EQ(Outcome(kestrel_disconnect(connection)), "");
    last.release();
  });
  EXPECT_EQ(released, std::thread::id()) << "not on the other thread";
  EXPECT_EQ(Outcome(kestrel_process_events(0)), "");
  EXPECT_EQ(released, std::this_thread::get_id());
}

TEST_F(CLife, ThreadsWithoutADisplayWorkSideBySide) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([i, this] {
      ASSERT_EQ(Outcome(kestrel_start(KESTREL_HEADLESS)), "");
      for (int round = 0; round < 20; ++round) {
        const Object picture = Create("ImgX");
        const Object document = GetObject(picture, "Document");
        EXPECT_EQ(Call(document, "NewImage", {Number(10 + i), Number(5), ObjectValue(nullptr)}), "");
        EXPECT_EQ(GetNumber(GetObject(picture, "Image"), "Width"), 10 + i);
      }
      EXPECT_EQ(Outcome(kestrel_stop()), "");
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST_F(CLife, AThreadWithoutADisplayHasNoEventsAndNoWidgets) {
  std::int32_t reason = -1;
  EXPECT_THAT(Outcome(kestrel_run(nullptr, 0, &reason)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_run(started(), 0, &reason)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_quit()), StartsWith("5 "));
  Object control;
  void* widget = nullptr;
  EXPECT_THAT(Outcome(kestrel_embed("ImageProcessingCtl", nullptr, &control.handle, &widget, nullptr)),
              StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_unembed(GetObject(started(), "Control"))), StartsWith("5 "));
  EXPECT_EQ(Outcome(kestrel_process_events(1)), "");
  EXPECT_EQ(reason, -1);
}

TEST_F(CLife, AThreadThatWasNotStartedHasNothingToRun) {
  onAnotherThread([] {
    EXPECT_EQ(Outcome(kestrel_process_events(0)), "");
    EXPECT_THAT(Outcome(kestrel_run(nullptr, 0, nullptr)), StartsWith("5 "));
    EXPECT_THAT(Outcome(kestrel_quit()), StartsWith("5 "));
    EXPECT_EQ(Outcome(kestrel_stop()), "");
  });
}

TEST_F(CLife, TheClassOfAnObjectIsReadOnAnyThread) {
  const Object palette = Create("Palette");
  onAnotherThread([&] {
    const kestrel_class* description = nullptr;
    ASSERT_EQ(Outcome(kestrel_class_of(palette, &description)), "");
    EXPECT_STREQ(description->name, "Palette");
  });
}

}  // namespace
}  // namespace kestrel::ctest
