#include "ImageProcessingCtl.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "dialogs/frmDropShadow.h"
#include "dialogs/frmExport.h"
#include "dialogs/frmFlattenAlpha.h"
#include "dialogs/frmGetThumnail.h"
#include "dialogs/frmOptions.h"
#include "dialogs/frmPasteSpecial.h"
#include "dialogs/frmResize.h"
#include "dialogs/frmResizeCanvas.h"
#include "dialogs/frmRotate.h"
#include "imaging/contract/Clipboard.h"

// Each member shows a dialog, and if the user accepts it, runs the operation. Engine errors propagate.

namespace kestrel {

bool ImageProcessingCtl::ShowExportDialog() {
  bool Result = false;
  try {
    frmExport dialog;
    dialog.Source = this;
    Result = zShowDialog(dialog);
  } catch (...) {
    QDK_TRAILER(ShowExportDialog, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

bool ImageProcessingCtl::ShowOptions() {
  bool Result = false;
  try {
    frmOptions dialog;
    Result = zShowDialog(dialog);
    if (Result) ApplyOptions();
  } catch (...) {
    QDK_TRAILER(ShowOptions, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

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

PicturePtr ImageProcessingCtl::ShowGetThumnailDialog() {
  frmGetThumnail dialog;
  dialog.Preview().OriginalPicture(&igxImage);
  if (!zShowDialog(dialog)) return nullptr;
  const std::string& data = dialog.ResultData;
  // OK failed after it had set `Success`, and the user canceled then.
  if (data.empty()) return nullptr;
  // The size is the text as typed, which may contain the separator.
  const std::size_t typeAt = data.find('|') + 1;
  const std::size_t sizeAt = data.find('|', typeAt) + 1;
  const std::size_t sizeEnd = data.rfind('|');
  const bool addDropShadow = Val(data.substr(0, typeAt - 1)) != 0;
  auto sizeType = static_cast<ThumbnailSizeTypeEnum>(ToInt32(Val(data.substr(typeAt, sizeAt - 1 - typeAt))));
  const std::int32_t size = ToInt32(Val(data.substr(sizeAt, sizeEnd - sizeAt)));
  const OLE_COLOR backColor = ToInt32(Val(data.substr(sizeEnd + 1)));
  return GetThumbnailEx(sizeType, size, backColor, addDropShadow, ipUseDefault, ipUseDefault, ipUseDefault,
                        ipUseDefault, ipUseDefault);
}

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
