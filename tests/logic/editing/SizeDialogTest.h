#pragma once

#include <string>

#include "EditingTest.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {

/// The controls that both size dialogs have.
class SizeControls {
 public:
  explicit SizeControls(Form& form) : form_(form) {}

  Form& form() { return form_; }
  TextBox& field(std::int32_t index) { return Bind<TextBox>(form_, "txtField", index); }
  TextBox& width() { return field(0); }
  TextBox& height() { return field(1); }
  CheckBox& aspect() { return Bind<CheckBox>(form_, "chkAspect"); }
  std::string data(std::int32_t index) { return Bind<Label>(form_, "lblData", index).Caption(); }
  std::string header(std::int32_t index) { return Bind<Label>(form_, "lblHdr", index).Caption(); }
  /// The texts of both size boxes: "40x30".
  std::string size() { return width().Text() + "x" + height().Text(); }
  void ok() { Bind<CommandButton>(form_, "cmdAction", 0).Press(); }
  void cancel() { Bind<CommandButton>(form_, "cmdAction", 1).Press(); }

 private:
  Form& form_;
};

}  // namespace kestrel
