#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ThumbnailsUser.h"
#include "TreeUser.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/Moorage.h"
#include "imaging/contract/Platform.h"
#include "imaging/contract/Site.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/SplitPanel.h"

namespace kestrel::contract {

/// A platform under test, with the actions of its user. Each program that runs the suite implements it.
class ContractPlatform {
 public:
  virtual ~ContractPlatform() = default;

  virtual kestrel::Platform& platform() = 0;

  /// The form frmControls, which has a control of each small class.
  virtual std::unique_ptr<Form> controls() = 0;
  /// The form frmHeader: a header and two boxes in its row.
  virtual std::unique_ptr<Form> header() = 0;
  /// The visible container of an editor control, 800 by 600, with its windows "mrgUI" and "igxImage". Each
  /// call creates a new one and destroys the previous one.
  virtual Site& editorSite() = 0;
  /// Another tree for each call. It must not outlive the platform.
  virtual std::unique_ptr<TreeUser> treeUser() = 0;
  /// Ends before the platform.
  virtual std::unique_ptr<ThumbnailsUser> thumbnailsUser() = 0;

  /// A writable folder in the platform's path syntax, without a trailing separator.
  virtual std::string folder() = 0;
  /// The path of the machine for a path of the platform.
  virtual std::string host(const std::string& path) = 0;

  // Actions of the user at the next box or dialog.
  virtual void willAnswer(std::int32_t answer) = 0;
  /// Decides about a file whose name is taken.
  enum class Clash { kReplace, kMerge, kSkip, kKeepBoth, kCancel };
  virtual void willDecide(Clash choice, bool forAll) = 0;
  virtual void willType(const std::string& text) = 0;
  virtual void willCancelInput() = 0;
  virtual void willUse(std::function<void(Form&)> doing) = 0;
  virtual void willChoose(const std::string& filename) = 0;
  virtual void willCancelFileDialog() = 0;
  virtual void willChooseFolder(const std::string& folder) = 0;
  virtual void willCancelFolderDialog() = 0;

  // Immediate actions of the user.
  virtual void pressCloseBox(Form& form) = 0;
  virtual bool clickCommand(Moorage& suite, const std::string& key) = 0;
  virtual void typeComboText(Moorage& suite, const std::string& key, const std::string& text) = 0;
  virtual bool pressHotKey(Moorage& suite, std::int32_t shift, std::int32_t keyCode) = 0;
  virtual void pressPointer(ImageView& view, std::int32_t button, std::int32_t shift, Point at) = 0;
  virtual void movePointer(ImageView& view, std::int32_t button, std::int32_t shift, Point to) = 0;
  virtual void releasePointer(ImageView& view, std::int32_t button, std::int32_t shift, Point at) = 0;
  virtual void turnWheel(ImageView& view, std::int32_t notches, std::int32_t shift, Point at) = 0;
  /// Moves the pointer to the view and keeps it there until it counts as resting.
  virtual void restWithPointer(ImageView& view) = 0;
  /// Moves the pointer out of the view.
  virtual void leaveWithPointer(ImageView& view) = 0;
  /// Chooses a color, or the extra button, in the open list of the picker.
  virtual void pickColor(ColorPicker& picker, OLE_COLOR color) = 0;
  virtual void pickExtra(ColorPicker& picker) = 0;
  /// Drags the divider to a position.
  virtual void dragDivider(SplitPanel& panel, std::int32_t position) = 0;
  virtual void pressNoticeButton(ImageView& view) = 0;
  virtual void closeNotice(ImageView& view) = 0;
  virtual void copyText(const std::string& text) = 0;

  /// The visible text of the notice strip above the picture, and of its button; empty without one.
  virtual std::string noticeText(ImageView& view) = 0;
  virtual std::string noticeButton(ImageView& view) = 0;

  /// The color drawn on a form's face at a point; -1 if nothing is drawn there.
  virtual OLE_COLOR faceColor(Form& form, Point at) = 0;

  /// Processes all pending events.
  virtual void settle() = 0;
};

/// The platform's name in test reports, and its factory.
struct ContractPlatformMaker {
  std::string name;
  std::function<std::unique_ptr<ContractPlatform>()> make;
};

/// The platforms that this program tests.
std::vector<ContractPlatformMaker> contractPlatforms();

}  // namespace kestrel::contract
