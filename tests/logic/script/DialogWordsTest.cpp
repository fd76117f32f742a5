#include "apps/common/script/DialogWords.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "base/RuntimeError.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/Slider.h"
#include "imaging/contract/controls/TabStrip.h"
#include "imaging/contract/controls/TextBox.h"
#include "platform/headless/Form.h"
#include "platform/headless/Platform.h"

namespace kestrel::app {
namespace {

using headless::ControlKind;
using testing::ElementsAre;

/// A dialog with a control of every class. Its OK and its header's buttons close it.
class DialogLine : public testing::Test {
 protected:
  void SetUp() override {
    platform_.user().onComplaint = [](const std::string& text) { throw std::runtime_error(text); };
    headless::FormDescription all;
    all.name = "frmAll";
    all.caption = "All";
    const auto add = [&](ControlKind kind, const char* name, std::int32_t index = -1) {
      headless::ControlDescription control;
      control.kind = kind;
      control.name = name;
      control.index = index;
      if (kind == ControlKind::kComboBox || kind == ControlKind::kTabStrip) control.items = {"a", "b", "c"};
      control.enabled = control.name != "chkOff";
      control.maximum = 20;
      all.controls.push_back(control);
    };
    add(ControlKind::kTextBox, "txtField", 0);
    add(ControlKind::kTextBox, "txtField", 1);
    add(ControlKind::kCheckBox, "chkAspect");
    add(ControlKind::kCheckBox, "chkOff");
    add(ControlKind::kOptionButton, "optDegree", 1);
    add(ControlKind::kComboBox, "cboScale");
    add(ControlKind::kSlider, "sldBlur");
    add(ControlKind::kColorPicker, "cpkColor");
    add(ControlKind::kTabStrip, "tabPages");
    add(ControlKind::kLabel, "lblData");
    add(ControlKind::kFormHeader, "FormHeader");
    add(ControlKind::kCommandButton, "btnPlacement", 8);
    add(ControlKind::kCommandButton, "cmdAction", 0);
    form_ = platform_.createForm(all);
    for (Event<>* const ending :
         {&control<CommandButton>("cmdAction", 0).Click, &control<FormHeader>("FormHeader").OKClick,
          &control<FormHeader>("FormHeader").CancelClick}) {
      connections_.push_back(ending->Connect([this] { form_->Hide(); }));
    }
    form_->Show();
  }

  template <typename T>
  T& control(const char* name, std::int32_t index = -1) {
    return Bind<T>(*form_, name, index);
  }

  void play(const std::string& line) {
    DialogWords::Surroundings surroundings;
    surroundings.settle = [this] { ++settled_; };
    surroundings.answer = [this](std::int32_t answer) { answers_.push_back(answer); };
    surroundings.save = [this](Form& form, const std::string& file) {
      EXPECT_EQ(&form, form_.get());
      files_.push_back(file);
      return file != "unwritable.png";
    };
    DialogWords(wordsOf(line)).play(*form_, surroundings);
  }
  /// The sentence that refuses the line.
  std::string refusalOf(const std::string& line) {
    try {
      play(line);
      return "none";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.Number(), 5);
      return error.Description();
    }
  }

  headless::Platform platform_{headless::Setup{}};
  std::unique_ptr<Form> form_;
  std::vector<Connection> connections_;
  std::vector<std::int32_t> answers_;
  std::vector<std::string> files_;
  int settled_ = 0;
};

TEST_F(DialogLine, SetsAControlOfEveryClass) {
  int placed = 0;
  const Connection placing = control<CommandButton>("btnPlacement", 8).Click.Connect([&] { ++placed; });
  play(
      "txtField(0)=640 txtField(1)=\"two words\" chkAspect=1 optDegree(1)=1 cboScale=2 sldBlur=20 "
      "cpkColor=3388E0 tabPages=3 btnPlacement(8)=1 press cmdAction(0)");
  EXPECT_EQ(control<TextBox>("txtField", 0).Text(), "640");
  EXPECT_EQ(control<TextBox>("txtField", 1).Text(), "two words");
  EXPECT_EQ(control<CheckBox>("chkAspect").Value(), 1);
  EXPECT_TRUE(control<OptionButton>("optDegree", 1).Value());
  EXPECT_EQ(control<ComboBox>("cboScale").ListIndex(), 2);
  EXPECT_EQ(control<Slider>("sldBlur").Value(), 20);
  EXPECT_EQ(control<ColorPicker>("cpkColor").Value(), 0xE08833);
  EXPECT_EQ(control<TabStrip>("tabPages").SelectedIndex(), 3);
  EXPECT_EQ(placed, 1);
  EXPECT_FALSE(form_->Visible());
  EXPECT_EQ(settled_, 10) << "pending events are processed after each word";
}

TEST_F(DialogLine, SetsATextThatContainsAnEqualsSignOrNothing) {
  play("txtField(0)=a=b txtField(1)= press cmdAction(0)");
  EXPECT_EQ(control<TextBox>("txtField", 0).Text(), "a=b");
  EXPECT_EQ(control<TextBox>("txtField", 1).Text(), "");
}

TEST_F(DialogLine, SelectsTheExtraChoiceOfAColorPickerIfItIsShown) {
  int extra = 0;
  auto& picker = control<ColorPicker>("cpkColor");
  const Connection choosing = picker.EnhancedButtonClicked.Connect([&] { ++extra; });
  play("cpkColor=none press cmdAction(0)");
  EXPECT_TRUE(picker.EnhancedIsSelected());
  EXPECT_EQ(extra, 1);
  form_->Show();
  picker.EnhancedVisible(false);
  EXPECT_EQ(refusalOf("cpkColor=none"), "The value \"none\" does not fit the control cpkColor.");
}

TEST_F(DialogLine, PressesSeveralButtonsInOrder) {
  std::string log;
  const Connection placing = control<CommandButton>("btnPlacement", 8).Click.Connect([&] { log += "8"; });
  play("press btnPlacement(8) press btnPlacement(8) press cmdAction(0)");
  EXPECT_EQ(log, "88");
}

TEST_F(DialogLine, PressesTheButtonsOfAHeader) {
  std::string log;
  auto& header = control<FormHeader>("FormHeader");
  const Connection accepting = header.OKClick.Connect([&] { log += "OK "; });
  const Connection canceling = header.CancelClick.Connect([&] { log += "Cancel "; });
  play("press FormHeader.OK");
  form_->Show();
  play("press FormHeader.Cancel");
  EXPECT_EQ(log, "OK Cancel ");
  form_->Show();
  header.OKEnabled(false);
  EXPECT_EQ(refusalOf("press FormHeader.OK"), "The control FormHeader.OK is disabled.");
  EXPECT_EQ(refusalOf("press FormHeader.Help"), "The header has no button \"FormHeader.Help\".");
  EXPECT_EQ(refusalOf("press cmdAction.OK"), "The dialog \"All\" has no control cmdAction.OK.");
}

TEST_F(DialogLine, ProvidesAnswersForBoxesBeforeTheNextWord) {
  play("answer Yes answer OK press cmdAction(0)");
  EXPECT_THAT(answers_, ElementsAre(6, 1));
}

TEST_F(DialogLine, SavesScreenshotsOfTheDialog) {
  play("picture \"a b.png\" press cmdAction(0)");
  EXPECT_THAT(files_, ElementsAre("a b.png"));
  form_->Show();
  EXPECT_EQ(refusalOf("picture unwritable.png"), "The file \"unwritable.png\" cannot be written.");
}

TEST_F(DialogLine, RefusesAControlThatIsMissingDisabledOrOfAnotherClass) {
  EXPECT_EQ(refusalOf("txtOther=1"), "The dialog \"All\" has no control txtOther.");
  EXPECT_EQ(refusalOf("txtField(2)=1"), "The dialog \"All\" has no control txtField(2).");
  EXPECT_EQ(refusalOf("txtField=1"), "The dialog \"All\" has no control txtField.");
  EXPECT_EQ(refusalOf("press cmdAction(7)"), "The dialog \"All\" has no control cmdAction(7).");
  EXPECT_EQ(refusalOf("chkOff=1"), "The control chkOff is disabled.");
  EXPECT_EQ(refusalOf("lblData=1"), "The control lblData cannot be set.");
  EXPECT_EQ(refusalOf("press chkAspect"), "The control chkAspect is not a button.");
}

TEST_F(DialogLine, RefusesAHiddenControl) {
  control<TextBox>("txtField", 1).Visible(false);
  control<CommandButton>("cmdAction", 0).Visible(false);
  EXPECT_EQ(refusalOf("txtField(1)=1"), "The control txtField(1) is hidden.");
  EXPECT_EQ(control<TextBox>("txtField", 1).Text(), "");
  EXPECT_EQ(refusalOf("press cmdAction(0)"), "The control cmdAction(0) is hidden.");
  EXPECT_TRUE(form_->Visible());
}

TEST_F(DialogLine, RefusesAValueThatDoesNotFit) {
  for (const char* const word :
       {"chkAspect=2", "chkAspect=-1", "cboScale=3", "cboScale=-1", "sldBlur=21", "sldBlur=-1", "tabPages=0",
        "tabPages=4", "optDegree(1)=0", "cmdAction(0)=0"}) {
    const std::string text(word);
    const std::size_t equals = text.find('=');
    EXPECT_EQ(refusalOf(text), "The value \"" + text.substr(equals + 1) + "\" does not fit the control " +
                                   text.substr(0, equals) + ".");
  }
  EXPECT_EQ(refusalOf("chkAspect=yes"), "\"yes\" is not a number.");
  EXPECT_EQ(refusalOf("cpkColor=12"), "\"12\" is not a color, such as 3388E0.");
}

TEST_F(DialogLine, RefusesADialogThatIsStillOpenAfterTheLastWord) {
  EXPECT_EQ(refusalOf("chkAspect=1"), "The dialog \"All\" is still open after the last word.");
  EXPECT_EQ(refusalOf(""), "The dialog \"All\" is still open after the last word.");
}

TEST_F(DialogLine, RefusesWordsAfterTheDialogWasClosed) {
  EXPECT_EQ(refusalOf("press cmdAction(0) chkAspect=1"),
            "The dialog \"All\" was closed before the word \"chkAspect\".");
  EXPECT_EQ(control<CheckBox>("chkAspect").Value(), 0);
}

TEST_F(DialogLine, RefusesOtherWordsBeforeItDoesAnything) {
  EXPECT_EQ(refusalOf("chkAspect=1 cmdAction(0)"),
            "\"cmdAction(0)\" is neither NAME=VALUE nor \"press\", \"answer\" or \"picture\".");
  EXPECT_EQ(refusalOf("chkAspect=1 press"), "\"press\" needs one more word.");
  EXPECT_EQ(refusalOf("chkAspect=1 answer Maybe"), "No box has a button \"Maybe\".");
  EXPECT_EQ(refusalOf("chkAspect=1 txtField(x)=1"), "\"x\" is not a number.");
  EXPECT_EQ(refusalOf("chkAspect=1 txtField(0=1"), "\"txtField(0\" is not a control's name.");
  EXPECT_EQ(refusalOf("chkAspect=1 =1"), "\"=1\" has no control's name.");
  EXPECT_EQ(control<CheckBox>("chkAspect").Value(), 0);
}

}  // namespace
}  // namespace kestrel::app
