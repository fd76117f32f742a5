#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "SizeDialog.h"
#include "imaging/contract/controls/ComboBox.h"

namespace kestrel {

/// Asks for a size in pixels or percent and a resampling method, and resizes the editor's picture.
class frmResize final : public SizeDialog {
 public:
  /// The editor has a picture.
  explicit frmResize(IImageProcessingCtl& source);

  std::string TypeName() const override { return "frmResize"; }

 private:
  void Form_Load() override;
  void txtField_Change(std::int32_t Index) override;
  void cmdAction_Click(std::int32_t Index) override;
  void cboScale_Click();
  bool IsPercent() const;
  /// Shows the unit of the new size next to its boxes.
  void ShowUnit();
  void StoreOptions();

  std::string qdkDumpModuleVariables() const override;

  ComboBox& cboScale;
  ComboBox& cboResample;
  std::array<Label*, 2> lblUnit;
};

}  // namespace kestrel
