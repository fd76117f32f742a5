#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "PreviewDialog.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/Frame.h"
#include "imaging/contract/controls/Label.h"
#include "imaging/contract/controls/OptionButton.h"

namespace kestrel {

/// Asks for the size of a thumbnail, its shadow and its background, and shows it. The window is resizable and
/// its position is stored when it is unloaded.
///
/// `ResultData` has four fields joined by "|": shadow (0 or 1), `ThumbnailSizeTypeEnum`, the size as typed,
/// and the background color.
class frmGetThumnail final : public PreviewDialog {
 public:
  frmGetThumnail();
  ~frmGetThumnail() override;

  std::string TypeName() const override { return "frmGetThumnail"; }

 private:
  void Form_Load() override;
  void Form_FirstActivate() override;
  void Form_UnloadForGood() override;
  /// An error is not reported: it disables OK until a later change succeeds.
  void UpdatePreview() override;
  void FormHeader_OKClick();
  void FormHeader_CancelClick();
  void FormHeader_Resize(std::int32_t ClientLeft, std::int32_t ClientTop, std::int32_t ClientWidth,
                         std::int32_t ClientHeight);
  void optSizeType_Click(std::int32_t Index);
  void txtField_Change(std::int32_t Index);
  void txtField_GotFocus(std::int32_t Index);
  void chkAddDropShadow_Click();
  void cmdOptions_Click();
  void cpkColor_Change(std::int32_t Index, OLE_COLOR NewColor);
  void cpkColor_EnhancedButtonClicked(std::int32_t Index);
  /// Makes the picture of the pane that wide. If the result is too large for a preview, makes it smaller in
  /// the same proportions, and says so above the picture.
  void zResize(ImageView& Pane, std::int32_t Width);
  /// The index of the selected size type, in `optSizeType` and `txtField`.
  std::size_t zSizeType() const;
  /// Stores the settings. A size beyond 32 bits is raised after the settings before it have been stored.
  void zSaveAsDefault(std::size_t Type);
  std::string qdkDumpModuleVariables() const override;

  /// `Form_Load` is filling the boxes.
  bool mLoading = false;

  kestrel::FormHeader& FormHeader;
  Control& fraPreview;
  Frame& fraGeneral;
  std::array<OptionButton*, 2> optSizeType;
  std::array<TextBox*, 2> txtField;
  Frame& fraShadow;
  CheckBox& chkAddDropShadow;
  CommandButton& cmdOptions;
  Label& lblColor;
  std::array<ColorPicker*, 1> cpkColor;
  CheckBox& chkSaveAsDefault;
};

}  // namespace kestrel
