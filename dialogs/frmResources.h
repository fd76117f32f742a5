#pragma once

#include <memory>

#include "imaging/contract/Form.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel {

/// A window that is never shown: it carries the check box that the save dialog borrows.
class frmResources {
 public:
  frmResources();
  ~frmResources();
  frmResources(const frmResources&) = delete;
  frmResources& operator=(const frmResources&) = delete;

  CheckBox& chkThumbnail() { return chkThumbnail_; }

 private:
  void Form_Load();

  std::unique_ptr<Form> form_;
  CheckBox& chkThumbnail_;
};

}  // namespace kestrel
