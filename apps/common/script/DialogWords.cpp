#include "DialogWords.h"

#include "ScriptBoxes.h"
#include "base/Numbers.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/Slider.h"
#include "imaging/contract/controls/TabStrip.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel::app {
namespace {

[[noreturn]] void refuseValue(const std::string& value, const std::string& control) {
  refuse("The value \"" + value + "\" does not fit the control " + control + ".");
}

std::int32_t numberWithin(const std::string& value, std::int32_t low, std::int32_t high,
                          const std::string& control) {
  const std::int32_t number = numberOf(value);
  if (number < low || number > high) refuseValue(value, control);
  return number;
}

void setColor(ColorPicker& picker, const std::string& value, const std::string& control) {
  const OLE_COLOR color = colorOf(value);
  if (color >= 0) return picker.Value(color);
  if (!picker.EnhancedVisible()) refuseValue(value, control);
  picker.EnhancedIsSelected(true);
  picker.EnhancedButtonClicked();
}

void set(Control& control, const std::string& value, const std::string& name) {
  if (auto* const box = dynamic_cast<TextBox*>(&control)) {
    box->Text(value);
  } else if (auto* const check = dynamic_cast<CheckBox*>(&control)) {
    check->Value(numberWithin(value, 0, 1, name));
  } else if (auto* const list = dynamic_cast<ComboBox*>(&control)) {
    list->ListIndex(numberWithin(value, 0, list->ListCount() - 1, name));
  } else if (auto* const slider = dynamic_cast<Slider*>(&control)) {
    slider->Value(numberWithin(value, slider->Min(), slider->Max(), name));
  } else if (auto* const picker = dynamic_cast<ColorPicker*>(&control)) {
    setColor(*picker, value, name);
  } else if (auto* const tabs = dynamic_cast<TabStrip*>(&control)) {
    tabs->SelectedIndex(numberWithin(value, 1, tabs->Count(), name));
  } else if (auto* const option = dynamic_cast<OptionButton*>(&control)) {
    numberWithin(value, 1, 1, name);
    option->Value(true);
  } else if (auto* const button = dynamic_cast<CommandButton*>(&control)) {
    numberWithin(value, 1, 1, name);
    button->Press();
  } else {
    refuse("The control " + name + " cannot be set.");
  }
}

void press(FormHeader& header, const std::string& button, const std::string& word) {
  if (EqualIgnoringCase(button, "Cancel")) return header.CancelClick();
  if (!EqualIgnoringCase(button, "OK")) refuse("The header has no button \"" + word + "\".");
  if (!header.OKEnabled()) refuse("The control " + word + " is disabled.");
  header.OKClick();
}

}  // namespace

DialogWords::DialogWords(const Words& words) {
  constexpr std::pair<const char*, Verb> kVerbs[] = {
      {"press", Verb::kPress}, {"answer", Verb::kAnswer}, {"picture", Verb::kPicture}};
  for (std::size_t i = 0; i < words.size(); ++i) {
    Verb verb = Verb::kSet;
    for (const auto& [name, each] : kVerbs) {
      if (words[i] == name) verb = each;
    }
    if (verb != Verb::kSet && ++i == words.size()) refuse("\"" + words.back() + "\" needs one more word.");
    deeds_.push_back(deedOf(verb, words[i]));
  }
}

DialogWords::Deed DialogWords::deedOf(Verb verb, const std::string& word) {
  Deed deed;
  deed.verb = verb;
  deed.word = word;
  if (verb == Verb::kPicture) return deed;
  if (verb == Verb::kAnswer) {
    answerOf(word);
    return deed;
  }
  const std::size_t equals = verb == Verb::kSet ? word.find('=') : word.size();
  if (equals == std::string::npos) {
    refuse("\"" + word + "\" is neither NAME=VALUE nor \"press\", \"answer\" or \"picture\".");
  }
  deed.word = word.substr(0, equals);
  if (verb == Verb::kSet) deed.value = word.substr(equals + 1);
  deed.name = deed.word;
  const std::size_t open = deed.word.find('(');
  if (open != std::string::npos) {
    if (deed.word.back() != ')') refuse("\"" + deed.word + "\" is not a control's name.");
    deed.index = numberOf(deed.word.substr(open + 1, deed.word.size() - open - 2));
    deed.name.resize(open);
  }
  if (deed.name.empty()) refuse("\"" + word + "\" has no control's name.");
  return deed;
}

void DialogWords::carryOut(const Deed& deed, Form& dialog, const Surroundings& surroundings) {
  if (deed.verb == Verb::kAnswer) return surroundings.answer(answerOf(deed.word));
  if (deed.verb == Verb::kPicture) {
    if (!surroundings.save(dialog, deed.word)) refuse("The file \"" + deed.word + "\" cannot be written.");
    return;
  }
  const std::size_t dot = deed.verb == Verb::kPress ? deed.name.find('.') : std::string::npos;
  Control* const control = dialog.Find(deed.name.substr(0, dot), deed.index);
  if (!control) refuse("The dialog \"" + dialog.Caption() + "\" has no control " + deed.word + ".");
  if (!control->Visible()) refuse("The control " + deed.word + " is hidden.");
  if (!control->Enabled()) refuse("The control " + deed.word + " is disabled.");
  if (deed.verb == Verb::kSet) return set(*control, deed.value, deed.word);
  if (auto* const header = dynamic_cast<FormHeader*>(control); header && dot != std::string::npos) {
    return press(*header, deed.name.substr(dot + 1), deed.word);
  }
  auto* const button = dynamic_cast<CommandButton*>(control);
  if (!button || dot != std::string::npos) refuse("The control " + deed.word + " is not a button.");
  button->Press();
}

void DialogWords::play(Form& dialog, const Surroundings& surroundings) const {
  for (const Deed& deed : deeds_) {
    if (!dialog.Visible()) {
      refuse("The dialog \"" + dialog.Caption() + "\" was closed before the word \"" + deed.word + "\".");
    }
    carryOut(deed, dialog, surroundings);
    surroundings.settle();
  }
  if (dialog.Visible()) refuse("The dialog \"" + dialog.Caption() + "\" is still open after the last word.");
}

}  // namespace kestrel::app
