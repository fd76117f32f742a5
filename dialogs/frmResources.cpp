#include "frmResources.h"

#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {

frmResources::frmResources()
    : form_("frmResources"),
      load_(form_->Load.Connect([this] { Form_Load(); })),
      chkThumbnail_(Bind<CheckBox>(*form_, "chkThumbnail")) {
  // The form is never shown, so it is loaded here.
  form_->Load();
}

void frmResources::Form_Load() {
  try {
    QDK_RESUME_NEXT(modProcessing::FormSkin().ApplyToForm(*form_, -1, -1));
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

}  // namespace kestrel
