#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "imaging/contract/ImageView.h"
#include "imaging/contract/Moorage.h"
#include "imaging/contract/Platform.h"
#include "imaging/contract/Site.h"
#include "imaging/contract/controls/ColorPicker.h"

namespace kestrel::contract {

/// A platform under test, with hands for what only its user can do. Each program that runs the suite brings
/// its own.
class ContractPlatform {
 public:
  virtual ~ContractPlatform() = default;

  virtual kestrel::Platform& platform() = 0;

  /// The form frmControls, which has a control of each small class.
  virtual std::unique_ptr<Form> controls() = 0;
  /// The container of an editor control, 800 by 600 and shown, with its windows "mrgUI" and "igxImage". Made
  /// anew by each call; the one before is gone then.
  virtual Site& editorSite() = 0;

  /// A folder to write to, in the platform's spelling, without a separator at its end.
  virtual std::string folder() = 0;
  /// The name under which the machine knows a path.
  virtual std::string host(const std::string& path) = 0;

  // What the user will do at the next box or dialog, which then comes up by itself.
  virtual void willAnswer(std::int32_t answer) = 0;
  virtual void willType(const std::string& text) = 0;
  virtual void willCancelInput() = 0;
  virtual void willUse(std::function<void(Form&)> doing) = 0;
  virtual void willChoose(const std::string& filename) = 0;
  virtual void willCancelFileDialog() = 0;

  // What the user does now.
  virtual void pressCloseBox(Form& form) = 0;
  virtual bool clickCommand(Moorage& suite, const std::string& key) = 0;
  virtual void typeComboText(Moorage& suite, const std::string& key, const std::string& text) = 0;
  virtual bool pressHotKey(Moorage& suite, std::int32_t shift, std::int32_t keyCode) = 0;
  virtual void pressPointer(ImageView& view, std::int32_t button, std::int32_t shift, Point at) = 0;
  virtual void movePointer(ImageView& view, std::int32_t button, std::int32_t shift, Point to) = 0;
  virtual void releasePointer(ImageView& view, std::int32_t button, std::int32_t shift, Point at) = 0;
  virtual void turnWheel(ImageView& view, std::int32_t notches, std::int32_t shift, Point at) = 0;
  /// The pointer comes to the view and rests there for as long as it takes to count as a rest.
  virtual void restWithPointer(ImageView& view) = 0;
  /// The pointer goes from the view to somewhere outside.
  virtual void leaveWithPointer(ImageView& view) = 0;
  /// In the list of colors that the picker has opened: one of its colors, or the extra button.
  virtual void pickColor(ColorPicker& picker, OLE_COLOR color) = 0;
  virtual void pickExtra(ColorPicker& picker) = 0;
  virtual void pressNoticeButton(ImageView& view) = 0;
  virtual void closeNotice(ImageView& view) = 0;
  virtual void copyText(const std::string& text) = 0;

  /// What the user reads in the strip above the picture, and on its button; empty where it is not there.
  virtual std::string noticeText(ImageView& view) = 0;
  virtual std::string noticeButton(ImageView& view) = 0;

  /// The color of a point that was drawn on a form's face, -1 where nothing is drawn.
  virtual OLE_COLOR faceColor(Form& form, Point at) = 0;

  /// Lets everything happen that is waiting to.
  virtual void settle() = 0;
};

/// A name for the tests' reports, and how to make the platform.
struct ContractPlatformMaker {
  std::string name;
  std::function<std::unique_ptr<ContractPlatform>()> make;
};

/// The platforms that this program runs the suite against.
std::vector<ContractPlatformMaker> contractPlatforms();

}  // namespace kestrel::contract
