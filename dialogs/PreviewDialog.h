#pragma once

#include <functional>

#include "DialogBase.h"
#include "Preview.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel {

/// A dialog with a preview of its settings' effect on the picture.
class PreviewDialog : public DialogBase {
 public:
  kestrel::Preview& Preview() { return iPreview; }

 protected:
  explicit PreviewDialog(const char* formName, DialogButtons buttons = DialogButtons::kActions);

  /// Computes the preview; called on each change of a setting. Does nothing before the window is visible.
  virtual void UpdatePreview() = 0;
  void Form_FirstActivate() override { UpdatePreview(); }

  /// Runs the dialog's operation on a new copy in the right pane, with the busy pointer shown. If the
  /// operation fails the busy pointer stays until a preview succeeds.
  void ShowEffect(const std::function<void(ImageView&)>& operation);

  kestrel::CheckBox& UseOriginalBox() { return chkUseOriginalImage; }

 private:
  void chkUseOriginalImage_Click();
  void Preview_UseOriginalChange(const bool& UseOriginal);

  kestrel::Preview iPreview;
  CheckBox& chkUseOriginalImage;
};

}  // namespace kestrel
