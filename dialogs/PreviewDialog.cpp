#include "PreviewDialog.h"

#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {

PreviewDialog::PreviewDialog(const char* formName, DialogButtons buttons)
    : DialogBase(formName, buttons),
      iPreview(Bind<Site>(Form(), "Preview")),
      chkUseOriginalImage(Bind<CheckBox>(Form(), "chkUseOriginalImage")) {
  Keep(chkUseOriginalImage.Click.Connect([this] { chkUseOriginalImage_Click(); }));
  Keep(iPreview.UseOriginalChange.Connect([this](const bool& use) { Preview_UseOriginalChange(use); }));
}

void PreviewDialog::ShowEffect(const std::function<void(ImageView&)>& operation) {
  modProcessing::FormUtility().SetPointer(kBusyArrowHourglass);
  iPreview.KeepScrollPosition(iPreview.PreviewPane(), [&] {
    iPreview.Reset();
    operation(iPreview.PreviewPane());
  });
  modProcessing::FormUtility().SetPointer(kBusyDefault);
}

void PreviewDialog::chkUseOriginalImage_Click() {
  try {
    iPreview.UseOriginal(chkUseOriginalImage.Value() == 1);
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER_OF(TypeName(), chkUseOriginalImage_Click, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void PreviewDialog::Preview_UseOriginalChange(const bool& UseOriginal) {
  try {
    chkUseOriginalImage.Value(UseOriginal ? 1 : 0);
  } catch (...) {
    QDK_TRAILER_OF(TypeName(), Preview_UseOriginalChange, QDK_PARAMETERS(UseOriginal), QDK_LOCALS());
  }
}

}  // namespace kestrel
