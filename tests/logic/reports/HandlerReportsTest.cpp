#include <algorithm>
#include <fstream>
#include <functional>
#include <ostream>

#include "Reports.h"
#include "apps/common/window/EditorWindow.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/TextBox.h"
#include "platform/headless/controls/TextBox.h"

namespace kestrel {
namespace {

/// An action in the rotate dialog that makes one of its handlers fail.
struct DialogCase {
  const char* procedure;
  const char* file;
  const char* statement;
  std::function<void(ReportingPlatform&, Form&)> fail;
};

void PrintTo(const DialogCase& chosen, std::ostream* out) { *out << chosen.procedure; }

headless::ImageView& pane(Form& form, const char* name) {
  return Bind<headless::ImageView>(Bind<Site>(form, "Preview"), name);
}

void failAtScroll(Form& form, const char* from, const char* to) {
  const Connection failing = pane(form, to).ScrollChanged.Connect([] { failByChoice(); });
  // Large enough that there is something to scroll.
  for (const char* name : {from, to}) pane(form, name).Zoom(20);
  pane(form, from).ScrollLeft(pane(form, from).ScrollLeft() + 30);
}

const DialogCase kDialogCases[] = {
    {"chkUseOriginalImage_Click", "PreviewDialog.cpp", "UpdatePreview()",
     [](ReportingPlatform& platform, Form& form) {
       platform.failing = "FormUtility";
       Bind<CheckBox>(form, "chkUseOriginalImage").Value(1);
     }},
    {"optDirection_Click", "frmRotate.cpp", "UpdatePreview()",
     [](ReportingPlatform& platform, Form& form) {
       platform.failing = "FormUtility";
       Bind<OptionButton>(form, "optDirection", 0).Value(true);
     }},
    {"optDegree_Click", "frmRotate.cpp", "UpdatePreview()",
     [](ReportingPlatform& platform, Form& form) {
       platform.failing = "FormUtility";
       Bind<OptionButton>(form, "optDegree", 1).Value(true);
     }},
    {"txtDegrees_GotFocus", "frmRotate.cpp", "SelectAllText(txtDegrees)",
     [](ReportingPlatform& platform, Form& form) {
       platform.failing = "FormUtility";
       Bind<TextBox>(form, "txtDegrees").GotFocus();
     }},
    {"Form_Activate", "DialogBase.cpp", "Screen().MousePointer",
     [](ReportingPlatform&, Form&) { /* failed when it was opened */ }},
};

class DialogReports : public EditorReporting, public testing::WithParamInterface<DialogCase> {
 protected:
  static std::string sourceLine(const std::string& file, std::int32_t line) {
    std::ifstream source(std::string(SOURCE_FOLDER "/dialogs/") + file);
    std::string text;
    for (std::int32_t i = 0; i < line; ++i) {
      if (!std::getline(source, text)) return {};
    }
    return text;
  }
};

TEST_P(DialogReports, NameTheDialogAndItsHandlerAndListItsFields) {
  const DialogCase& chosen = GetParam();
  ASSERT_TRUE(editor_->OpenImage(picture_));
  platform_->reporterInstalled = true;
  if (std::string(chosen.procedure) == "Form_Activate") platform_->failing = "Screen";
  user().uses("frmRotate", [&](Form& form) {
    // The action of the headless user is where a toolkit would catch the error.
    QDK_RESUME_NEXT(chosen.fail(*platform_, form));
    platform_->failing.clear();
    form.Hide();
  });
  QDK_RESUME_NEXT(editor_->ShowRotateDialog());

  const auto report = std::ranges::find(platform_->reports, chosen.procedure, &fakes::Report::procedure);
  ASSERT_NE(report, platform_->reports.end());
  EXPECT_EQ(report->module, "frmRotate");
  EXPECT_NE(report->variables.find("<ModuleVariables>\r\n<Success>False</Success>\r\n"
                                   "<SafeToUnload>False</SafeToUnload>\r\n<ResultData></ResultData>\r\n"
                                   "<Angle>"),
            report->variables.npos)
      << report->variables;
  const std::int32_t line = report->line % 50'000 / 5;
  EXPECT_NE(sourceLine(chosen.file, line).find(chosen.statement), std::string::npos)
      << chosen.file << ":" << line << " is " << sourceLine(chosen.file, line);
  EXPECT_TRUE(user().boxes().empty()) << "the reporting object replaces the box";
}

INSTANTIATE_TEST_SUITE_P(Of, DialogReports, testing::ValuesIn(kDialogCases),
                         [](const auto& chosen) { return std::string(chosen.param.procedure); });

TEST_F(EditorReporting, ADialogThatCannotLoadReportsItsOwnStep) {
  platform_->reporterInstalled = true;
  platform_->failing = "WindowFunctions";
  EXPECT_THROW(editor_->ShowRotateDialog(), RuntimeError);
  ASSERT_FALSE(platform_->reports.empty());
  EXPECT_EQ(platform_->reports[0].module, "frmRotate");
  EXPECT_EQ(platform_->reports[0].procedure, "Form_Load");
  EXPECT_EQ(platform_->reports[0].line / 50'000, 0) << "the dialog's own file";
}

TEST_F(EditorReporting, LinkedScrollingReportsUnderThePaneThatScrolled) {
  ASSERT_TRUE(editor_->OpenImage(picture_));
  user().uses("frmRotate", [](Form& form) {
    failAtScroll(form, "igxOriginal", "igxPreview");
    form.Hide();
  });
  user().answers(kAnswerOK);
  editor_->ShowRotateDialog();
  user().uses("frmRotate", [](Form& form) {
    failAtScroll(form, "igxPreview", "igxOriginal");
    form.Hide();
  });
  user().answers(kAnswerOK);
  editor_->ShowRotateDialog();
  ASSERT_EQ(user().boxes().size(), 2u);
  EXPECT_NE(user().boxes()[0].text.find("Module: Preview\r\nProcedure: igxOriginal_Scroll\r\n"),
            std::string::npos);
  EXPECT_NE(user().boxes()[1].text.find("Module: Preview\r\nProcedure: igxPreview_Scroll\r\n"),
            std::string::npos);
}

TEST_F(EditorReporting, APreviewListsItsFieldsInTheirOrder) {
  ASSERT_TRUE(editor_->OpenImage(picture_));
  platform_->reporterInstalled = true;
  user().uses("frmRotate", [](Form& form) {
    QDK_RESUME_NEXT(failAtScroll(form, "igxOriginal", "igxPreview"));
    form.Hide();
  });
  editor_->ShowRotateDialog();
  const auto report = std::ranges::find(platform_->reports, "igxOriginal_Scroll", &fakes::Report::procedure);
  ASSERT_NE(report, platform_->reports.end());
  EXPECT_NE(report->variables.find("<ModuleVariables>\r\n<pUseOriginal>False</pUseOriginal>\r\n"
                                   "<mLinkedScrolling>True</mLinkedScrolling>\r\n"
                                   "<pOriginalPicture>{ImageView}</pOriginalPicture>\r\n"
                                   "<iScrolling>True</iScrolling>\r\n"),
            report->variables.npos)
      << report->variables;
}

TEST_F(EditorReporting, CommandsReportAsTheDispatcher) {
  auto& suite = Bind<headless::Moorage>(*site_, "mrgUI");
  user().answers(kAnswerOK);
  platform_->failing = "App";
  suite.CommandClick(suite.Commands()("btnHelpAbout"));
  platform_->failing.clear();
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_NE(user().boxes()[0].text.find("Module: ImageProcessingCtl\r\nProcedure: mrgUI_CommandClick\r\n"),
            std::string::npos)
      << user().boxes()[0].text;
}

TEST_F(EditorReporting, AReportedErrorPassesAHandlerWithItsOwnBox) {
  ASSERT_TRUE(editor_->OpenImage(picture_));
  editor_->SetSelection(5, 5, 10, 10);
  platform_->reporterInstalled = true;
  const Connection failing = editor_->Change.Connect([] { failByChoice(); });
  auto& suite = Bind<headless::Moorage>(*site_, "mrgUI");
  // The crop changes the picture, which notifies the host, which fails.
  EXPECT_THROW(suite.CommandClick(suite.Commands()("btnImageCrop")), RuntimeError);

  std::vector<std::pair<std::string, std::int32_t>> levels;
  for (const auto& report : platform_->reports) levels.emplace_back(report.procedure, report.number);
  const std::vector<std::pair<std::string, std::int32_t>> expected{
      {"Changed", 51}, {"igxImage_Changed", 65535}, {"mrgUI_CommandClick", 65535}};
  EXPECT_EQ(levels, expected);
  EXPECT_TRUE(user().boxes().empty()) << user().boxes()[0].text;
}

class ProcessStart : public Reports {};

TEST_F(ProcessStart, BeginsWithTheDiagnostics) {
  modTollgarthSupport::State() = {};
  user().answers(kAnswerOK);
  platform_->failing = "WindowPositions";  // the first step after them
  modProcessing::Main();
  platform_->failing.clear();
  EXPECT_TRUE(modTollgarthSupport::State().qdkHasInitialised);
  EXPECT_NE(modTollgarthSupport::State().qdkDebugClient, nullptr);
  ASSERT_EQ(user().boxes().size(), 1u);
}

class WindowReports : public Reports {};

TEST_F(WindowReports, OfTheEditorsWindowNameTheWindow) {
  user().answers(kAnswerOK);
  platform_->failing = "WindowPositions";
  app::EditorWindow window([] {});
  window.form().Show();
  platform_->failing.clear();
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_NE(user().boxes()[0].text.find("Module: frmImageEditor\r\nProcedure: Form_Load\r\n"),
            std::string::npos)
      << user().boxes()[0].text;

  user().answers(kAnswerOK);
  platform_->failing = "WindowPositions";
  window.form().Unload();
  platform_->failing.clear();
  ASSERT_EQ(user().boxes().size(), 2u);
  EXPECT_NE(user().boxes()[1].text.find("Module: frmImageEditor\r\nProcedure: Form_QueryUnload\r\n"),
            std::string::npos)
      << user().boxes()[1].text;
}

}  // namespace
}  // namespace kestrel
