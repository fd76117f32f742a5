#include "frmPasteSpecial.h"

#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr double kExactMatch = 0.0;

}  // namespace

frmPasteSpecial::frmPasteSpecial()
    : DialogBase("frmPasteSpecial"),
      Preview(Bind<Site>(Form(), "Preview")),
      cpkColor(Bind<ColorPicker>(Form(), "cpkColor")) {
  Keep(cpkColor.Change.Connect([this](OLE_COLOR color) { cpkColor_Change(color); }));
}

void frmPasteSpecial::Form_Load() {
  try {
    Form().ClearIcon();
    cpkColor.Value(Required(modProcessing::GetOptions()).PasteSpecialMaskColor());
    Preview.Original().Document().Paste();
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmPasteSpecial::UpdatePreview() {
  Colour from, to;
  try {
    if (!IsWindowVisible()) return;
    modProcessing::FormUtility().SetPointer(kBusyArrowHourglass);
    ImageView& image = Preview.PreviewPane();
    Preview.KeepScrollPosition(image, [&] {
      image.Document().CopyFrom(Required(Preview.Original().ImgX()), 0);
      from = image.Colors().Create(cpkColor.Value(), 255);
      to = image.Colors().Create(0, 0);
      image.Effects().ReplaceColor(from, to, kExactMatch, 0);
    });
    modProcessing::FormUtility().SetPointer(kBusyDefault);
  } catch (...) {
    QDK_TRAILER(UpdatePreview, QDK_PARAMETERS(), QDK_LOCALS(from, to));
  }
}

void frmPasteSpecial::cpkColor_Change(OLE_COLOR NewColor) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cpkColor_Change, QDK_PARAMETERS(NewColor), QDK_LOCALS());
  }
}

void frmPasteSpecial::cmdAction_Click(std::int32_t Index) {
  try {
    if (Index == kActionOK) {
      Required(modProcessing::GetOptions()).PasteSpecialMaskColor(cpkColor.Value());
      Success = true;
    }
    Unload();
  } catch (...) {
    QDK_TRAILER(cmdAction_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

std::string frmPasteSpecial::qdkDumpModuleVariables() const {
  return QDK_FIELDS(Success, SafeToUnload, ResultData);
}

}  // namespace kestrel
