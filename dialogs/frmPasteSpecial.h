#pragma once

#include <cstdint>
#include <string>

#include "DialogBase.h"
#include "Preview.h"
#include "imaging/contract/controls/ColorPicker.h"

namespace kestrel {

/// Shows the clipboard's picture and asks for the color that a paste makes transparent, which it stores in
/// the options. `ResultData` stays empty.
class frmPasteSpecial final : public DialogBase {
 public:
  frmPasteSpecial();

  std::string TypeName() const override { return "frmPasteSpecial"; }

 private:
  void Form_Load() override;
  void Form_FirstActivate() override { UpdatePreview(); }
  void UpdatePreview();
  void cmdAction_Click(std::int32_t Index) override;
  void cpkColor_Change(OLE_COLOR NewColor);
  std::string qdkDumpModuleVariables() const override;

  kestrel::Preview Preview;
  ColorPicker& cpkColor;
};

}  // namespace kestrel
