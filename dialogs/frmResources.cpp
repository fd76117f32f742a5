#include "frmResources.h"

#include "diagnostics/Trailer.h"
#include "diagnostics/modTollgarthSupport.h"

namespace kestrel {

frmResources::frmResources(Platform& platform)
    : platform_(platform),
      form_(platform.CreateForm("frmResources")),
      chkThumbnail_(Bind<CheckBox>(*form_, "chkThumbnail")) {
  Form_Load();
}

frmResources::~frmResources() {
  modTollgarthSupport::qdkUncountInstance(modTollgarthSupport::Counted::kfrmResources);
}

void frmResources::Form_Load() {
  try {
    modTollgarthSupport::qdkCountInstance(modTollgarthSupport::Counted::kfrmResources);
    QDK_RESUME_NEXT(platform_.FormSkin().ApplyToForm(*form_, -1, -1));
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

}  // namespace kestrel
