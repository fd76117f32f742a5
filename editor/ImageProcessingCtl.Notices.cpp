#include "ImageProcessingCtl.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Formats.h"
#include "imaging/modImgX.h"

// The strip above the picture: what there is to say about the latest save and about the picture's file. And
// the line in the empty view.

namespace kestrel {
namespace {

constexpr char kOpen[] = "btnFileOpen";
constexpr char kSaveAs[] = "btnFileSaveAs";
constexpr char kExport[] = "btnFileExport";

std::string Joined(const std::string& first, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + " " + second;
}

/// The notice for the picture's file; empty for an intact file with one page.
std::string FileNotice(const Image* Picture) {
  if (!Picture) return {};
  std::string Text = Picture->DecodeErrors();
  const std::int32_t Others = Picture->Pages() - 1;
  if (Others < 1) return Text;
  Text = Joined(Text, Picture->Format() == format::kGif
                          ? "The file is an animation of " + ToText(Picture->Pages()) + " frames"
                          : "The file has " + ToText(Picture->Pages()) + " pages");
  return Text + ", of which you see the first. Saving over it would lose the other" +
         (Others == 1 ? " one." : "s.");
}

/// Whether a name's extension is not one of the file's format. A name without extension promises nothing.
bool Misnames(const std::string& Extension, const FileFormat& Format) {
  return !Extension.empty() && !Format.HasExtension(LowerCase(Extension));
}

std::string FormatNotice(const std::string& Name, const FileFormat& Format, bool OffersExport) {
  return "\"" + Name + "\" holds " + std::string(Format.Name) + " data, since a picture keeps its format." +
         (OffersExport ? " To convert it, use Export." : "");
}

std::string AlphaNotice(const FileFormat& Format) {
  return std::string(Format.Name) +
         (Format.Alpha == KeptAlpha::kNone
              ? " files have no transparency: transparent parts are white in the file."
              : " files have no partial transparency: such pixels are mixed with "
                "white in the file, or fully transparent.");
}

}  // namespace

void ImageProcessingCtl::zShowFileNotice() {
  try {
    iFileNotice = FileNotice(igxImage.Image());
    iShowsFileNotice = !iFileNotice.empty();
    iRepeatNotice = iShowsFileNotice && Required(igxImage.Image()).Pages() > 1;
    zShowNotice();
  } catch (...) {
    QDK_TRAILER(zShowFileNotice, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// After each change: shows the notice of another picture's file, and repeats once that a save would lose
/// pages.
void ImageProcessingCtl::zUpdateFileNotice() {
  bool Another = false;
  try {
    Another = FileNotice(igxImage.Image()) != iFileNotice;
    if (!Another && !iRepeatNotice) return;
    zShowFileNotice();
    if (!Another) iRepeatNotice = false;
  } catch (...) {
    QDK_TRAILER(zUpdateFileNotice, QDK_PARAMETERS(), QDK_LOCALS(Another));
  }
}

/// After a save, or with `UpdateUserInterface` False after a copy: shows how the file differs from what its
/// name promises and from the picture. After a save the picture's file is the new one, which is intact and
/// has one page.
void ImageProcessingCtl::zShowSaved(const std::string& Filename, std::int32_t Format,
                                    bool UpdateUserInterface) {
  std::string Extension;
  try {
    zKeepClosedNotice();
    if (UpdateUserInterface) iShowsFileNotice = iRepeatNotice = false;
    FileHelpers& files = iPlatform.FileHelpers();
    Extension = files.GetExtension(Filename);
    iSaveNotice.clear();
    iSaveCommand = "";
    const FileFormat& Written = Required(FormatOf(Format));
    if (Misnames(Extension, Written)) {
      iSaveNotice = FormatNotice(files.GetFileName(Filename), Written, zOffers(kExport));
      iSaveCommand = kExport;
    }
    if (modImgX::LosesTransparency(Required(igxImage.Image()), Format)) {
      iSaveNotice = Joined(iSaveNotice, AlphaNotice(Written));
    }
    zShowNotice();
  } catch (...) {
    QDK_TRAILER(zShowSaved, QDK_PARAMETERS(Filename, Format, UpdateUserInterface), QDK_LOCALS(Extension));
  }
}

/// After a save that failed: offers another name until one succeeds. Nothing if the host saves the pictures.
void ImageProcessingCtl::zShowUnsaved(const std::string& Filename) {
  try {
    if (!zOffers(kSaveAs)) return;
    zKeepClosedNotice();
    iSaveNotice = "The picture is not saved: \"" + iPlatform.FileHelpers().GetFileName(Filename) +
                  "\" could not be written. Save it under another name or in another folder.";
    iSaveCommand = kSaveAs;
    zShowNotice();
  } catch (...) {
    QDK_TRAILER(zShowUnsaved, QDK_PARAMETERS(Filename), QDK_LOCALS());
  }
}

/// A notice that the user has closed, or the container has replaced, doesn't return with another one.
void ImageProcessingCtl::zKeepClosedNotice() {
  if (igxImage.Notice() != iNotice) iShowsFileNotice = false;
}

/// A notice of the container stays until there is one to show.
void ImageProcessingCtl::zShowNotice() {
  const bool IsOurs = igxImage.Notice() == iNotice;
  const bool LosesPages = iShowsFileNotice && Required(igxImage.Image()).Pages() > 1;
  iNoticeCommand = !iSaveNotice.empty() ? iSaveCommand : LosesPages ? kSaveAs : "";
  if (*iNoticeCommand != '\0' && !zOffers(iNoticeCommand)) iNoticeCommand = "";
  iNotice = Joined(iSaveNotice, iShowsFileNotice ? iFileNotice : "");
  if (iNotice.empty() && !IsOurs) return;
  igxImage.Notice(iNotice, *iNoticeCommand != '\0' ? Commands()(iNoticeCommand).Caption() : "");
}

void ImageProcessingCtl::igxImage_NoticeAction() {
  try {
    // The container may show notices of its own.
    if (igxImage.Notice() != iNotice || *iNoticeCommand == '\0') return;
    if (zOffers(iNoticeCommand)) mrgUI_CommandClick(Commands()(iNoticeCommand));
  } catch (...) {
    QDK_TRAILER(igxImage_NoticeAction, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// The line in the empty view names the ways to a first picture.
void ImageProcessingCtl::zUpdateHint() {
  bool Opens = false;
  try {
    Opens = iRuntime && zOffers(kOpen);
    igxImage.EmptyHint(!Opens                       ? ""
                       : UserControl.AcceptsFiles() ? "Open a picture, or drop one here."
                                                    : "Open a picture.");
  } catch (...) {
    QDK_TRAILER(zUpdateHint, QDK_PARAMETERS(), QDK_LOCALS(Opens));
  }
}

/// Whether the user can choose the command now.
bool ImageProcessingCtl::zOffers(const char* Name) {
  const Command& Wanted = Commands()(Name);
  return Wanted.Visible() && Wanted.Enabled();
}

}  // namespace kestrel
