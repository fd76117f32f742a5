// Objects, values and calls, on a thread without a display.

#include "Host.h"

namespace kestrel::ctest {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class CCalls : public Host {
 protected:
  CCalls() : Host(KESTREL_HEADLESS) {}
};

TEST_F(CCalls, VersionIsThatOfTheLibrary) { EXPECT_EQ(kestrel_version() >> 16, 2u); }

TEST_F(CCalls, ClassesAreCreatedByNameWhateverItsCase) {
  const Object picture = Create("iMGx");
  EXPECT_NE(picture.handle, nullptr);
  kestrel_object* none = nullptr;
  EXPECT_THAT(Outcome(kestrel_create("Nobody", &none)), StartsWith("429 There is no class \"Nobody\""));
  EXPECT_THAT(Outcome(kestrel_create(nullptr, &none)), StartsWith("429 "));
  EXPECT_THAT(Outcome(kestrel_create("ImageView", &none)), StartsWith("429 ")) << "handed out, not created";
  EXPECT_THAT(Outcome(kestrel_create("\xFF\xFE", &none)), HasSubstr("\xEF\xBF\xBD")) << "an error is UTF-8";
  EXPECT_THAT(Outcome(kestrel_create("ImgX", nullptr)), StartsWith("5 "));
  EXPECT_EQ(none, nullptr);
}

TEST_F(CCalls, PropertiesAreReadAndWrittenByName) {
  const Object processing = started();
  const kestrel_value title = Text("Größe");
  EXPECT_EQ(Outcome(kestrel_set(processing, "TITLE", &title)), "");
  EXPECT_EQ(GetText(processing, "title"), "Größe");
  kestrel_value part = Text("Only a part");
  part.as.string.length = 4;
  EXPECT_EQ(Outcome(kestrel_set(processing, "Title", &part)), "");
  EXPECT_EQ(GetText(processing, "Title"), "Only");
  part.as.string = {nullptr, 0};
  EXPECT_EQ(Outcome(kestrel_set(processing, "Title", &part)), "");
  EXPECT_EQ(GetText(processing, "Title"), "");
  EXPECT_THAT(Outcome(kestrel_set(processing, "Visible", &title)), StartsWith("383 "));
  EXPECT_THAT(Outcome(kestrel_set(processing, "Undo", &title)), StartsWith("438 "));
  EXPECT_THAT(Outcome(kestrel_set(processing, "Title", nullptr)), StartsWith("5 "));
}

TEST_F(CCalls, TextsOfTheLibraryEndWithANul) {
  const Object processing = started();
  const kestrel_value title = Text("abc");
  kestrel_set(processing, "Title", &title);
  Result read;
  kestrel_get(processing, "Title", read.place());
  EXPECT_EQ(read.value.as.string.length, 3u);
  EXPECT_STREQ(read.value.as.string.data, "abc");
  EXPECT_NE(read.value.owned, 0);
  kestrel_value_clear(read.place());
  EXPECT_EQ(read.value.type, KESTREL_EMPTY);
  kestrel_value_clear(read.place());
  kestrel_value_clear(nullptr);
}

TEST_F(CCalls, AMemberIsCalledByItsNumber) {
  const Object processing = started();
  std::int32_t title = -1;
  ASSERT_EQ(Outcome(kestrel_find_member(processing, "Title", &title)), "");
  EXPECT_EQ(title, 3) << "numbers never change";
  kestrel_value value = Text("By number");
  EXPECT_EQ(Outcome(kestrel_invoke(processing, title, KESTREL_SET, &value, 1, nullptr, nullptr)), "");
  Result read;
  EXPECT_EQ(Outcome(kestrel_invoke(processing, title, KESTREL_GET, nullptr, 0, nullptr, read.place())), "");
  EXPECT_EQ(read.text(), "By number");
  EXPECT_THAT(Outcome(kestrel_find_member(processing, "Nothing", &title)), StartsWith("438 "));
  EXPECT_THAT(Outcome(kestrel_find_member(processing, nullptr, &title)), StartsWith("438 "));
  EXPECT_THAT(Outcome(kestrel_find_member(processing, "Title", nullptr)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_invoke(processing, 9999, KESTREL_GET, nullptr, 0, nullptr, nullptr)),
              StartsWith("438 "));
  EXPECT_THAT(Outcome(kestrel_invoke(processing, title, 7, nullptr, 0, nullptr, nullptr)), StartsWith("5 "));
}

TEST_F(CCalls, ArgumentsArePositionalAndNamedAndOmitted) {
  const Object processing = started();
  const std::string picture = png();
  Result opened;
  ASSERT_EQ(Call(processing, "OpenImage", {Text(picture.c_str())}, opened.place()), "");
  ASSERT_EQ(opened.value.type, KESTREL_BOOLEAN);
  ASSERT_TRUE(opened.value.as.boolean);

  // Half the width, and the height that keeps the aspect ratio.
  kestrel_value sizes[] = {Number(0), Number(20)};
  const char* const names[] = {"resamplemethod", "Width"};
  EXPECT_EQ(Outcome(kestrel_call(processing, "Resize", sizes, 2, names, nullptr)), "");
  EXPECT_EQ(GetNumber(GetObject(processing, "Image"), "Width"), 20);
  EXPECT_EQ(GetNumber(GetObject(processing, "Image"), "Height"), 15);

  kestrel_value canvas[] = {Number(30), Number(30), OfType(KESTREL_OMITTED), Number(1)};
  const char* const last[] = {nullptr, nullptr, nullptr, "OffsetY"};
  EXPECT_EQ(Outcome(kestrel_call(processing, "ResizeCanvas", canvas, 4, last, nullptr)), "");
  EXPECT_EQ(GetNumber(GetObject(processing, "Image"), "Height"), 30);

  const char* const wrong[] = {"Width", nullptr};
  EXPECT_THAT(Outcome(kestrel_call(processing, "Resize", sizes, 2, wrong, nullptr)), StartsWith("5 "));
  const char* const unknown[] = {"Width", "Depth"};
  EXPECT_THAT(Outcome(kestrel_call(processing, "Resize", sizes, 2, unknown, nullptr)), StartsWith("448 "));
  EXPECT_THAT(Outcome(kestrel_call(processing, "Resize", nullptr, 0, nullptr, nullptr)), StartsWith("449 "));
  EXPECT_THAT(Outcome(kestrel_call(processing, "Undo", sizes, 2, nullptr, nullptr)), StartsWith("450 "));
  EXPECT_THAT(Outcome(kestrel_call(processing, "Resize", sizes, -1, nullptr, nullptr)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_call(processing, "Resize", nullptr, 2, nullptr, nullptr)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_call(processing, "Resize", sizes, 1'000'000, nullptr, nullptr)),
              StartsWith("450 "))
      << "not looked at";
}

TEST_F(CCalls, AnErrorNamesTheArgument) {
  const Object processing = started();
  EXPECT_EQ(Call(processing, "Resize", {Number(1), Text("high")}),
            "13 Argument 2 (Height) of Resize must be a number.");
  EXPECT_EQ(kestrel_last_error()->position, 2);
  EXPECT_STREQ(kestrel_last_error()->source, "ImageProcessing");
  EXPECT_THAT(Call(processing, "Resize", {Number(1), Double(1e300)}), StartsWith("6 "));
  EXPECT_THAT(Call(processing, "Resize", {OfType(KESTREL_NULL)}), StartsWith("94 "));
  EXPECT_EQ(kestrel_last_error()->position, 1);
  EXPECT_THAT(Call(processing, "Resize", {OfType(4711)}), StartsWith("13 Argument 1 of Resize: "));
  EXPECT_EQ(kestrel_last_error()->position, 1);

  kestrel_value bad = OfType(-7);
  const char* const name[] = {"height"};
  EXPECT_THAT(Outcome(kestrel_call(processing, "Resize", &bad, 1, name, nullptr)), StartsWith("13 "));
  EXPECT_EQ(kestrel_last_error()->position, 2);
}

TEST_F(CCalls, InOutArgumentsAreWrittenBack) {
  const Object sink = Create("IImageEvents");
  Handler handler([](kestrel_value* arguments, std::int32_t /*count*/) {
    kestrel_value_set_string(&arguments[0], "chosen.png", KESTREL_TO_NUL);
    kestrel_value_clear(&arguments[1]);
    arguments[1] = Boolean(true);
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(sink, "RequestSaveFilename"), "");
  kestrel_value arguments[] = {Text("old.png"), Boolean(false)};
  EXPECT_EQ(Outcome(kestrel_call(sink, "RequestSaveFilename", arguments, 2, nullptr, nullptr)), "");
  EXPECT_STREQ(arguments[0].as.string.data, "chosen.png");
  EXPECT_NE(arguments[0].owned, 0);
  EXPECT_EQ(arguments[1].type, KESTREL_BOOLEAN);
  EXPECT_EQ(arguments[1].as.boolean, 1);
  kestrel_value_clear(&arguments[0]);
  EXPECT_EQ(handler.calls, 1);

  // By name, in another order.
  kestrel_value named[] = {Boolean(false), Text("old.png")};
  const char* const names[] = {"CancelDefault", "Filename"};
  EXPECT_EQ(Outcome(kestrel_call(sink, "RequestSaveFilename", named, 2, names, nullptr)), "");
  EXPECT_EQ(named[0].as.boolean, 1);
  EXPECT_STREQ(named[1].as.string.data, "chosen.png");
  kestrel_value_clear(&named[1]);
}

TEST_F(CCalls, ArgumentsThatAreNotInOutAreUnchanged) {
  const Object processing = started();
  kestrel_value size = Text("20");
  EXPECT_THAT(Outcome(kestrel_call(processing, "Resize", &size, 1, nullptr, nullptr)), testing::Not(""));
  kestrel_value modal = Number(0);
  EXPECT_EQ(Outcome(kestrel_call(processing, "Show", &modal, 1, nullptr, nullptr)), "");
  EXPECT_EQ(modal.type, KESTREL_INT32);
  EXPECT_EQ(size.type, KESTREL_STRING);
  EXPECT_EQ(size.owned, 0);
}

TEST_F(CCalls, DefaultMembersTakeArguments) {
  const Object processing = started();
  Result command;
  EXPECT_EQ(Call(processing, "Commands", {Text("btnFileOpen")}, command.place()), "");
  ASSERT_EQ(command.value.type, KESTREL_OBJECT);
  const kestrel_class* description = nullptr;
  EXPECT_EQ(Outcome(kestrel_class_of(command.value.as.object, &description)), "");
  EXPECT_STREQ(description->name, "Command");
}

TEST_F(CCalls, CollectionsAreEnumerated) {
  const Object processing = started();
  const Object bars = GetObject(processing, "CommandBars");
  const std::int32_t count = GetNumber(bars, "Count");
  ASSERT_GT(count, 1);
  std::int32_t position = 0;
  std::int32_t found = 0;
  for (;;) {
    Result element;
    ASSERT_EQ(Outcome(kestrel_next(bars, &position, element.place())), "");
    if (position < 0) {
      EXPECT_EQ(element.value.type, KESTREL_EMPTY);
      break;
    }
    EXPECT_EQ(position, ++found);
    EXPECT_EQ(element.value.type, KESTREL_OBJECT);
  }
  EXPECT_EQ(found, count);
  Result element;
  EXPECT_EQ(Outcome(kestrel_next(bars, &position, element.place())), "") << "the end stays the end";
  EXPECT_EQ(position, -1);
  position = 0x7FFFFFFF;
  EXPECT_EQ(Outcome(kestrel_next(bars, &position, element.place())), "");
  EXPECT_EQ(position, -1);
  EXPECT_THAT(Outcome(kestrel_next(processing, &position, element.place())), StartsWith("438 "));
  EXPECT_THAT(Outcome(kestrel_next(bars, nullptr, element.place())), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_next(bars, &position, nullptr)), StartsWith("5 "));
}

TEST_F(CCalls, NothingIsAnObjectThatIsNull) {
  const Object processing = started();
  Result image;
  EXPECT_EQ(Outcome(kestrel_get(processing, "Image", image.place())), "");
  EXPECT_EQ(image.value.type, KESTREL_OBJECT);
  EXPECT_EQ(image.value.as.object, nullptr);
  EXPECT_EQ(image.value.owned, 0);
}

TEST_F(CCalls, TwoHandlesOfOneObjectAreTheSame) {
  const Object processing = started();
  const Object control = GetObject(processing, "Control");
  const Object again = GetObject(processing, "Control");
  EXPECT_NE(control.handle, again.handle);
  std::int32_t same = -1;
  EXPECT_EQ(Outcome(kestrel_is_same(control, again, &same)), "");
  EXPECT_EQ(same, 1);
  EXPECT_EQ(Outcome(kestrel_is_same(control, processing, &same)), "");
  EXPECT_EQ(same, 0);
  EXPECT_THAT(Outcome(kestrel_is_same(control, nullptr, &same)), StartsWith("91 "));
  EXPECT_THAT(Outcome(kestrel_is_same(control, again, nullptr)), StartsWith("5 "));
}

TEST_F(CCalls, ATextMayBeTheValuesOwn) {
  Result value;
  EXPECT_EQ(Outcome(kestrel_value_set_string(value.place(), "kestrel", KESTREL_TO_NUL)), "");
  EXPECT_EQ(Outcome(kestrel_value_set_string(value.place(), value.value.as.string.data + 3, 4)), "");
  EXPECT_EQ(value.text(), "trel");
  EXPECT_EQ(Outcome(kestrel_value_set_string(value.place(), nullptr, KESTREL_TO_NUL)), "");
  EXPECT_EQ(value.text(), "");
  EXPECT_THAT(Outcome(kestrel_value_set_string(value.place(), nullptr, 3)), StartsWith("5 "));
  EXPECT_THAT(Outcome(kestrel_value_set_string(nullptr, "a", 1)), StartsWith("5 "));
}

TEST_F(CCalls, AQuestionWithoutAUserIsCanceled) {
  const Object processing = started();
  testing::internal::CaptureStderr();
  Result opened;
  EXPECT_EQ(Call(processing, "OpenImage", {Text(file("missing.png").c_str())}, opened.place()), "");
  EXPECT_FALSE(opened.value.as.boolean);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), StartsWith("kestrel: "));
}

}  // namespace
}  // namespace kestrel::ctest
