#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "DialogBase.h"
#include "editor/interface/IImageProcessingCtl.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/Label.h"

namespace kestrel {

/// The indices of the two size boxes of `txtField`.
inline constexpr std::int32_t kFieldWidth = 0;
inline constexpr std::int32_t kFieldHeight = 1;

/// A dialog that asks for the new size of the editor's picture and changes the picture itself on OK.
class SizeDialog : public DialogBase {
 public:
  /// The editor; it outlives the dialog.
  IImageProcessingCtl& Source;

 protected:
  SizeDialog(const char* formName, IImageProcessingCtl& source);

  /// A box was edited or written.
  virtual void txtField_Change(std::int32_t Index) = 0;

  void Form_Load() override = 0;

  std::int32_t ImageWidth();
  std::int32_t ImageHeight();
  /// The value of a box: its leading number.
  double Field(std::int32_t Index);
  /// Makes all boxes of `txtField` accept only digits from the keyboard.
  void MakeNumberBoxes();
  void ShowOriginalSize();

  /// With the aspect ratio locked, computes the size in the other box from the edited one, `Index`, and
  /// writes the whole parts of both; an index of neither box rewrites both as they are. With `IsPercent` both
  /// boxes get the same number. Does nothing while a call of it writes the boxes.
  void KeepAspect(std::int32_t Index, bool IsPercent);

  /// Runs an operation of the editor; an error is shown in a box. True if there was none.
  bool Succeeds(const std::function<void()>& operation);
  /// Notifies the user of a width or height below 1.
  void RefuseSize() { Exclaim("Sorry, the minimum value for width and height is 1."); }

  CheckBox& chkAspect;
  std::vector<TextBox*> txtField;

 private:
  void txtField_GotFocus(std::int32_t Index);

  std::array<Label*, 2> lblData;
  bool iKeepingAspect = false;
};

}  // namespace kestrel
