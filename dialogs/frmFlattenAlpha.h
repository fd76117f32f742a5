#pragma once

#include <cstdint>
#include <string>

#include "PreviewDialog.h"
#include "imaging/contract/controls/ColorPicker.h"

namespace kestrel {

/// Asks for the color that replaces transparency, and stores it in the options. The caller reads it from
/// there; `ResultData` stays empty.
class frmFlattenAlpha final : public PreviewDialog {
 public:
  frmFlattenAlpha();

  std::string TypeName() const override { return "frmFlattenAlpha"; }

 private:
  void Form_Load() override;
  /// Leaves the right pane the plain copy until the user changes something.
  void Form_FirstActivate() override {}
  void UpdatePreview() override;
  void cmdAction_Click(std::int32_t Index) override;
  void cpkColor_Change(OLE_COLOR NewColor);
  std::string qdkDumpModuleVariables() const override;

  ColorPicker& cpkColor;
};

}  // namespace kestrel
