#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "PreviewDialog.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/Label.h"

namespace kestrel {

/// Edits the shadow settings of the options. The caller reads them from there; `ResultData` stays empty.
class frmDropShadow final : public PreviewDialog {
 public:
  frmDropShadow();

  std::string TypeName() const override { return "frmDropShadow"; }

  /// Contoured mode: a mask color is made transparent first, so that the shadow follows the outline of the
  /// rest. Set it before the window loads.
  bool AllowMaskSelection = false;

 private:
  void Form_Load() override;
  void UpdatePreview() override;
  void cmdAction_Click(std::int32_t Index) override;
  void txtField_Change(std::int32_t Index);
  void txtField_GotFocus(std::int32_t Index);
  void cpkColor_Change(std::int32_t Index, OLE_COLOR NewColor);
  void cpkColor_EnhancedButtonClicked(std::int32_t Index);
  std::string qdkDumpModuleVariables() const override;

  std::array<TextBox*, 4> txtField;
  std::array<ColorPicker*, 2> cpkColor;
  Label& lblMask;
};

}  // namespace kestrel
