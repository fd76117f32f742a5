#pragma once

#include <string>
#include <vector>

#include "ImageBrowserCtl.h"
#include "base/Event.h"
#include "base/Object.h"
#include "diagnostics/CountedForm.h"
#include "imaging/contract/Form.h"

namespace kestrel {

/// A window that one image browser fills. Its caption follows the folder. Closing it only hides it.
class frmImageBrowser final : public Object {
 public:
  /// Raises RuntimeError 429 or 730 if the window or one of its controls is missing.
  frmImageBrowser();
  ~frmImageBrowser() override;

  std::string TypeName() const override { return "frmImageBrowser"; }

  /// While False, closing the window hides it and stores its position.
  bool SafeToUnload = false;

  kestrel::Form& Form() { return *iForm; }
  IImageBrowserCtl& Browser() { return iBrowser; }

  /// Unloads the window and ends all its events. Its members may be on the stack: its owner then retires it
  /// (`Platform::Retire`).
  void End();

  /// The part of the caption that stays.
  const std::string& Title() const { return pTitle; }
  void Title(const std::string& Value);

 private:
  void Form_Load();
  void Form_Activate();
  void Form_Resize();
  void Form_QueryUnload(bool& Cancel);
  void Browser_PathChange();
  void Browser_InvalidPathChange();
  void Browser_ExitRequest();
  void zSetCaption();
  void zSavePosition();
  void zLoadDivider();
  void zSaveDivider();

  std::string qdkDumpModuleVariables() const;

  CountedForm iForm;
  Site& iSite;
  ImageBrowserCtl iBrowser;
  std::string pTitle;
  bool iActivated = false;

  std::vector<Connection> iConnections;
};

}  // namespace kestrel
