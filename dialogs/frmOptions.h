#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "DialogBase.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/Slider.h"
#include "imaging/contract/controls/TabStrip.h"

namespace kestrel {

/// Edits the settings of the background grid, the zoom, automatic thumbnails and JPEG compression, on three
/// pages. OK stores them without validation; `ResultData` stays empty.
class frmOptions final : public DialogBase {
 public:
  frmOptions();

  std::string TypeName() const override { return "frmOptions"; }

 private:
  void Form_Load() override;
  void cmdAction_Click(std::int32_t Index) override;
  /// The JPEG quality of the slider's position.
  std::int32_t zQuality() const;
  /// Shows the numbers of the sliders next to them.
  void zShowNumbers();
  /// Draws the sample of the grid.
  void UpdatePreview();
  void tabView_Click();
  void cboGridSize_Click();
  void cpkGrid_Change(std::int32_t Index, OLE_COLOR NewColor);
  void sldZoom_Change();
  void sldJPEGQuality_Change();
  void txtField_Change(std::int32_t Index);
  void txtField_GotFocus(std::int32_t Index);
  std::string qdkDumpModuleVariables() const override;

  TabStrip& tabView;
  ComboBox& cboGridSize;
  std::array<ColorPicker*, 2> cpkGrid;
  Frame& fraGrid;
  Slider& sldZoom;
  std::array<Label*, 2> lblValue;
  CheckBox& chkAddThumbnails;
  std::array<OptionButton*, 2> optSizeType;
  std::array<TextBox*, 2> txtField;
  CheckBox& chkDropShadow;
  CheckBox& chkAutomaticUpdate;
  std::array<ColorPicker*, 1> cpkColor;
  Slider& sldJPEGQuality;
};

}  // namespace kestrel
