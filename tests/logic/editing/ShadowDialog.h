#pragma once

#include <cstdint>
#include <string>

#include "engine/imgx/PictureObject.h"
#include "imaging/contract/Site.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/TextBox.h"
#include "platform/headless/Form.h"
#include "platform/headless/ImageView.h"
#include "platform/headless/controls/ColorPicker.h"

namespace kestrel {

/// The controls that the dialogs of shadows, of flattening and of Paste Special share.
class ColorDialog {
 public:
  explicit ColorDialog(Form& form) : form_(form) {}

  Form& form() { return form_; }
  headless::ColorPicker& color(std::int32_t index = -1) {
    return Bind<headless::ColorPicker>(form_, "cpkColor", index);
  }
  CheckBox& useOriginal() { return Bind<CheckBox>(form_, "chkUseOriginalImage"); }
  void ok() { Bind<CommandButton>(form_, "cmdAction", 0).Press(); }
  void cancel() { Bind<CommandButton>(form_, "cmdAction", 1).Press(); }
  void pressCloseBox() { dynamic_cast<headless::Form&>(form_).pressCloseBox(); }
  headless::ImageView& pane(const char* name) {
    return Bind<headless::ImageView>(Bind<Site>(form_, "Preview"), name);
  }
  engine::Bitmap before() { return engine::bitmapOf(*pane("igxOriginal").Image()); }
  engine::Bitmap after() { return engine::bitmapOf(*pane("igxPreview").Image()); }

 private:
  Form& form_;
};

/// The controls of the drop shadow dialog.
class ShadowDialog : public ColorDialog {
 public:
  using ColorDialog::ColorDialog;

  TextBox& field(std::int32_t index) { return Bind<TextBox>(form(), "txtField", index); }
  TextBox& horizontal() { return field(0); }
  TextBox& vertical() { return field(1); }
  TextBox& blur() { return field(2); }
  TextBox& opacity() { return field(3); }
  headless::ColorPicker& shadow() { return color(0); }
  headless::ColorPicker& mask() { return color(1); }
};

}  // namespace kestrel
