#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "SizeDialog.h"
#include "imaging/contract/controls/ColorPicker.h"

namespace kestrel {

/// Asks for the size of the canvas, the place of the old picture on it and the color of the new area, and
/// changes the canvas of the editor's picture.
class frmResizeCanvas final : public SizeDialog {
 public:
  /// The editor has a picture.
  explicit frmResizeCanvas(IImageProcessingCtl& source);

  std::string TypeName() const override { return "frmResizeCanvas"; }

 private:
  void Form_Load() override;
  void btnPlacement_Click(std::int32_t Index);
  void zCalcPosition();
  void txtField_Change(std::int32_t Index) override;
  void cmdAction_Click(std::int32_t Index) override;
  void StoreOptions();

  std::string qdkDumpModuleVariables() const override;

  /// 0 to 8, in reading order.
  std::int32_t iPlacement = 0;

  std::array<CommandButton*, 9> btnPlacement;
  ColorPicker& cpkColor;
};

}  // namespace kestrel
