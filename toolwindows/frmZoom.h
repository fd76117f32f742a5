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
#include "imaging/contract/MouseTracker.h"

namespace kestrel {

/// The tool window that magnifies the picture around the pointer and marks the pixel in the middle.
class frmZoom final : public Object {
 public:
  frmZoom();
  ~frmZoom() override;

  std::string TypeName() const override { return "frmZoom"; }

  kestrel::Form& Form() { return *iForm; }

  /// Reads the checkerboard behind transparent pixels from the options. Raises the errors of drawing its
  /// tile.
  void ApplyOptions();
  void ClearZoomWindow();
  /// Shows the surroundings of a picture pixel. Does nothing while the window is hidden.
  void RedrawZoomWindowEx(const std::int32_t& X, const std::int32_t& Y);
  /// The same for the current pointer position in the view's own pixels.
  void RedrawZoomWindow();

  /// Screen pixels per picture pixel.
  std::int32_t ZoomLevel() const { return pZoomLevel; }
  void ZoomLevel(std::int32_t Value);
  /// The editor that the window belongs to; null for none.
  IImageProcessingCtl* Application() const { return pApplication; }
  void Application(IImageProcessingCtl* Value);

 private:
  void Form_Load();
  void Form_Unload();
  void ioeTracking_MouseHover();
  void ioeTracking_MouseLeave();

  std::string qdkDumpModuleVariables() const;

  CountedForm iForm;
  IImageProcessingCtl* pApplication = nullptr;
  std::int32_t pZoomLevel = 0;
  std::unique_ptr<MouseTracker> ioeTracking;

  std::vector<Connection> iConnections;
};

}  // namespace kestrel
