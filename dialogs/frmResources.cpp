#include "frmResources.h"

#include "diagnostics/Trailer.h"
#include "diagnostics/modTollgarthSupport.h"
#include "settings/modProcessing.h"

namespace kestrel {

frmResources::frmResources()
    : form_(modProcessing::Platform().CreateForm("frmResources")),
      chkThumbnail_(Bind<CheckBox>(*form_, "chkThumbnail")) {
  Form_Load();
}

frmResources::~frmResources() {
  modTollgarthSupport::qdkUncountInstance(modTollgarthSupport::Counted::kfrmResources);
}

void frmResources::Form_Load() {
  try {
    modTollgarthSupport::qdkCountInstance(modTollgarthSupport::Counted::kfrmResources);
    QDK_RESUME_NEXT(modProcessing::FormSkin().ApplyToForm(*form_, -1, -1));
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

}  // namespace kestrel
