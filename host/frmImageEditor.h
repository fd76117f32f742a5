#pragma once

#include <string>
#include <vector>

#include "base/Event.h"
#include "base/Object.h"
#include "diagnostics/CountedForm.h"
#include "editor/ImageProcessingCtl.h"
#include "imaging/contract/Form.h"

namespace kestrel {

/// A window that one image editor fills. Closing it only hides it and terminates the editor; the user is
/// asked about unsaved changes before.
class frmImageEditor final : public Object {
 public:
  /// Raises RuntimeError 429 or 730 if the window or one of its controls is missing.
  frmImageEditor();

  std::string TypeName() const override { return "frmImageEditor"; }

  /// While False, closing the window hides it.
  bool SafeToUnload = false;
  /// Each attempt to close the window, before it decides.
  Event<> QueryUnload;

  kestrel::Form& Form() { return *iForm; }
  IImageProcessingCtl& Processing() { return iProcessing; }

  /// Unloads the window and ends all its events. Its members may be on the stack: its owner then retires it
  /// (`Platform::Retire`).
  void End();

 private:
  void Form_Load();
  void Form_Activate();
  void Form_Resize();
  void Form_QueryUnload(bool& Cancel);
  void Processing_ExitRequest();
  bool zSaveChanges();
  void zSavePosition();

  std::string qdkDumpModuleVariables() const;

  CountedForm iForm;
  Site& iSite;
  ImageProcessingCtl iProcessing;
  bool iActivated = false;

  std::vector<Connection> iConnections;
};

}  // namespace kestrel
