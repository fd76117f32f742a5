#include "ImageProcessingCtl.h"
#include "base/DescribedError.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Formats.h"
#include "imaging/modImgX.h"
#include "settings/StoredQuality.h"

namespace kestrel {
namespace {

constexpr std::int32_t kOpenFlags = kDialogPathMustExist | kDialogFileMustExist | kDialogHideReadOnly;
constexpr std::int32_t kSaveFlags = kDialogOverwritePrompt | kDialogHideReadOnly | kDialogPathMustExist;

// The check box's position below the file-type row, and the margin below it, in pixels.
constexpr std::int32_t kCheckBoxIndent = 3;
constexpr std::int32_t kCheckBoxDrop = 36;
constexpr std::int32_t kCheckBoxMargin = 3;

}  // namespace

bool ImageProcessingCtl::OpenImage(std::string Filename) {
  bool CancelDefault = false, Failed = false, Result = false;
  try {
    Cancel();
    if (Filename.empty()) {
      zRaise(RequestOpenFilename, Filename, CancelDefault);
      zNotifySink([&](IImageEvents& Sink) { Sink.RequestOpenFilename(Filename, CancelDefault); });
    }
    if (Filename.empty() && !CancelDefault) {
      iIsSave = false;
      ImgXDialog& dialog = Required(pDialog);
      dialog.Filter(kOpenFilter);
      dialog.Flags(kOpenFlags);
      if (zShowFileDialog(false)) Filename = dialog.Filename();
    }
    if (Filename.empty() || iRetired) {
      UnsavedChanges(ChangesStep::kStaying);
      return false;
    }

    Status("Opening image...", true, false);
    UnsavedChanges(ChangesStep::kReplacing);
    try {
      igxImage.Document().FromFile(Filename, 0, kNoUndo);
    } catch (...) {
      const DescribedError error = DescribeErrorToShow();
      zMessageBox("Unable to open image \"" + Filename + "\" due to error \"" + error.Description + "\".",
                  kBoxExclamation, "Open Image");
      Failed = true;
      UnsavedChanges(ChangesStep::kStaying);
    }
    if (!Failed) {
      ZoomActualSize();
      mFormat = modImgX::GetSaveFormatFromFilename(Filename, iPlatform.FileHelpers());
      pFilename = Filename;
      Required(pMRU).AddFile(pFilename);
      zPictureSet();
      Result = true;
      const std::string Opened = pFilename;
      zRaise(ImageOpen, Opened);
      zNotifySink([&](IImageEvents& Sink) { Sink.ImageOpen(Opened); });
    }
    Status("", true, false);
  } catch (...) {
    // After any failure, also in a host's handler, the busy phase ends.
    QDK_RESUME_NEXT(Status("", true, false));
    QDK_TRAILER(OpenImage, QDK_PARAMETERS(Filename), QDK_LOCALS(CancelDefault, Failed, Result));
  }
  return Result;
}

void ImageProcessingCtl::zPictureSet() {
  try {
    igxImage.UndoLevels(0);
    igxImage.UndoLevels(pUndoLevels);
    igxImage.Modified(false);
    // The host may also have removed the picture.
    SetControls(igxImage.Image() != nullptr);
    Changed(false);
    ResetSelection();
    iSaveNotice.clear();
    zShowFileNotice();
    zRaise(PictureSet);
  } catch (...) {
    QDK_TRAILER(zPictureSet, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

bool ImageProcessingCtl::Restore(kestrel::ImgX& Kept, const std::string& Filename) {
  bool Result = false;
  try {
    Cancel();
    igxImage.Document().CopyFrom(Kept, 0, kNoUndo);
    ZoomActualSize();
    mFormat = Filename.empty() ? format::kNone
                               : modImgX::GetSaveFormatFromFilename(Filename, iPlatform.FileHelpers());
    pFilename = Filename;
    zPictureSet();
    igxImage.Modified(true);
    Result = true;
    const std::string Opened = pFilename;
    zRaise(ImageOpen, Opened);
    zNotifySink([&](IImageEvents& Sink) { Sink.ImageOpen(Opened); });
    Changed(true);
  } catch (...) {
    QDK_TRAILER(Restore, QDK_PARAMETERS(Filename), QDK_LOCALS(Result));
  }
  return Result;
}

bool ImageProcessingCtl::SaveImage() {
  bool Result = false;
  try {
    Result = zSaveImage(pFilename, format::kNone, true);
  } catch (...) {
    QDK_TRAILER(SaveImage, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

bool ImageProcessingCtl::SaveImageAs(const std::string& Filename) {
  bool Result = false;
  try {
    Result = zSaveImage(Filename, format::kNone, true);
  } catch (...) {
    QDK_TRAILER(SaveImageAs, QDK_PARAMETERS(Filename), QDK_LOCALS(Result));
  }
  return Result;
}

bool ImageProcessingCtl::zSaveImage(std::string Filename, std::int32_t ForcedFormat,
                                    bool UpdateUserInterface) {
  std::int32_t Format = 0;
  bool CancelDefault = false, SaveThumbnail = false, Failed = false, Result = false;
  std::string Thumbnail;
  try {
    Format = Required(igxImage.Image()).Format();
    if (Filename.empty() || !modImgX::IsValidSaveFormat(Format)) {
      zRaise(RequestSaveFilename, Filename, CancelDefault);
      zNotifySink([&](IImageEvents& Sink) { Sink.RequestSaveFilename(Filename, CancelDefault); });
      if (Filename.empty() && !CancelDefault) {
        iIsSave = true;
        ImgXDialog& dialog = Required(pDialog);
        dialog.Filter(kSaveFilter);
        dialog.Flags(kSaveFlags);
        dialog.Filename(pFilename);
        // From now on typed names get no default extension, in later open dialogs too.
        dialog.DefaultExt("");
        if (zShowFileDialog(true)) {
          Filename = modImgX::FixDuplicateExtension(dialog.Filename());
          SaveThumbnail = iResources && iResources->chkThumbnail().Value() == 1;
        }
      }
    }
    if (Filename.empty() || iRetired) return false;

    Status("Saving image...", true, false);
    FileHelpers& files = iPlatform.FileHelpers();
    if (ForcedFormat != format::kNone) {
      Format = ForcedFormat;
    } else if (Format == format::kNone) {
      Format = modImgX::GetSaveFormatFromFilename(Filename, files);
    }

    QDK_RESUME_NEXT(igxImage.JPEGQuality(StoredJPEGQuality()));
    try {
      igxImage.Writer().ToFile(Filename, Format, 0, true);
    } catch (...) {
      const DescribedError error = DescribeErrorToShow();
      zMessageBox("Unable to save image \"" + Filename + "\" due to error \"" + error.Description + "\".",
                  kBoxExclamation, "Save Image");
      Failed = true;
      if (UpdateUserInterface) QDK_RESUME_NEXT(zShowUnsaved(Filename));
    }
    if (!Failed) {
      QDK_RESUME_NEXT(Thumbnail =
                          files.PathWithoutExtension(Filename) + "_thumb." + files.GetExtension(Filename, 0));
      QDK_RESUME_NEXT(if (SaveThumbnail || (iPlatform.FormUtility().FileExists(Thumbnail) &&
                                            Required(Options()).ThumbnailAutomaticUpdate()))
                          SaveImageThumbnail(Thumbnail));
      QDK_RESUME_NEXT(zShowSaved(Filename, Format, UpdateUserInterface));
      if (UpdateUserInterface) {
        QDK_RESUME_NEXT(igxImage.Modified(false));
        pFilename = Filename;
        QDK_RESUME_NEXT(mFormat = modImgX::GetSaveFormatFromFilename(Filename, files));
        QDK_RESUME_NEXT(Required(pMRU).AddFile(pFilename));
        Result = true;
        QDK_RESUME_NEXT(zRaise(ImageSave, std::string(pFilename)));
        QDK_RESUME_NEXT(zNotifySink([&](IImageEvents& Sink) { Sink.ImageSave(Filename); }));
      } else {
        // Only a copy was saved: the picture is still modified.
        QDK_RESUME_NEXT(igxImage.Modified(true));
      }
    }
    Status("", true, false);
  } catch (...) {
    QDK_RESUME_NEXT(Status("", true, false));
    QDK_TRAILER(zSaveImage, QDK_PARAMETERS(Filename, ForcedFormat, UpdateUserInterface),
                QDK_LOCALS(Format, CancelDefault, SaveThumbnail, Failed, Result, Thumbnail));
  }
  return Result;
}

bool ImageProcessingCtl::SaveChanges() {
  bool Result = false;
  std::string Name;
  std::int32_t Answer = 0;
  try {
    // The caller is about to replace or close the picture.
    Cancel();
    if (!igxImage.Modified()) return true;
    Name = pFilename.empty() ? "Untitled" : pFilename;
    Answer =
        zMessageBox("Changes have been made file \"" + Name + "\".\r\rDo you want to save these changes?",
                    kBoxYesNoCancel + kBoxQuestion, "Save Changes");
    if (Answer == kAnswerYes) Result = SaveImage();
    if (Answer == kAnswerNo) {
      Result = true;
      UnsavedChanges(ChangesStep::kDeclined);
    }
  } catch (...) {
    QDK_TRAILER(SaveChanges, QDK_PARAMETERS(), QDK_LOCALS(Result, Name, Answer));
  }
  return Result;
}

void ImageProcessingCtl::pDialog_InitDialog(std::int32_t& DialogWidth, std::int32_t& DialogHeight) {
  std::int32_t Left = 0, Top = 0, Width = 0, Height = 0;
  try {
    if (!iIsSave) return;
    if (!iResources) iResources = std::make_unique<frmResources>();
    CheckBox& chkThumbnail = iResources->chkThumbnail();
    chkThumbnail.Value(Required(Options()).ThumbnailAutoCheck() ? 1 : 0);
    pDialog->GetControlRect(kDialogFileTypeLabel, Left, Top, Width, Height);
    pDialog->MoveControl(chkThumbnail.hWnd(), Left + kCheckBoxIndent, Top + Height + kCheckBoxDrop);
    const double heightInPixels =
        static_cast<double>(chkThumbnail.Height()) / iPlatform.Screen().TwipsPerPixelY();
    DialogHeight = ToInt32(DialogHeight + heightInPixels + kCheckBoxMargin);
  } catch (...) {
    QDK_TRAILER(pDialog_InitDialog, QDK_PARAMETERS(DialogWidth, DialogHeight),
                QDK_LOCALS(Left, Top, Width, Height));
  }
}

}  // namespace kestrel
