#include "apps/common/script/ScriptBoxes.h"

#include <gmock/gmock.h>

#include <vector>

#include "base/RuntimeError.h"

namespace kestrel::app {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The boxes of a desktop with a user who answers "Retry" and types "abc".
class AttendedBoxes final : public UserInterface {
 public:
  explicit AttendedBoxes(std::vector<std::string>& shown) : shown_(shown) {}

  std::int32_t MessageBox(const std::string& text, std::int32_t, const std::string&, WindowHandle) override {
    shown_.push_back(text);
    return 4;
  }
  std::string InputBox(const std::string& prompt, const std::string&, const std::string&, const Point*,
                       WindowHandle) override {
    shown_.push_back(prompt);
    return "abc";
  }
  void AboutBox(const std::string& title, const std::string&, const PicturePtr&, WindowHandle) override {
    shown_.push_back(title);
  }

 private:
  std::vector<std::string>& shown_;
};

class Boxes : public testing::Test {
 protected:
  std::int32_t ask(std::int32_t style) { return boxes.MessageBox("Really?\r\nYes.", style, "Title", 0); }
  /// What a box without an answer writes to standard error.
  std::string errorsOf(std::int32_t style) {
    testing::internal::CaptureStderr();
    ask(style);
    return testing::internal::GetCapturedStderr();
  }

  BoxScript script{.program = "kestrel-editor"};
  std::vector<std::string> shown;
  ScriptBoxes boxes{script, std::make_unique<AttendedBoxes>(shown)};
};

TEST_F(Boxes, GetTheAnswersOfTheScriptInOrder) {
  script.unattended = true;
  script.answers = {kAnswerNo, kAnswerYes};
  EXPECT_EQ(ask(kBoxYesNoCancel), kAnswerNo);
  EXPECT_EQ(ask(kBoxYesNoCancel + kBoxQuestion), kAnswerYes);
  EXPECT_EQ(script.unexpected, 0);
  EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Boxes, WithoutAnAnswerAreClosedAsByEscapeWithTheirTextOnStandardError) {
  script.unattended = true;
  const std::pair<std::int32_t, std::int32_t> escapes[] = {{0, 1}, {1, 2}, {2, 3}, {3, 2}, {4, 7}, {5, 2}};
  for (const auto& [style, answer] : escapes) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(ask(style + kBoxExclamation), answer) << "button set " << style;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "kestrel-editor: Title: Really? Yes.\n");
  }
  EXPECT_EQ(script.unexpected, 6);
}

TEST_F(Boxes, AreOneLineWithABlankForEachLineBreak) {
  testing::internal::CaptureStderr();
  reportFailure("kestrel-editor", "one\r\ntwo\rthree\nfour\r\rfive");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "kestrel-editor: one two three four  five\n");
}

TEST_F(Boxes, OneThatTheScriptPicturesIsShown) {
  script.unattended = true;
  script.showsNext = true;
  boxes.AboutBox("About", "1.0", nullptr, 0);
  EXPECT_THAT(shown, ElementsAre("About"));
  script.showsNext = true;
  EXPECT_EQ(ask(5), 4);
  EXPECT_THAT(shown, ElementsAre("About", "Really?\r\nYes."));
  EXPECT_EQ(errorsOf(0), "kestrel-editor: Title: Really? Yes.\n") << "only that one";
  EXPECT_THAT(shown, testing::SizeIs(2));
}

TEST_F(Boxes, AnAnswerThatTheBoxLacksIsReported) {
  script.unattended = true;
  script.answers = {kAnswerYes};
  EXPECT_EQ(errorsOf(1), "kestrel-editor: Title: Really? Yes. (The box has no button \"Yes\".)\n");
  EXPECT_EQ(script.unexpected, 1);
  EXPECT_THAT(script.answers, IsEmpty());
}

TEST_F(Boxes, AreTheDesktopsForAUser) {
  EXPECT_EQ(ask(5), 4);
  EXPECT_EQ(boxes.InputBox("Name", "Title", {}, nullptr, 0), "abc");
  boxes.AboutBox("About", "1.0", nullptr, 0);
  EXPECT_THAT(shown, ElementsAre("Really?\r\nYes.", "Name", "About"));
  EXPECT_EQ(script.unexpected, 0);
}

TEST_F(Boxes, UnattendedInputIsCanceledAndUnexpected) {
  script.unattended = true;
  testing::internal::CaptureStderr();
  EXPECT_EQ(boxes.InputBox("Name", "Title", "default", nullptr, 0), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "kestrel-editor: Title: Name\n");
  EXPECT_EQ(script.unexpected, 1);
  EXPECT_THAT(shown, IsEmpty());
}

TEST(Answers, AreTheEnglishTextsOfTheButtons) {
  const char* const buttons[] = {"OK", "Cancel", "Abort", "Retry", "Ignore", "Yes", "No"};
  for (std::int32_t i = 0; i < 7; ++i) EXPECT_EQ(answerOf(buttons[i]), i + 1);
  EXPECT_EQ(answerOf("yes"), kAnswerYes);
  EXPECT_THROW(answerOf("Maybe"), RuntimeError);
}

}  // namespace
}  // namespace kestrel::app
