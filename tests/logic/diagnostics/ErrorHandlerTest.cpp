#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "Diagnostics.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"

namespace kestrel {
namespace {

/// A class with fields and three procedures, each of which calls the next.
class Painter {
 public:
  std::int32_t Outer(const std::string& Filename) {
    std::int32_t Result = 7;
    bool CameBack = false;
    try {
      Middle();
      CameBack = true;
    } catch (...) {
      QDK_TRAILER(Outer, QDK_PARAMETERS(Filename), QDK_LOCALS(CameBack, Result));
    }
    return Result;
  }

  void Middle() {
    try {
      Inner(4);
      reachedEnd = true;
    } catch (...) {
      QDK_TRAILER(Middle, QDK_PARAMETERS(), QDK_LOCALS());
    }
  }

  void Inner(std::int32_t Count) {
    std::int32_t i = 0;
    std::string Text;
    try {
      innerLine = __LINE__ + 1;
      throw RuntimeError(err::kDiskFull, "The disk is full.", "engine");
    } catch (...) {
      QDK_TRAILER(Inner, QDK_PARAMETERS(Count), QDK_LOCALS(i, Text));
    }
  }

  /// Forwards, so its errors reach the caller.
  std::int32_t Forwarding() { return Outer(""); }

  bool reachedEnd = false;
  std::int32_t innerLine = 0;
  std::int32_t pWidth = 640;

 private:
  std::string qdkDumpModuleVariables() const { return QDK_FIELDS(pWidth); }
};

void InNoClass() {
  try {
    throw RuntimeError(err::kInvalidCall, "Invalid.");
  } catch (...) {
    QDK_TRAILER(InNoClass, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// Can't be rendered: enumerating its elements fails.
class BrokenList : public Object {
 public:
  std::string TypeName() const override { return "BrokenList"; }
  bool Enumerate(const std::function<void(const Variant&)>& visit) const override {
    visit(1);
    throw RuntimeError(err::kInternal, "The list is broken.");
  }
};

void WithABrokenLocal() {
  const BrokenList Items;
  try {
    throw RuntimeError(err::kDiskFull, "The disk is full.");
  } catch (...) {
    QDK_TRAILER(WithABrokenLocal, QDK_PARAMETERS(), QDK_LOCALS(Items));
  }
}

std::int32_t callerOfTheBrokenLocalLine = 0;

void CallerOfTheBrokenLocal() {
  try {
    callerOfTheBrokenLocalLine = __LINE__ + 1;
    WithABrokenLocal();
  } catch (...) {
    QDK_TRAILER(CallerOfTheBrokenLocal, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// Records the calls of the reporting object, and runs a hook of the test when one is created.
class RecordingFactory : public ObjectFactory {
 public:
  std::unique_ptr<ErrorReporter> CreateErrorReporter(const std::string&) override {
    if (const auto doing = std::exchange(onFirstSearch, nullptr)) doing();
    if (!present) throw RuntimeError(err::kCannotCreateObject, "Not installed.");
    log += "create ";
    return std::make_unique<Reporter>(*this);
  }

  bool present = false;
  std::function<void()> onFirstSearch;
  std::string log;

 private:
  class Reporter : public ErrorReporter {
   public:
    explicit Reporter(RecordingFactory& owner) : owner_(owner) {}
    void ErrorHandler(std::int32_t&, const std::string&, const std::string&, const std::string&,
                      const std::string&, std::int32_t&, const std::string&, const std::string&) override {
      owner_.log += "ErrorHandler ";
    }
    std::string Action() const override {
      owner_.log += "Action ";
      return "continue";
    }

   private:
    RecordingFactory& owner_;
  };
};

class RecordingPlatform : public fakes::FakePlatform {
 public:
  RecordingFactory recording;
  kestrel::ObjectFactory& ObjectFactory() override { return recording; }
};

class ErrorHandler : public Diagnostics {
 protected:
  Painter painter_;
};

TEST_F(ErrorHandler, WithoutAReportingObjectShowsOneBoxAndTheCallerGoesOn) {
  EXPECT_EQ(painter_.Outer("a.png"), 7);
  EXPECT_TRUE(painter_.reachedEnd);
  ASSERT_EQ(boxes().size(), 1u);
  EXPECT_EQ(boxes()[0].title, "Application Error");
  EXPECT_EQ(boxes()[0].style, 16);
  EXPECT_EQ(boxes()[0].text,
            "KestrelLib2 has encountered a problem. We are sorry for the inconvenience.\r\n\r\n"
            "Module: ErrorHandlerTest\r\n"
            "Procedure: Inner\r\n"
            "Line Number: " +
                std::to_string(5 * painter_.innerLine) +
                "\r\n\r\n"
                "The disk is full. (61)");
  EXPECT_EQ(platform_.factory.asked, std::vector<std::string>{"BrindleError.Error"});
}

TEST_F(ErrorHandler, KeepsTheCapturedError) {
  painter_.Inner(1);
  EXPECT_EQ(state().qdkErrorNumber, 61);
  EXPECT_EQ(state().qdkErrorDescription, "The disk is full.");
  EXPECT_EQ(state().qdkErrorLine, 5 * painter_.innerLine);
  EXPECT_EQ(state().qdkErrorSource, "engine");
  EXPECT_EQ(state().qdkVariableDump, "<i>0</i>\r\n<Text></Text>\r\n");
}

TEST_F(ErrorHandler, PassesEightArgumentsToTheReportingObject) {
  platform_.factory.present = true;
  EXPECT_THROW(painter_.Inner(4), RuntimeError);
  ASSERT_EQ(reports().size(), 1u);
  const fakes::Report& report = reports()[0];
  EXPECT_EQ(report.number, 61);
  EXPECT_EQ(report.project, "KestrelLib2");
  EXPECT_EQ(report.module, "ErrorHandlerTest");
  EXPECT_EQ(report.procedure, "Inner");
  EXPECT_EQ(report.description, "The disk is full.");
  EXPECT_EQ(report.line, 5 * painter_.innerLine);
  EXPECT_EQ(report.variables,
            "<Variables>\r\n"
            "<LocalVariables>\r\n"
            "<i>0</i>\r\n<Text></Text>\r\n"
            "</LocalVariables>\r\n"
            "<ModuleVariables>\r\n"
            "<pWidth>640</pWidth>\r\n"
            "</ModuleVariables>\r\n"
            "<GlobalVariables>\r\n" +
                modTollgarthSupport::qdkDumpGlobals() +
                "</GlobalVariables>\r\n"
                "</Variables>\r\n"
                "<Parameters>\r\n"
                "<Count>4</Count>\r\n"
                "</Parameters>");
  EXPECT_EQ(report.version, "2.7.31");
  EXPECT_TRUE(boxes().empty());
}

TEST_F(ErrorHandler, PassesTheReportThenReadsTheAction) {
  RecordingPlatform platform;
  platform.lines = &lines_;
  platform.recording.present = true;
  modTollgarthSupport::Attach(&platform);
  EXPECT_THROW(painter_.Inner(4), RuntimeError);
  EXPECT_EQ(platform.recording.log, "create ErrorHandler Action ");
  modTollgarthSupport::Attach(&platform_);
}

TEST_F(ErrorHandler, ReportsItsErrorEvenIfReportingFails) {
  RecordingPlatform platform;
  platform.lines = &lines_;
  platform.recording.onFirstSearch = InNoClass;
  modTollgarthSupport::Attach(&platform);
  painter_.Inner(1);
  ASSERT_EQ(platform.boxes.boxes.size(), 2u);
  EXPECT_TRUE(platform.boxes.boxes[0].text.ends_with("Invalid. (5)"));
  EXPECT_TRUE(platform.boxes.boxes[1].text.ends_with("The disk is full. (61)"))
      << platform.boxes.boxes[1].text;
  modTollgarthSupport::Attach(&platform_);
}

TEST_F(ErrorHandler, AFailureOfATrailerGoesToTheCallersTrailer) {
  CallerOfTheBrokenLocal();
  ASSERT_EQ(boxes().size(), 1u);
  EXPECT_NE(boxes()[0].text.find("Procedure: CallerOfTheBrokenLocal\r\nLine Number: " +
                                 std::to_string(5 * callerOfTheBrokenLocalLine) + "\r\n"),
            std::string::npos)
      << boxes()[0].text;
  EXPECT_TRUE(boxes()[0].text.ends_with("The list is broken. (51)"));
}

TEST_F(ErrorHandler, KeepsItsFieldsUntilTheNextError) {
  painter_.Inner(1);
  InNoClass();
  EXPECT_EQ(state().qdkErrorNumber, 5);
  EXPECT_EQ(state().qdkErrorDescription, "Invalid.");
  EXPECT_EQ(state().qdkErrorSource, "");
}

TEST_F(ErrorHandler, HasItsOwnFieldsOnEachThread) {
  painter_.Inner(1);
  std::int32_t number = -1;
  bool attached = true;
  std::thread([&] {
    number = state().qdkErrorNumber;
    attached = modTollgarthSupport::AttachedPlatform() != nullptr;
  }).join();
  EXPECT_EQ(number, 0);
  EXPECT_FALSE(attached);
  EXPECT_EQ(state().qdkErrorNumber, 61);
}

TEST_F(ErrorHandler, Raises91OnAThreadWithoutAPlatform) {
  modTollgarthSupport::Attach(nullptr);
  try {
    modTollgarthSupport::qdkErrorHandler(5, "M", "P", "Invalid.", 5, "{None}", "{None}", "{None}");
    FAIL() << "there is nobody to report to";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kObjectNotSet);
  }
}

TEST_F(ErrorHandler, WritesNoneForMissingVariables) {
  platform_.factory.present = true;
  EXPECT_THROW(InNoClass(), RuntimeError);
  const std::string& text = reports().at(0).variables;
  EXPECT_EQ(text.find("<Variables>\r\n<LocalVariables>\r\n{None}</LocalVariables>\r\n"
                      "<ModuleVariables>\r\n{None}</ModuleVariables>\r\n<GlobalVariables>\r\n"),
            0u);
  EXPECT_TRUE(text.ends_with("</GlobalVariables>\r\n</Variables>\r\n<Parameters>\r\n{None}</Parameters>"));
}

TEST_F(ErrorHandler, ThenRaises65535ThroughEachLevel) {
  platform_.factory.present = true;
  try {
    painter_.Forwarding();
    FAIL() << "the last level has no trailer";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 65535);
    EXPECT_EQ(error.Description(), "");
    EXPECT_EQ(error.Source(), "");
  }
  EXPECT_FALSE(painter_.reachedEnd);
  ASSERT_EQ(reports().size(), 3u);
  EXPECT_EQ(reports()[0].procedure, "Inner");
  EXPECT_EQ(reports()[0].number, 61);
  EXPECT_EQ(reports()[1].procedure, "Middle");
  EXPECT_EQ(reports()[1].number, 65535);
  EXPECT_EQ(reports()[1].description, "");
  EXPECT_EQ(reports()[2].procedure, "Outer");
  EXPECT_EQ(reports()[2].number, 65535);
  EXPECT_EQ(reports()[2].variables.find("<Variables>\r\n<LocalVariables>\r\n<CameBack>False</CameBack>\r\n"),
            0u);
  EXPECT_EQ(platform_.factory.asked.size(), 3u);
}

TEST_F(ErrorHandler, RethrowsAnErrorThatItCannotReport) {
  modTollgarthSupport::Attach(nullptr);
  try {
    painter_.Inner(1);
    FAIL() << "there is nobody to report to";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kDiskFull);
  }
}

TEST_F(ErrorHandler, ShowsTheBoxOfAnErrorDuringABox) {
  // The second error overwrites the fields while the first one's box is open; the first text is already
  // built.
  class Nested : public fakes::FakeUserInterface {
   public:
    std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                            WindowHandle owner) override {
      if (boxes.empty()) {
        boxes.push_back({text, style, title});
        InNoClass();
        return kAnswerOK;
      }
      return FakeUserInterface::MessageBox(text, style, title, owner);
    }
  };
  class WithNested : public fakes::FakePlatform {
   public:
    Nested nested;
    kestrel::UserInterface& UserInterface() override { return nested; }
  } platform;
  platform.lines = &lines_;
  modTollgarthSupport::Attach(&platform);
  painter_.Inner(1);
  ASSERT_EQ(platform.nested.boxes.size(), 2u);
  EXPECT_TRUE(platform.nested.boxes[0].text.ends_with("The disk is full. (61)"));
  EXPECT_TRUE(platform.nested.boxes[1].text.ends_with("Invalid. (5)"));
  modTollgarthSupport::Attach(&platform_);
}

TEST_F(ErrorHandler, ResumesAfterAFailingStatement) {
  std::string done;
  const auto step = [&done](const char* name, bool fails) {
    if (fails) throw RuntimeError(err::kInvalidCall, "Invalid.");
    done += name;
  };
  QDK_RESUME_NEXT(step("a", false));
  QDK_RESUME_NEXT(step("b", true));
  QDK_RESUME_NEXT(step("c", false));
  EXPECT_EQ(done, "ac");
  EXPECT_TRUE(boxes().empty());
}

}  // namespace
}  // namespace kestrel
