#pragma once

#include <cstdint>
#include <string>

#include "DialogBase.h"
#include "editor/interface/IImageProcessingCtl.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ComboBox.h"

namespace kestrel {

/// Writes copies of the editor's picture to files, at full size or as thumbnails. The document is unchanged.
///
/// The dialog stays open after an export, so that more can follow, and the user leaves it by Cancel:
/// `Success` is True if at least one file was written. `ResultData` stays empty.
class frmExport final : public DialogBase {
 public:
  frmExport();

  std::string TypeName() const override { return "frmExport"; }

  /// The editor with the picture, not owned; set it before the dialog is shown.
  IImageProcessingCtl* Source = nullptr;

 private:
  void Form_Load() override;
  void cmdAction_Click(std::int32_t Index) override;
  void cmdBrowse_Click();
  void txtField_GotFocus();
  void zExport();
  std::string qdkDumpModuleVariables() const override;

  TextBox& txtField;
  CommandButton& cmdBrowse;
  ComboBox& cboFormat;
  CheckBox& chkThumbnail;
};

}  // namespace kestrel
