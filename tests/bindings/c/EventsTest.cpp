// Handlers of events: their arguments, errors and ends.

#include "Host.h"

namespace kestrel::ctest {
namespace {

using testing::StartsWith;

class CEvents : public Host {
 protected:
  CEvents() : Host(KESTREL_HEADLESS) {}

  static std::string request(kestrel_object* sink) {
    kestrel_value arguments[] = {Text("old.png"), Boolean(false)};
    std::string outcome = Outcome(kestrel_call(sink, "RequestOpenFilename", arguments, 2, nullptr, nullptr));
    for (kestrel_value& value : arguments) kestrel_value_clear(&value);
    return outcome;
  }
};

TEST_F(CEvents, AHandlerSeesTheArguments) {
  const Object sink = Create("IImageEvents");
  std::string seen;
  Handler handler([&](kestrel_value* arguments, std::int32_t count) {
    EXPECT_EQ(count, 1);
    EXPECT_EQ(arguments[0].type, KESTREL_STRING);
    seen.assign(arguments[0].as.string.data, arguments[0].as.string.length);
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(sink, "imageOPEN"), "");
  EXPECT_EQ(Call(sink, "ImageOpen", {Text("Bär.png")}), "");
  EXPECT_EQ(seen, "Bär.png");
  EXPECT_EQ(handler.disconnect(), KESTREL_OK);
  EXPECT_EQ(handler.releases, 1);
  EXPECT_EQ(Call(sink, "ImageOpen", {Text("b.png")}), "");
  EXPECT_EQ(handler.calls, 1);
}

TEST_F(CEvents, EventsThatThereAreNot) {
  const Object sink = Create("IImageEvents");
  Handler handler;
  EXPECT_THAT(handler.connect(sink, "Nothing"), StartsWith("459 "));
  EXPECT_THAT(handler.connect(sink, nullptr), StartsWith("459 "));
  EXPECT_THAT(handler.connect(sink, "\xFF"), StartsWith("459 "));
  EXPECT_EQ(handler.releases, 0) << "it was never the library's";
  kestrel_connection* connection = nullptr;
  EXPECT_THAT(Outcome(kestrel_connect(sink, "ImageOpen", nullptr, nullptr, nullptr, &connection)),
              StartsWith("5 "));
  const auto nothing = [](void*, kestrel_value*, std::int32_t) { return kestrel_status{KESTREL_OK}; };
  EXPECT_THAT(Outcome(kestrel_connect(sink, "ImageOpen", nothing, nullptr, nullptr, nullptr)),
              StartsWith("5 "));
  EXPECT_EQ(connection, nullptr);
}

TEST_F(CEvents, AHandlersErrorIsRaisedInTheMember) {
  const Object sink = Create("IImageEvents");
  Handler handler(
      [](kestrel_value*, std::int32_t) { return kestrel_set_error(77, "Host", "The host is away."); });
  ASSERT_EQ(handler.connect(sink, "RequestOpenFilename"), "");
  EXPECT_EQ(request(sink), "77 The host is away.");
  EXPECT_STREQ(kestrel_last_error()->source, "Host");
}

TEST_F(CEvents, AHandlersErrorWithoutTexts) {
  const Object sink = Create("IImageEvents");
  Handler handler([](kestrel_value*, std::int32_t) { return kestrel_status{1234}; });
  ASSERT_EQ(handler.connect(sink, "RequestOpenFilename"), "");
  EXPECT_EQ(request(sink), "1234 A handler of the event RequestOpenFilename failed.");
  EXPECT_EQ(kestrel_set_error(0, nullptr, nullptr), KESTREL_INTERNAL);
  EXPECT_STREQ(kestrel_last_error()->source, "");
  EXPECT_STRNE(kestrel_last_error()->description, "");
}

TEST_F(CEvents, AHandlerPassesAnErrorOfACallOn) {
  const Object sink = Create("IImageEvents");
  Handler handler([&](kestrel_value*, std::int32_t) {
    return kestrel_call(sink, "Nothing", nullptr, 0, nullptr, nullptr);
  });
  ASSERT_EQ(handler.connect(sink, "RequestOpenFilename"), "");
  EXPECT_EQ(request(sink), "438 IImageEvents has no member \"Nothing\".");
}

TEST_F(CEvents, AHandlerLeavesAWrongValue) {
  const Object sink = Create("IImageEvents");
  Handler handler([](kestrel_value* arguments, std::int32_t) {
    kestrel_value_clear(&arguments[1]);
    arguments[1] = Text("perhaps");
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(sink, "RequestOpenFilename"), "");
  EXPECT_THAT(request(sink), StartsWith("13 "));

  Handler garbage([](kestrel_value* arguments, std::int32_t) {
    kestrel_value_clear(&arguments[0]);
    arguments[0] = OfType(99);
    return KESTREL_OK;
  });
  handler.disconnect();
  ASSERT_EQ(garbage.connect(sink, "RequestOpenFilename"), "");
  EXPECT_THAT(request(sink), StartsWith("13 "));
}

TEST_F(CEvents, AHandlerDisconnectsItselfAndOthers) {
  const Object sink = Create("IImageEvents");
  Handler second;
  Handler first([&](kestrel_value*, std::int32_t) {
    first.disconnect();
    second.disconnect();
    EXPECT_EQ(first.releases, 0) << "it is still running";
    return KESTREL_OK;
  });
  ASSERT_EQ(first.connect(sink, "RequestOpenFilename"), "");
  ASSERT_EQ(second.connect(sink, "RequestOpenFilename"), "");
  EXPECT_EQ(request(sink), "");
  EXPECT_EQ(first.calls, 1);
  EXPECT_EQ(second.calls, 0);
  EXPECT_EQ(first.releases, 1);
  EXPECT_EQ(second.releases, 1);
}

TEST_F(CEvents, AHandlerEndsTheObject) {
  Object sink = Create("IImageEvents");
  Handler handler([&](kestrel_value*, std::int32_t) {
    sink.release();
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(sink, "RequestOpenFilename"), "");
  EXPECT_EQ(request(sink), "");
  EXPECT_EQ(handler.calls, 1);
  EXPECT_THAT(request(sink), StartsWith("91 "));
}

TEST_F(CEvents, AHandlerEndsTheWindow) {
  Object processing = started();
  const std::string picture = png();
  Handler handler([&](kestrel_value*, std::int32_t) {
    EXPECT_EQ(Call(processing, "Terminate"), "");
    processing.release();
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(processing, "ImageOpen"), "");
  EXPECT_EQ(Call(processing, "OpenImage", {Text(picture.c_str())}), "");
  EXPECT_EQ(handler.calls, 1);
}

TEST_F(CEvents, AHandlerCallsTheMemberAgain) {
  const Object sink = Create("IImageEvents");
  int depth = 0;
  Handler handler([&](kestrel_value*, std::int32_t) {
    if (++depth < 10) {
      EXPECT_EQ(request(sink), "");
    }
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(sink, "RequestOpenFilename"), "");
  EXPECT_EQ(request(sink), "");
  EXPECT_EQ(handler.calls, 10);
}

TEST_F(CEvents, AHandlerCannotStopTheThread) {
  const Object sink = Create("IImageEvents");
  std::string outcome;
  Handler handler([&](kestrel_value*, std::int32_t) {
    outcome = Outcome(kestrel_stop());
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(sink, "RequestOpenFilename"), "");
  EXPECT_EQ(request(sink), "");
  EXPECT_THAT(outcome, StartsWith("5 "));
  EXPECT_EQ(request(sink), "");
}

TEST_F(CEvents, AConnectionOutlivesItsObject) {
  Object sink = Create("IImageEvents");
  Handler handler;
  ASSERT_EQ(handler.connect(sink, "ImageOpen"), "");
  sink.release();
  EXPECT_EQ(handler.disconnect(), KESTREL_OK);
  EXPECT_EQ(handler.releases, 1);
}

TEST_F(CEvents, TheSinkOfAnEditorIsAHostsHandler) {
  const Object processing = started();
  const std::string picture = png();
  Handler handler([&](kestrel_value* arguments, std::int32_t count) {
    EXPECT_EQ(count, 2);
    kestrel_value_set_string(&arguments[0], picture.c_str(), KESTREL_TO_NUL);
    kestrel_value_clear(&arguments[1]);
    arguments[1] = Boolean(true);
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(processing, "RequestOpenFilename"), "");
  Result opened;
  EXPECT_EQ(Call(processing, "OpenImage", {}, opened.place()), "");
  EXPECT_EQ(handler.calls, 1);
  EXPECT_TRUE(opened.value.as.boolean);
  EXPECT_EQ(GetText(processing, "Filename"), picture);
}

}  // namespace
}  // namespace kestrel::ctest
