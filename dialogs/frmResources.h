#pragma once

#include "base/Event.h"
#include "diagnostics/CountedForm.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel {

/// A window that is never shown: the container of the check box that the save dialog borrows.
class frmResources {
 public:
  frmResources();
  frmResources(const frmResources&) = delete;
  frmResources& operator=(const frmResources&) = delete;

  CheckBox& chkThumbnail() { return chkThumbnail_; }

 private:
  void Form_Load();

  CountedForm form_;
  Connection load_;
  CheckBox& chkThumbnail_;
};

}  // namespace kestrel
