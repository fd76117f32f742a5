#include "ImageProcessingCtl.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/modImgX.h"
#include "settings/modProcessing.h"

namespace kestrel {

// -- Switches of the host ---------------------------------------------------------------------------------

void ImageProcessingCtl::AllowUnmodifiedHotKeys(bool Value) {
  try {
    if (Value == pAllowUnmodifiedHotKeys) return;
    pAllowUnmodifiedHotKeys = Value;
    zPropertyChanged("AllowUnmodifiedHotKeys");
    zInitSubControls();
  } catch (...) {
    QDK_TRAILER(AllowUnmodifiedHotKeys, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::UseSimpleTools(bool Value) {
  try {
    if (Value == pUseSimpleTools) return;
    pUseSimpleTools = Value;
    zPropertyChanged("UseSimpleTools");
    zInitSubControls();
  } catch (...) {
    QDK_TRAILER(UseSimpleTools, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ShowDrawingTools(bool Value) {
  try {
    if (Value == pShowDrawingTools) return;
    pShowDrawingTools = Value;
    zPropertyChanged("ShowDrawingTools");
    zInitSubControls();
  } catch (...) {
    QDK_TRAILER(ShowDrawingTools, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::UseSimpleSave(bool Value) {
  try {
    if (Value == pUseSimpleSave) return;
    pUseSimpleSave = Value;
    zPropertyChanged("UseSimpleSave");
    zInitSubControls();
  } catch (...) {
    QDK_TRAILER(UseSimpleSave, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ShowClose(bool Value) {
  try {
    if (Value == pShowClose) return;
    pShowClose = Value;
    zPropertyChanged("ShowClose");
    zInitSubControls();
  } catch (...) {
    QDK_TRAILER(ShowClose, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ShowOpen(bool Value) {
  try {
    if (Value == pShowOpen) return;
    pShowOpen = Value;
    zPropertyChanged("ShowOpen");
    // Without Open there are no recent files. The reverse does not hold.
    pShowMRU = pShowOpen;
    zInitSubControls();
  } catch (...) {
    QDK_TRAILER(ShowOpen, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ShowMRU(bool Value) {
  try {
    if (Value == pShowMRU) return;
    pShowMRU = Value;
    Commands()("mnuFileMRU").Visible(Value);
    zInitSubControls();
  } catch (...) {
    QDK_TRAILER(ShowMRU, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ShowMenuBar(bool Value) {
  try {
    if (Value == pShowMenuBar) return;
    pShowMenuBar = Value;
    zPropertyChanged("ShowMenuBar");
    CommandBars()("Menu Bar").Visible(Value && UserControl.UserMode());
  } catch (...) {
    QDK_TRAILER(ShowMenuBar, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::AutoUpdateGlobal(bool Value) {
  try {
    if (Value == pAutoUpdateGlobal) return;
    pAutoUpdateGlobal = Value;
    zPropertyChanged("AutoUpdateGlobal");
    UserControl.Refresh();
  } catch (...) {
    QDK_TRAILER(AutoUpdateGlobal, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

// -- State ------------------------------------------------------------------------------------------------

void ImageProcessingCtl::BackColor(OLE_COLOR Value) {
  try {
    if (Value == pBackColor) return;
    pBackColor = Value;
    if (Value != kNoColor) {
      igxImage.Draw().Color().Value(pBackColor);
      igxImage.Draw().FillMode(kFillSolid);
    } else {
      igxImage.Draw().Color().Value(pForeColor);
      igxImage.Draw().FillMode(kFillNone);
    }
    if (pAutoUpdateGlobal) Required(Options()).MaterialBackColor(Value);
    zRaise(BackColorChange, Value);
  } catch (...) {
    QDK_TRAILER(BackColor, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::ForeColor(OLE_COLOR Value) {
  try {
    if (Value == pForeColor) return;
    pForeColor = Value;
    if (pBackColor == kNoColor) igxImage.Draw().Color().Value(pForeColor);
    if (pAutoUpdateGlobal) Required(Options()).MaterialForeColor(Value);
    zRaise(ForeColorChange, Value);
  } catch (...) {
    QDK_TRAILER(ForeColor, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void ImageProcessingCtl::Format(std::int32_t Value) {
  try {
    if (Value == mFormat) return;
    mFormat = Value;
    if (pFilename.empty()) return;
    pFilename =
        iPlatform.FileHelpers().PathWithoutExtension(pFilename) + "." + modImgX::GetImageExtension(mFormat);
  } catch (...) {
    QDK_TRAILER(Format, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

PicturePtr ImageProcessingCtl::Picture() {
  PicturePtr Result;
  QDK_RESUME_NEXT(Result = igxImage.Writer().ToPicture());
  return Result;
}

void ImageProcessingCtl::Picture(const PicturePtr& Value) {
  try {
    Cancel();
    igxImage.Picture(Value);
    zPictureSet();
  } catch (...) {
    QDK_TRAILER(Picture, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

Image* ImageProcessingCtl::Image() {
  kestrel::Image* Result = nullptr;
  QDK_RESUME_NEXT(Result = igxImage.Image());
  return Result;
}

std::shared_ptr<ImgX> ImageProcessingCtl::ImgX() {
  std::shared_ptr<kestrel::ImgX> Result;
  QDK_RESUME_NEXT(Result = igxImage.ImgX());
  return Result;
}

std::shared_ptr<Options> ImageProcessingCtl::Options() { return modProcessing::GetOptions(); }

std::shared_ptr<IImageEvents> ImageProcessingCtl::EventSink() const {
  std::shared_ptr<IImageEvents> Result;
  QDK_RESUME_NEXT(if (pEventSink) Result = std::dynamic_pointer_cast<IImageEvents>(pEventSink->Object()));
  return Result;
}

void ImageProcessingCtl::EventSink(const std::shared_ptr<IImageEvents>& Value) {
  try {
    if (!pEventSink) pEventSink = iPlatform.CreateSinkHolder();
    pEventSink->Object(Value);
  } catch (...) {
    QDK_TRAILER(EventSink, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

}  // namespace kestrel
