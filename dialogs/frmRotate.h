#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "PreviewDialog.h"
#include "imaging/contract/controls/OptionButton.h"

namespace kestrel {

/// Asks for an angle and a direction. `ResultData` is the clockwise angle in whole degrees, as decimal text.
class frmRotate final : public PreviewDialog {
 public:
  frmRotate();

  std::string TypeName() const override { return "frmRotate"; }

 private:
  void Form_Load() override;
  void UpdatePreview() override;
  void cmdAction_Click(std::int32_t Index) override;
  void optDirection_Click(std::int32_t Index);
  void optDegree_Click(std::int32_t Index);
  void txtDegrees_Change();
  void txtDegrees_GotFocus();

  std::string qdkDumpModuleVariables() const override;

  /// As entered, before the direction is applied.
  std::int32_t Angle = 0;

  std::array<OptionButton*, 2> optDirection;
  std::array<OptionButton*, 4> optDegree;
  TextBox& txtDegrees;
};

}  // namespace kestrel
