#include "frmFlattenAlpha.h"

#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {

frmFlattenAlpha::frmFlattenAlpha()
    : PreviewDialog("frmFlattenAlpha"), cpkColor(Bind<ColorPicker>(Form(), "cpkColor")) {
  Keep(cpkColor.Change.Connect([this](OLE_COLOR color) { cpkColor_Change(color); }));
}

void frmFlattenAlpha::Form_Load() {
  try {
    Form().ClearIcon();
    cpkColor.Value(Required(modProcessing::GetOptions()).FlattenAlphaColor());
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmFlattenAlpha::UpdatePreview() {
  try {
    if (!IsWindowVisible()) return;
    ShowEffect(
        [&](ImageView& image) { image.Alpha().Flatten(image.Colors().Create(cpkColor.Value(), 255)); });
  } catch (...) {
    QDK_TRAILER(UpdatePreview, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmFlattenAlpha::cpkColor_Change(OLE_COLOR NewColor) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cpkColor_Change, QDK_PARAMETERS(NewColor), QDK_LOCALS());
  }
}

void frmFlattenAlpha::cmdAction_Click(std::int32_t Index) {
  try {
    if (Index == kActionOK) {
      Required(modProcessing::GetOptions()).FlattenAlphaColor(cpkColor.Value());
      Success = true;
    }
    Unload();
  } catch (...) {
    QDK_TRAILER(cmdAction_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

std::string frmFlattenAlpha::qdkDumpModuleVariables() const {
  return QDK_FIELDS(Success, SafeToUnload, ResultData);
}

}  // namespace kestrel
