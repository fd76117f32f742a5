#pragma once

#include <functional>

#include "DialogBase.h"
#include "Preview.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel {

/// A dialog that shows what its settings do to the picture.
class PreviewDialog : public DialogBase {
 public:
  kestrel::Preview& Preview() { return iPreview; }

 protected:
  explicit PreviewDialog(const char* formName);

  /// Computes the preview; each change of a setting calls it. Does nothing before the window is visible.
  virtual void UpdatePreview() = 0;
  void Form_FirstActivate() override { UpdatePreview(); }

  /// Runs the dialog's operation on a fresh copy in the right pane, with the busy pointer shown. When the
  /// operation fails the pointer stays, until a preview succeeds.
  void ShowEffect(const std::function<void(ImageView&)>& operation);

 private:
  void chkUseOriginalImage_Click();
  void Preview_UseOriginalChange(const bool& UseOriginal);

  kestrel::Preview iPreview;
  CheckBox& chkUseOriginalImage;
};

}  // namespace kestrel
