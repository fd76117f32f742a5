#include "ContractTest.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/PictureBox.h"
#include "imaging/contract/controls/Slider.h"
#include "imaging/contract/controls/TabStrip.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel::contract {
namespace {

class Controls : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    form_ = user().controls();
  }
  void TearDown() override {
    form_.reset();
    ContractTest::TearDown();
  }
  Form& form() { return *form_; }
  template <typename T>
  T& control(const char* name, std::int32_t index = -1) {
    return Bind<T>(*form_, name, index);
  }

 private:
  std::unique_ptr<Form> form_;
};

TEST_P(Controls, AreFoundByNameAndIndexAndKeepThem) {
  auto& second = control<OptionButton>("optDegree", 1);
  EXPECT_EQ(second.Name(), "optDegree");
  EXPECT_EQ(second.Index(), 1);
  EXPECT_EQ(control<TextBox>("txtName").Index(), -1);
  EXPECT_EQ(control<TextBox>("TXTNAME").Name(), "txtName");
}

TEST_P(Controls, ThatAreMissingAreNotFound) {
  EXPECT_EQ(form().Find("txtOther"), nullptr);
  EXPECT_EQ(form().Find("optDegree", 3), nullptr);
  EXPECT_EQ(form().Find("optDegree"), nullptr);
  EXPECT_EQ(form().UBound("optDegree"), 2);
  EXPECT_EQ(form().UBound("cmdAction"), 1);
  EXPECT_EQ(form().UBound("txtName"), -1);
}

TEST_P(Controls, BindingToAMissingControlOrToAnotherClassRaises730) {
  EXPECT_EQ(errorOf([&] { control<TextBox>("txtOther"); }), 730);
  EXPECT_EQ(errorOf([&] { control<Label>("txtName"); }), 730);
}

TEST_P(Controls, HaveTheirStoredValues) {
  EXPECT_EQ(control<Label>("lblName").Caption(), "A label");
  EXPECT_EQ(control<TextBox>("txtName").Text(), "90");
  EXPECT_EQ(control<CheckBox>("chkBox").Caption(), "A &box");
  EXPECT_EQ(control<CheckBox>("chkBox").Value(), 0);
  EXPECT_EQ(control<CheckBox>("chkTicked").Value(), 1);
  EXPECT_EQ(control<OptionButton>("optDegree", 1).Tag(), "270");
  EXPECT_EQ(control<OptionButton>("optDegree", 1).Caption(), "Left");
  EXPECT_EQ(control<Frame>("fraDegrees").Caption(), "Degrees");
  EXPECT_EQ(control<CommandButton>("cmdAction", 0).Caption(), "OK");
  EXPECT_FALSE(control<CommandButton>("cmdAction", 1).Enabled());
  EXPECT_FALSE(control<CommandButton>("btnPlacement", 0).Pressed());
  EXPECT_TRUE(control<CommandButton>("btnPlacement", 1).Pressed());
  EXPECT_EQ(form().Caption(), "Controls");
}

TEST_P(Controls, HaveTheirOwnVisibilityApartFromTheForm) {
  auto& box = control<TextBox>("txtName");
  EXPECT_FALSE(form().Visible());
  EXPECT_TRUE(box.Visible());
  box.Visible(false);
  EXPECT_FALSE(box.Visible());
  box.Visible(true);
  EXPECT_TRUE(box.Visible());
}

TEST_P(Controls, HaveTheirOwnEnabledStateApartFromTheForm) {
  auto& box = control<TextBox>("txtName");
  form().Enabled(false);
  EXPECT_TRUE(box.Enabled());
  box.Enabled(false);
  EXPECT_FALSE(box.Enabled());
}

TEST_P(Controls, AreWhereTheyAreMoved) {
  auto& picture = control<PictureBox>("picSample");
  picture.Move(11, 12, 53, 44);
  EXPECT_EQ(picture.Left(), 11);
  EXPECT_EQ(picture.Top(), 12);
  EXPECT_EQ(picture.Width(), 53);
  EXPECT_EQ(picture.Height(), 44);
  picture.Left(21);
  picture.Top(22);
  picture.Width(63);
  picture.Height(54);
  EXPECT_EQ(picture.Left(), 21);
  EXPECT_EQ(picture.Top(), 22);
  EXPECT_EQ(picture.Width(), 63);
  EXPECT_EQ(picture.Height(), 54);
}

TEST_P(Controls, HaveTheirOwnWindows) {
  EXPECT_NE(control<TextBox>("txtName").hWnd(), 0);
  EXPECT_NE(control<TextBox>("txtName").hWnd(), control<CheckBox>("chkBox").hWnd());
  EXPECT_NE(form().hWnd(), control<CheckBox>("chkBox").hWnd());
}

TEST_P(Controls, ATextBoxRaisesChangeWhenItsTextDiffers) {
  auto& box = control<TextBox>("txtName");
  int changes = 0;
  std::string seen;
  const Connection connection = box.Change.Connect([&] {
    ++changes;
    seen = box.Text();
  });
  box.Text("90");
  EXPECT_EQ(changes, 0);
  box.Text("45\xC2\xB0");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(seen, "45\xC2\xB0");
}

TEST_P(Controls, ATextBoxReturnsItsSelectedText) {
  auto& box = control<TextBox>("txtName");
  EXPECT_EQ(box.SelectedText(), "");
  platform().FormUtility().SelectAllText(box);
  EXPECT_EQ(box.SelectedText(), "90");
}

TEST_P(Controls, ATextBoxRaisesGotFocus) {
  auto& box = control<TextBox>("txtName");
  form().Show();
  user().settle();
  platform().FormUtility().SetFocusTo(control<CheckBox>("chkBox"));
  user().settle();
  int focused = 0;
  const Connection connection = box.GotFocus.Connect([&] { ++focused; });
  platform().FormUtility().SetFocusTo(box);
  user().settle();
  EXPECT_EQ(focused, 1);
}

TEST_P(Controls, ACheckBoxRaisesClickIfTheValueDiffers) {
  auto& box = control<CheckBox>("chkBox");
  int clicks = 0;
  const Connection connection = box.Click.Connect([&] { ++clicks; });
  box.Value(0);
  EXPECT_EQ(clicks, 0);
  box.Value(1);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(box.Value(), 1);
  box.Value(0);
  EXPECT_EQ(clicks, 2);
}

TEST_P(Controls, AnOptionButtonClearsTheOthersOfItsContainer) {
  auto& right = control<OptionButton>("optDegree", 0);
  auto& left = control<OptionButton>("optDegree", 1);
  auto& here = control<OptionButton>("optPlace", 0);
  ASSERT_TRUE(right.Value());
  left.Value(true);
  EXPECT_FALSE(right.Value());
  EXPECT_TRUE(left.Value());
  EXPECT_TRUE(here.Value()) << "a button of another container keeps its choice";
}

TEST_P(Controls, AnOptionButtonRaisesClickWhenChosen) {
  auto& right = control<OptionButton>("optDegree", 0);
  auto& left = control<OptionButton>("optDegree", 1);
  std::string clicks;
  const Connection first = right.Click.Connect([&] { clicks += 'r'; });
  const Connection second = left.Click.Connect([&] { clicks += 'l'; });
  right.Value(true);
  EXPECT_EQ(clicks, "") << "it was chosen already";
  left.Value(true);
  EXPECT_EQ(clicks, "l") << "the one that lost the choice was not clicked";
  left.Value(false);
  EXPECT_EQ(clicks, "l");
  EXPECT_FALSE(left.Value());
  EXPECT_FALSE(right.Value());
}

TEST_P(Controls, AComboBoxKnowsItsEntriesFrom0) {
  auto& list = control<ComboBox>("cboList");
  ASSERT_EQ(list.ListCount(), 3);
  EXPECT_EQ(list.List(0), "Bilinear");
  EXPECT_EQ(list.List(2), "Lanczos");
  EXPECT_EQ(list.ItemData(2), 13);
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_EQ(errorOf([&] { list.ItemData(3); }), 381);
  EXPECT_EQ(errorOf([&] { list.ItemData(-1); }), 381);
}

TEST_P(Controls, AComboBoxRaisesClickForAnotherChoiceAnd380Outside) {
  auto& list = control<ComboBox>("cboList");
  int clicks = 0;
  const Connection connection = list.Click.Connect([&] { ++clicks; });
  list.ListIndex(1);
  EXPECT_EQ(clicks, 0);
  list.ListIndex(2);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(errorOf([&] { list.ListIndex(3); }), 380);
  EXPECT_EQ(errorOf([&] { list.ListIndex(-2); }), 380);
  EXPECT_EQ(list.ListIndex(), 2);
  list.ListIndex(-1);
  EXPECT_EQ(list.ListIndex(), -1);
}

TEST_P(Controls, ASliderClampsItsValue) {
  auto& slider = control<Slider>("sldLevel");
  EXPECT_EQ(slider.Min(), 2);
  EXPECT_EQ(slider.Max(), 20);
  EXPECT_EQ(slider.Value(), 5);
  int changes = 0;
  const Connection connection = slider.Change.Connect([&] { ++changes; });
  slider.Value(5);
  EXPECT_EQ(changes, 0);
  slider.Value(21);
  EXPECT_EQ(slider.Value(), 20);
  slider.Value(-1);
  EXPECT_EQ(slider.Value(), 2);
  EXPECT_EQ(changes, 2);
}

TEST_P(Controls, ATabStripCountsFrom1AndRaisesClickForAnotherTab) {
  auto& tabs = control<TabStrip>("tabPages");
  ASSERT_EQ(tabs.Count(), 3);
  EXPECT_EQ(tabs.Caption(1), "View");
  EXPECT_EQ(tabs.Caption(3), "Colors");
  EXPECT_EQ(tabs.SelectedIndex(), 1);
  int clicks = 0;
  const Connection connection = tabs.Click.Connect([&] { ++clicks; });
  tabs.SelectedIndex(1);
  EXPECT_EQ(clicks, 0);
  tabs.SelectedIndex(3);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(tabs.SelectedIndex(), 3);
}

TEST_P(Controls, AButtonIsPressedOnlyWhileItIsEnabled) {
  auto& button = control<CommandButton>("cmdAction", 1);
  int clicks = 0;
  const Connection connection = button.Click.Connect([&] { ++clicks; });
  button.Press();
  EXPECT_EQ(clicks, 0);
  button.Enabled(true);
  button.Press();
  EXPECT_EQ(clicks, 1);
}

TEST_P(Controls, ThePressedStateOfAButtonChangesOnlyItsLooks) {
  auto& button = control<CommandButton>("cmdAction", 0);
  int clicks = 0;
  const Connection connection = button.Click.Connect([&] { ++clicks; });
  button.Pressed(true);
  EXPECT_TRUE(button.Pressed());
  EXPECT_EQ(clicks, 0);
  button.Press();
  EXPECT_EQ(clicks, 1);
  EXPECT_TRUE(button.Pressed()) << "a click does not change the state";
}

TEST_P(Controls, KeepTheirColorsPicturesAndCaptions) {
  auto& button = control<CommandButton>("cmdAction", 0);
  EXPECT_EQ(button.BackColor(), -1);
  button.BackColor(0x00102030);
  EXPECT_EQ(button.BackColor(), 0x00102030);

  const PicturePtr picture = platform().CreateCanvas(4, 4)->Picture();
  control<PictureBox>("picSample").Picture(picture);
  EXPECT_EQ(control<PictureBox>("picSample").Picture(), picture);
  control<Frame>("fraPlace").BackgroundPicture(picture);
  EXPECT_EQ(control<Frame>("fraPlace").BackgroundPicture(), picture);
  control<Label>("lblName").Caption("Other");
  EXPECT_EQ(control<Label>("lblName").Caption(), "Other");
}

TEST_P(Controls, AColorPickerRaisesChangeIfTheColorDiffers) {
  auto& picker = control<ColorPicker>("cpkColor");
  std::vector<OLE_COLOR> changes;
  const Connection connection = picker.Change.Connect([&](OLE_COLOR color) { changes.push_back(color); });
  picker.Value(0x00112233);
  EXPECT_EQ(picker.Value(), 0x00112233);
  picker.Value(0x00112233);
  EXPECT_EQ(changes, std::vector<OLE_COLOR>{0x00112233});
}

TEST_P(Controls, SettingAColorClearsTheExtraChoiceOfAColorPicker) {
  auto& picker = control<ColorPicker>("cpkColor");
  EXPECT_EQ(picker.EnhancedCaption(), "No Color");
  picker.Value(0x00112233);
  int changes = 0;
  const Connection connection = picker.Change.Connect([&](OLE_COLOR) { ++changes; });
  picker.EnhancedIsSelected(true);
  EXPECT_TRUE(picker.EnhancedIsSelected());
  EXPECT_EQ(picker.Value(), 0x00112233);
  picker.Value(0x00112233);
  EXPECT_FALSE(picker.EnhancedIsSelected());
  EXPECT_EQ(changes, 0) << "the color is the same";
  picker.EnhancedVisible(false);
  EXPECT_FALSE(picker.EnhancedVisible());
  picker.EnhancedCaption("Automatic");
  EXPECT_EQ(picker.EnhancedCaption(), "Automatic");
}

TEST_P(Controls, AColorPickerHasTheExtraButtonThatItsFormStores) {
  EXPECT_TRUE(control<ColorPicker>("cpkColor").EnhancedVisible());
  EXPECT_FALSE(control<ColorPicker>("cpkPlain").EnhancedVisible());
}

TEST_P(Controls, AColorPickerReportsTheUsersChoice) {
  constexpr OLE_COLOR kListed = 0x00DB6F2A;
  auto& picker = control<ColorPicker>("cpkColor");
  picker.EnhancedVisible(true);
  picker.Value(0x00112233);
  std::string log;
  const Connection changed = picker.Change.Connect([&](OLE_COLOR color) {
    log += color == kListed ? "change " : "other change ";
    EXPECT_EQ(picker.Value(), color);
  });
  const Connection extra = picker.EnhancedButtonClicked.Connect([&] {
    log += "extra ";
    EXPECT_TRUE(picker.EnhancedIsSelected());
  });
  form().Show();
  user().settle();
  picker.DropDown();
  user().pickColor(picker, kListed);
  EXPECT_EQ(log, "change ");
  picker.DropDown();
  user().pickExtra(picker);
  EXPECT_EQ(log, "change extra ");
  EXPECT_EQ(picker.Value(), kListed) << "the extra button is chosen instead of a color";
  picker.DropDown();
  user().pickColor(picker, kListed);
  EXPECT_EQ(log, "change extra change ") << "the same color, but no longer the extra button";
  EXPECT_FALSE(picker.EnhancedIsSelected());
}

TEST_P(Controls, APreviewOnAFormIsASiteWithItsTwoPanesAndAPicture) {
  auto& site = control<Site>("Preview");
  EXPECT_TRUE(site.UserMode());
  EXPECT_EQ(Bind<ImageView>(site, "igxOriginal").Image(), nullptr);
  EXPECT_EQ(Bind<ImageView>(site, "igxPreview").Image(), nullptr);
  EXPECT_EQ(Bind<ImageView>(site, "igxOriginal").UndoLevels(), 0) << "a step would keep a whole picture";
  EXPECT_EQ(Bind<ImageView>(site, "igxPreview").UndoLevels(), 0);
  auto& stock = Bind<PictureBox>(site, "imgPreview");
  EXPECT_FALSE(stock.Visible());
  ASSERT_NE(stock.Picture(), nullptr);
  // A small picture of 4 to 3; its size depends on the scale of the screen.
  EXPECT_GE(stock.Picture()->Width(), 200);
  EXPECT_LE(stock.Picture()->Width(), 1000);
  EXPECT_EQ(stock.Picture()->Width() * 3, stock.Picture()->Height() * 4);
}

TEST_P(Controls, ASiteOnAFormIsInitializedOnceBeforeTheFirstLoad) {
  auto& site = control<Site>("Preview");
  std::string log;
  const Connection initialised = site.InitProperties.Connect([&] { log += "init "; });
  const Connection loaded = form().Load.Connect([&] { log += "load "; });
  form().Show();
  user().settle();
  EXPECT_EQ(log, "init load ");
  EXPECT_GT(site.ScaleWidth(), 0);
  form().Unload();
  form().Show();
  EXPECT_EQ(log, "init load load ");
}

KESTREL_ON_ALL_PLATFORMS(Controls);

}  // namespace
}  // namespace kestrel::contract
