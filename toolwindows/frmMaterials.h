#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/Event.h"
#include "base/Object.h"
#include "diagnostics/CountedForm.h"
#include "editor/interface/IImageProcessingCtl.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/MouseTracker.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/Label.h"

namespace kestrel {

/// The tool window of the two material colors, which also shows the color under the pointer. It mirrors the
/// editor's colors.
class frmMaterials final : public Object {
 public:
  frmMaterials();
  ~frmMaterials() override;

  std::string TypeName() const override { return "frmMaterials"; }

  kestrel::Form& Form() { return *iForm; }

  /// The editor that the window belongs to; null for none.
  IImageProcessingCtl* Application() const { return pApplication; }
  void Application(IImageProcessingCtl* Value);

 private:
  void Form_Load();
  void Form_Resize();
  void Form_Unload();
  void btnColors_Click(std::int32_t Index);
  void cpkMaterials_Change(OLE_COLOR NewColor);
  void cpkMaterials_EnhancedButtonClicked();
  void ImageControl_MouseMove(std::int32_t Button, std::int32_t Shift, float X, float Y);
  void ImageControl_MouseMovePixel(std::int32_t Button, std::int32_t Shift, std::int32_t PixelX,
                                   std::int32_t PixelY);
  void ImageControl_Changed();
  void ioeTracking_MouseHover();
  void ioeTracking_MouseLeave();
  void Processing_ForeColorChange(OLE_COLOR Color);
  void Processing_BackColorChange(OLE_COLOR Color);

  std::string qdkDumpModuleVariables() const;

  CountedForm iForm;
  IImageProcessingCtl* pApplication = nullptr;
  IImageProcessingCtl* Processing = nullptr;
  ImageView* ImageControl = nullptr;
  std::unique_ptr<MouseTracker> ioeTracking;
  std::int16_t iIndex = 0;

  CommandButton* btnColors[2];
  ColorPicker& cpkMaterials;
  CommandButton& btnPixel;
  Label* lblData[3];

  std::vector<Connection> iControls;
  std::vector<Connection> iEditor;
};

}  // namespace kestrel
