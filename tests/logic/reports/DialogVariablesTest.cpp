// The variables that a report of a dialog's procedure lists: its parameters, its locals and the dialog's
// fields.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>

#include "Reports.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {
namespace {

/// A procedure of a dialog that fails, and what its report lists. A bar ends each line.
struct Case {
  const char* name;
  const char* form;
  const char* procedure;
  std::function<void(IImageProcessingCtl&)> show;
  std::function<void(ReportingPlatform&, Form&)> fail;
  std::string parameters, locals, fields;
};

void PrintTo(const Case& chosen, std::ostream* out) { *out << chosen.name; }

TextBox& field(Form& form, std::int32_t index) { return Bind<TextBox>(form, "txtField", index); }
void pressOK(Form& form) { Bind<CommandButton>(form, "cmdAction", 0).Press(); }

const std::string kNew =
    "<Success>False</Success>|<SafeToUnload>False</SafeToUnload>|<ResultData></ResultData>|";
const std::string kAccepted =
    "<Success>True</Success>|<SafeToUnload>False</SafeToUnload>|<ResultData></ResultData>|";
const std::string kSource = "<Source>{ImageProcessingCtl}</Source>|";

const Case kCases[] = {
    {"Resize", "frmResize", "cmdAction_Click", [](IImageProcessingCtl& editor) { editor.ShowResizeDialog(); },
     [](ReportingPlatform& platform, Form& form) {
       Bind<CheckBox>(form, "chkAspect").Value(0);
       field(form, 0).Text("20");
       field(form, 1).Text("10");
       platform.storeFailsOnce = true;
       pressOK(form);
     },
     "<Index>0</Index>|", "<Width>20</Width>|<Height>10</Height>|", kAccepted + kSource},
    {"ResizeBox", "frmResize", "txtField_Change",
     [](IImageProcessingCtl& editor) { editor.ShowResizeDialog(); },
     [](ReportingPlatform&, Form& form) { field(form, 1).Text("1e99"); }, "<Index>1</Index>|", "{None}",
     kNew + kSource},
    {"Canvas", "frmResizeCanvas", "zCalcPosition",
     [](IImageProcessingCtl& editor) { editor.ShowResizeCanvasDialog(); },
     [](ReportingPlatform&, Form& form) {
       Bind<CheckBox>(form, "chkAspect").Value(0);
       Bind<CommandButton>(form, "btnPlacement", 5).Press();
       field(form, 0).Text("50");
       field(form, 1).Text("99999999999");
     },
     "{None}", "<X>0</X>|<Y>0</Y>|<NewWidth>50</NewWidth>|<NewHeight>0</NewHeight>|",
     kNew + kSource + "<iPlacement>5</iPlacement>|"},
    {"CanvasOK", "frmResizeCanvas", "cmdAction_Click",
     [](IImageProcessingCtl& editor) { editor.ShowResizeCanvasDialog(); },
     [](ReportingPlatform& platform, Form& form) {
       Bind<CheckBox>(form, "chkAspect").Value(0);
       Bind<CommandButton>(form, "btnPlacement", 0).Press();
       field(form, 0).Text("50");
       field(form, 1).Text("60");
       platform.storeFailsOnce = true;
       pressOK(form);
     },
     "<Index>0</Index>|", "<Width>50</Width>|<Height>60</Height>|",
     kAccepted + kSource + "<iPlacement>0</iPlacement>|"},
    {"Shadow", "frmDropShadow", "UpdatePreview",
     [](IImageProcessingCtl& editor) { editor.ShowDropShadowDialog(); },
     [](ReportingPlatform&, Form& form) {
       field(form, 0).Text("7");
       field(form, 3).Text("256");
     },
     "{None}",
     "<mask>0</mask>|<from>{Colour}</from>|<to>{Colour}</to>|<shadow>{Colour}</shadow>|"
     "<horizontal>7</horizontal>|<vertical>5</vertical>|<opacity>256</opacity>|<blur>128</blur>|",
     "<Success>False</Success>|<SafeToUnload>False</SafeToUnload>|"
     "<AllowMaskSelection>False</AllowMaskSelection>|<ResultData></ResultData>|"},
    {"ContouredShadow", "frmDropShadow", "cpkColor_Change",
     [](IImageProcessingCtl& editor) { editor.ShowMaskedDropShadowDialog(); },
     [](ReportingPlatform& platform, Form& form) {
       platform.failing = "FormUtility";
       Bind<ColorPicker>(form, "cpkColor", 1).Value(0x0000FE);
     },
     "<Index>1</Index>|<NewColor>254</NewColor>|", "{None}",
     "<Success>False</Success>|<SafeToUnload>False</SafeToUnload>|"
     "<AllowMaskSelection>True</AllowMaskSelection>|<ResultData></ResultData>|"},
    {"Flatten", "frmFlattenAlpha", "cpkColor_Change",
     [](IImageProcessingCtl& editor) { editor.ShowFlattenAlphaDialog(); },
     [](ReportingPlatform& platform, Form& form) {
       platform.failing = "FormUtility";
       Bind<ColorPicker>(form, "cpkColor").Value(0x0000FE);
     },
     "<NewColor>254</NewColor>|", "{None}", kNew},
    {"Options", "frmOptions", "cmdAction_Click", [](IImageProcessingCtl& editor) { editor.ShowOptions(); },
     [](ReportingPlatform&, Form& form) {
       field(form, 0).Text("99999999999");
       pressOK(form);
     },
     "<Index>0</Index>|", "<Percentage>True</Percentage>|", kNew},
    {"OptionsSample", "frmOptions", "UpdatePreview",
     [](IImageProcessingCtl& editor) { editor.ShowOptions(); },
     [](ReportingPlatform&, Form& form) { Bind<ComboBox>(form, "cboGridSize").ListIndex(-1); }, "{None}",
     "<Canvas>{Nothing}</Canvas>|<Y>0</Y>|<X>0</X>|<Size>0</Size>|", kNew},
    {"Export", "frmExport", "cmdBrowse_Click", [](IImageProcessingCtl& editor) { editor.ShowExportDialog(); },
     [](ReportingPlatform& platform, Form& form) {
       platform.failing = "FileHelpers";
       Bind<CommandButton>(form, "cmdBrowse").Press();
     },
     "{None}", "<Extension></Extension>|", kNew + kSource},
    {"Thumbnail", "frmGetThumnail", "FormHeader_OKClick",
     [](IImageProcessingCtl& editor) { editor.ShowGetThumnailDialog(); },
     [](ReportingPlatform& platform, Form& form) {
       field(form, 1).Text("8");
       Bind<CheckBox>(form, "chkSaveAsDefault").Value(1);
       platform.storeFailsOnce = true;
       Bind<FormHeader>(form, "FormHeader").PressOK();
     },
     "{None}", "<Type>1</Type>|",
     "<mLoading>False</mLoading>|<Success>True</Success>|<SafeToUnload>False</SafeToUnload>|"
     "<ResultData></ResultData>|"},
};

class DialogVariables : public EditorReporting, public testing::WithParamInterface<Case> {
 protected:
  /// The text of a section of a report, with a bar at the end of each line.
  static std::string section(const std::string& variables, const std::string& tag) {
    const std::string begin = "<" + tag + ">\r\n", end = "</" + tag + ">";
    const std::size_t from = variables.find(begin);
    if (from == std::string::npos) return "no section " + tag;
    std::string text = variables.substr(from + begin.size());
    text.resize(text.find(end));
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.replace(at, 2, "|");
    return text;
  }
};

TEST_P(DialogVariables, AreInTheReport) {
  const Case& chosen = GetParam();
  ASSERT_TRUE(editor_->OpenImage(picture_));
  platform_->reporterInstalled = true;
  user().uses(chosen.form, [&](Form& form) {
    // The action of the headless user is where a toolkit would catch the error.
    QDK_RESUME_NEXT(chosen.fail(*platform_, form));
    platform_->failing.clear();
    form.Hide();
  });
  if (chosen.form == std::string("frmExport")) user().chooses(folder_ + "/a.png");
  QDK_RESUME_NEXT(chosen.show(*editor_));
  const auto report = std::ranges::find(platform_->reports, chosen.procedure, &fakes::Report::procedure);
  ASSERT_NE(report, platform_->reports.end());
  EXPECT_EQ(report->module, chosen.form);
  EXPECT_EQ(section(report->variables, "Parameters"), chosen.parameters);
  EXPECT_EQ(section(report->variables, "LocalVariables"), chosen.locals);
  EXPECT_EQ(section(report->variables, "ModuleVariables"), chosen.fields);
}

INSTANTIATE_TEST_SUITE_P(Of, DialogVariables, testing::ValuesIn(kCases),
                         [](const auto& chosen) { return std::string(chosen.param.name); });

}  // namespace
}  // namespace kestrel
