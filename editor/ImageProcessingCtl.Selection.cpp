#include <algorithm>
#include <limits>

#include "ImageProcessingCtl.h"
#include "base/Arithmetic.h"
#include "base/DescribedError.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Clipboard.h"
#include "imaging/modImgX.h"

namespace kestrel {
namespace {

/// View position of a picture column or row, at zoom 1. Saturates.
std::int32_t PositionInView(std::int32_t pixel, std::int32_t scroll) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(std::int64_t{pixel} - scroll + 1, Limits::min(), Limits::max()));
}

}  // namespace

bool ImageProcessingCtl::zHasSelection() const { return modImgX::ValidSelection(&igxImage); }

bool ImageProcessingCtl::zUseSelection() const { return pTool == ipToolSelect && zHasSelection(); }

// -- The rectangle ----------------------------------------------------------------------------------------

void ImageProcessingCtl::SetSelection(std::int32_t Left, std::int32_t Top, std::int32_t Width,
                                      std::int32_t Height) {
  try {
    Tool(ipToolSelect);
    igxImage.SetSelectionRect(Left, Top, Width, Height);
    igxImage.SelectionVisible(true);
    zShowSize();
  } catch (...) {
    QDK_TRAILER(SetSelection, QDK_PARAMETERS(Left, Top, Width, Height), QDK_LOCALS());
  }
}

void ImageProcessingCtl::SelectAll() {
  try {
    Tool(ipToolSelect);
    const kestrel::Image& picture = Required(igxImage.Image());
    SetSelection(0, 0, picture.Width(), picture.Height());
  } catch (...) {
    QDK_TRAILER(SelectAll, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ResetSelection() {
  try {
    igxImage.SelectionHeight(0);
    igxImage.SelectionWidth(0);
    igxImage.SelectionVisible(false);
    zShowSize();
  } catch (...) {
    QDK_TRAILER(ResetSelection, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

// -- Copy and cut -----------------------------------------------------------------------------------------

void ImageProcessingCtl::zCopySection() {
  kestrel::ImgX& scratch = Required(pImage);
  scratch.Document().CopyFrom(*igxImage.ImgX(), 0, "");
  scratch.Effects().Crop(igxImage.SelectionLeft(), igxImage.SelectionTop(), igxImage.SelectionWidth(),
                         igxImage.SelectionHeight(), "");
  scratch.Writer().ToClipboard();
}

void ImageProcessingCtl::Copy(bool UseSelection) {
  try {
    if (UseSelection && zHasSelection()) {
      zCopySection();
    } else {
      igxImage.Writer().ToClipboard();
    }
  } catch (...) {
    QDK_TRAILER(Copy, QDK_PARAMETERS(UseSelection), QDK_LOCALS());
  }
}

void ImageProcessingCtl::Cut(bool UseSelection) {
  Point StartPoint, EndPoint;
  try {
    if (UseSelection && zHasSelection()) {
      zCopySection();
      StartPoint = {igxImage.SelectionLeft(), igxImage.SelectionTop()};
      EndPoint = {CheckedAdd(igxImage.SelectionLeft(), igxImage.SelectionWidth()),
                  CheckedAdd(igxImage.SelectionTop(), igxImage.SelectionHeight())};
      ResetSelection();
    } else {
      igxImage.Writer().ToClipboard();
      // The size of the view, not of the picture.
      EndPoint = {igxImage.Width(), igxImage.Height()};
    }
    // The solid fill mode stays set afterwards, regardless of the background color.
    igxImage.Draw().FillMode(kFillSolid);
    igxImage.Draw().Rectangle(StartPoint, EndPoint, 0, 0, "Cut");
  } catch (...) {
    QDK_TRAILER(Cut, QDK_PARAMETERS(UseSelection), QDK_LOCALS(StartPoint, EndPoint));
  }
}

// -- Paste ------------------------------------------------------------------------------------------------

void ImageProcessingCtl::zBeginPaste() {
  if (!iPlatform.Clipboard().GetFormat(kClipboardBitmap)) {
    zMessageBox("Nothing to paste.", kBoxExclamation, "Paste");
    return;
  }
  kestrel::ImgX& scratch = Required(pImage);
  scratch.Document().Paste("");
  Tool(ipToolSelect);
  iPasting = true;
  zUpdateModeCommands();
  Status("Please select where to paste the image, or press Escape to cancel", false, true);
  mrgUI.DockFunctions().SetChecked(Commands()("btnEditPaste"), true);
  const kestrel::Image& source = Required(scratch.Image());
  igxImage.SetSelectionRect(igxImage.ScrollLeft(), igxImage.ScrollTop(), source.Width(), source.Height());
  igxImage.SelectionVisible(true);
  zShowSize();
  igxImage.Refresh();
}

/// Undoes a resize: the floating image can only be moved.
void ImageProcessingCtl::zKeepFloatingSize() {
  const kestrel::Image& source = Required(Required(pImage).Image());
  igxImage.SelectionWidth(source.Width());
  igxImage.SelectionHeight(source.Height());
}

void ImageProcessingCtl::zMoveFloatingImage() {
  zKeepFloatingSize();
  iPasteX = igxImage.SelectionLeft();
  iPasteY = igxImage.SelectionTop();
  zShowSize();
  igxImage.Refresh();
}

void ImageProcessingCtl::igxImage_DoubleBufferPaintAfter(DeviceContext& hDC) {
  try {
    if (!iPasting) return;
    Required(pImage).Surface().DrawTo(hDC, PositionInView(igxImage.SelectionLeft(), igxImage.ScrollLeft()),
                                      PositionInView(igxImage.SelectionTop(), igxImage.ScrollTop()),
                                      kSourceCopy);
  } catch (...) {
    QDK_TRAILER(igxImage_DoubleBufferPaintAfter, QDK_PARAMETERS(hDC), QDK_LOCALS());
  }
}

void ImageProcessingCtl::Paste() {
  Colour MaskColor;
  try {
    if (!iPasting) return;
    iPasting = false;
    if (iTransparentPaste)
      MaskColor = igxImage.Colors().Create(Required(Options()).PasteSpecialMaskColor(), 255);
    igxImage.Draw().Image(Required(Required(pImage).Image()), iPasteX, iPasteY,
                          iTransparentPaste ? &MaskColor : nullptr, 1.0F, true, "Paste");
    zCancelPaste();
  } catch (...) {
    // The floating image cannot be placed, so the mode must end.
    QDK_RESUME_NEXT(zCancelPaste());
    QDK_TRAILER(Paste, QDK_PARAMETERS(), QDK_LOCALS(MaskColor));
  }
}

void ImageProcessingCtl::zCancelPaste() {
  try {
    iPasting = false;
    iTransparentPaste = false;
    zUpdateModeCommands();
    mrgUI.DockFunctions().SetChecked(Commands()("btnEditPaste"), false);
    Status("", true, true);
    ResetSelection();
    igxImage.Refresh();
  } catch (...) {
    QDK_TRAILER(zCancelPaste, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

// -- Crop -------------------------------------------------------------------------------------------------

void ImageProcessingCtl::CropToSelection() {
  std::int32_t left = igxImage.SelectionLeft();
  std::int32_t top = igxImage.SelectionTop();
  std::int32_t width = igxImage.SelectionWidth();
  std::int32_t height = igxImage.SelectionHeight();
  if (width < 0) {
    left = CheckedAdd(left, width);
    width = CheckedNegate(width);
  }
  if (height < 0) {
    top = CheckedAdd(top, height);
    height = CheckedNegate(height);
  }
  igxImage.Effects().Crop(left, top, width, height, "");
  ResetSelection();
}

void ImageProcessingCtl::zTryCrop() {
  try {
    CropToSelection();
  } catch (...) {
    zMessageBox("Failed to crop image: " + DescribeErrorToShow().Description, kBoxExclamation, "Crop");
  }
}

void ImageProcessingCtl::zCropOrBeginCrop() {
  if (zHasSelection()) return zTryCrop();
  Tool(ipToolSelect);
  iCropping = true;
  zUpdateModeCommands();
  Status("Please select the region to crop the image to, or press Escape to cancel", false, true);
  mrgUI.DockFunctions().SetChecked(Commands()("btnImageCrop"), true);
}

void ImageProcessingCtl::zCancelCrop() {
  try {
    iCropping = false;
    zUpdateModeCommands();
    mrgUI.DockFunctions().SetChecked(Commands()("btnImageCrop"), false);
    Status("", true, true);
    ResetSelection();
  } catch (...) {
    QDK_TRAILER(zCancelCrop, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::Cancel() {
  try {
    if (iCropping) zCancelCrop();
    if (iPasting) zCancelPaste();
  } catch (...) {
    QDK_TRAILER(Cancel, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

}  // namespace kestrel
