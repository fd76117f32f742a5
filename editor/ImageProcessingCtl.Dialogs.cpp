#include "ImageProcessingCtl.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "dialogs/frmDropShadow.h"
#include "dialogs/frmFlattenAlpha.h"
#include "dialogs/frmPasteSpecial.h"
#include "dialogs/frmResize.h"
#include "dialogs/frmResizeCanvas.h"
#include "dialogs/frmRotate.h"
#include "imaging/contract/Clipboard.h"

// Each member shows a dialog, and if the user accepts it, runs the operation. Engine errors propagate.

namespace kestrel {

bool ImageProcessingCtl::ShowExportDialog() { return false; }

bool ImageProcessingCtl::ShowOptions() { return false; }

bool ImageProcessingCtl::ShowResizeDialog() {
  frmResize dialog(*this);
  return zShowDialog(dialog);
}

bool ImageProcessingCtl::ShowResizeCanvasDialog() {
  frmResizeCanvas dialog(*this);
  return zShowDialog(dialog);
}

bool ImageProcessingCtl::ShowDropShadowDialog() {
  frmDropShadow dialog;
  dialog.Preview().OriginalPicture(&igxImage);
  if (!zShowDialog(dialog)) return false;
  ApplyDropShadow(ipUseDefault, ipUseDefault, ipUseDefault, ipUseDefault, ipUseDefault, zHasSelection());
  return true;
}

bool ImageProcessingCtl::ShowMaskedDropShadowDialog() {
  frmDropShadow dialog;
  dialog.AllowMaskSelection = true;
  dialog.Preview().OriginalPicture(&igxImage);
  if (!zShowDialog(dialog)) return false;
  ApplyMaskedDropShadow(ipUseDefault, ipUseDefault, ipUseDefault, ipUseDefault, ipUseDefault, ipUseDefault,
                        Required(Options()).DropShadowAutomaticMask(), zHasSelection());
  return true;
}

bool ImageProcessingCtl::ShowFlattenAlphaDialog() {
  frmFlattenAlpha dialog;
  dialog.Preview().OriginalPicture(&igxImage);
  if (!zShowDialog(dialog)) return false;
  FlattenAlpha(ipUseDefault);
  return true;
}

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

void ImageProcessingCtl::zBeginPasteSpecial() {
  // Without a picture to paste this shows its message only.
  if (!iPlatform.Clipboard().GetFormat(kClipboardBitmap)) return zBeginPaste();
  frmPasteSpecial dialog;
  if (!zShowDialog(dialog)) return;
  iTransparentPaste = true;
  mrgUI_CommandClick(Commands()("btnEditPaste"));
  // If the clipboard lost its picture meanwhile, the next paste is a plain one again.
  if (!iPasting) iTransparentPaste = false;
}

}  // namespace kestrel
