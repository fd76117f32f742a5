#include "frmExport.h"

#include <memory>

#include "OptionsShadow.h"
#include "base/DescribedError.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/ImgX.h"
#include "imaging/contract/ImgXDialog.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr const char* kFilter =
    "All Supported Pictures (*.bmp;*.jpg;*.png;*.tif)|"
    "*.bmp;*.jpg;*.png;*.jpeg;*.tif;*.tiff;*.dib;*.rle|"
    "Windows Bitmap (*.bmp)|*.bmp;*.dib;*.rle|"
    "Joint Photographic Experts Group (*.jpg)|*.jpg;*.jpeg|"
    "Portable Network Graphics (*.png)|*.png|"
    "Tagged Image File (*.tif)|*.tif|"
    "All Files (*.*)|*.*";

/// The entry of `cboFormat` for a lower-case extension; "Bitmap" for any other.
std::int32_t FormatIndex(const std::string& extension) {
  if (extension == "tif" || extension == "tiff") return 3;
  if (extension == "png") return 2;
  if (extension == "jpg" || extension == "jpeg") return 1;
  return 0;
}

/// Makes the picture its thumbnail by the options: always with a shadow, and the size always a percentage.
void MakeThumbnail(ImgX& Image) {
  const auto shared = modProcessing::GetOptions();
  Options& Options = Required(shared);
  const std::int32_t newWidth = Floor(Required(Image.Image()).Width() / 100.0 * Options.ThumbnailSize());
  Image.Effects().Resize(newWidth, 0, kResampleDecimate);
  AddShadowOfOptions(Image);
  Image.Alpha().Flatten(Image.Colors().Create(Options.ThumbnailBackgroundColor(), 255));
}

}  // namespace

frmExport::frmExport()
    : DialogBase("frmExport"),
      txtField(Bind<TextBox>(Form(), "txtField")),
      cmdBrowse(Bind<CommandButton>(Form(), "cmdBrowse")),
      cboFormat(Bind<ComboBox>(Form(), "cboFormat")),
      chkThumbnail(Bind<CheckBox>(Form(), "chkThumbnail")) {
  Keep(txtField.GotFocus.Connect([this] { txtField_GotFocus(); }));
  Keep(cmdBrowse.Click.Connect([this] { cmdBrowse_Click(); }));
}

void frmExport::Form_Load() {
  try {
    Form().ClearIcon();
    cboFormat.ListIndex(0);
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmExport::cmdBrowse_Click() {
  std::string Extension;
  try {
    ImgXDialog& Dialog = Required(Required(Source).BrowseDialog());
    Dialog.Filter(kFilter);
    Dialog.Flags(kDialogOverwritePrompt + kDialogHideReadOnly + kDialogPathMustExist);
    Dialog.Filename(txtField.Text());
    if (!Dialog.ShowSave()) return;
    txtField.Text(Dialog.Filename());
    Extension = LowerCase(modProcessing::FileHelpers().GetExtension(Dialog.Filename(), 0));
    cboFormat.ListIndex(FormatIndex(Extension));
  } catch (...) {
    QDK_TRAILER(cmdBrowse_Click, QDK_PARAMETERS(), QDK_LOCALS(Extension));
  }
}

void frmExport::txtField_GotFocus() {
  try {
    modProcessing::FormUtility().SelectAllText(txtField);
  } catch (...) {
    QDK_TRAILER(txtField_GotFocus, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmExport::cmdAction_Click(std::int32_t Index) {
  try {
    if (Index == kActionCancel) return Unload();
    if (txtField.Text().empty()) {
      modProcessing::FormUtility().SetFocusTo(txtField);
      return Exclaim("Please enter the export filename.");
    }
    zExport();
  } catch (...) {
    QDK_TRAILER(cmdAction_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

/// Works on a copy of the whole picture, without regard to the selection. The format of the list counts, not
/// the extension of the name.
void frmExport::zExport() {
  const std::shared_ptr<ImgX> Image = modProcessing::Platform().CreateImgX();
  Image->Document().CopyFrom(*Required(Source).ImgX(), 0);
  if (chkThumbnail.Value() == 1) MakeThumbnail(*Image);
  try {
    Image->Writer().ToFile(txtField.Text(), cboFormat.ItemData(cboFormat.ListIndex()), 0, true);
  } catch (...) {
    const DescribedError error = DescribeErrorToShow();
    return Exclaim("Unable to export image \"" + txtField.Text() + "\" due to error \"" + error.Description +
                   "\".");
  }
  Success = true;
}

std::string frmExport::qdkDumpModuleVariables() const {
  return QDK_FIELDS(Success, SafeToUnload, ResultData, Source);
}

}  // namespace kestrel
