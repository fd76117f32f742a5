#pragma once

#include <memory>
#include <string>

#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"
#include "frmImageBrowser.h"

namespace kestrel {

/// The image browser in a window of its own, for a host. The user's closing the window hides it: the next
/// `Show` brings it back on the same folder.
///
/// After `Terminate` there is no window: `Path` and `Title` are empty then, and all other members raise
/// RuntimeError 91.
///
/// The host may end the object at any time, also while one of its windows is open: these close, and the
/// member that showed one returns as if the user had canceled it.
class ImageBrowser final : public Object {
 public:
  /// The thread must be attached to a platform (`modProcessing`).
  ImageBrowser();
  ~ImageBrowser() override;

  std::string TypeName() const override { return "ImageBrowser"; }

  /// Returns or sets the browse path
  std::string Path() const;
  void Path(const std::string& Value);
  /// Returns or sets the window caption
  std::string Title() const;
  void Title(const std::string& Value);
  bool Visible() const;

  /// Shows the window. Modal: returns when it is hidden; raises RuntimeError 400 if it is shown already.
  void Show(bool Modal = false);

  /// Destroys the window, as the destructor does. Further calls do nothing.
  void Terminate();

 private:
  frmImageBrowser& zWindow() const;

  InstanceCount iCount;
  std::shared_ptr<frmImageBrowser> pWindow;
};

}  // namespace kestrel
