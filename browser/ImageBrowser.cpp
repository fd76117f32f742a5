#include "ImageBrowser.h"

#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "settings/RootKey.h"
#include "settings/modProcessing.h"

namespace kestrel {

// The members pass errors on to the host.

ImageBrowser::ImageBrowser() : iCount(modTollgarthSupport::Counted::kImageBrowser) {
  modProcessing::RegistryStore().RootKey(kRootKey);
  modProcessing::RegistryStore().RootHive(HKEY_CURRENT_USER);
  pWindow = std::make_unique<frmImageBrowser>();
}

ImageBrowser::~ImageBrowser() { Terminate(); }

void ImageBrowser::Terminate() {
  if (!pWindow) return;
  pWindow->SafeToUnload = true;
  QDK_RESUME_NEXT(pWindow->Form().Unload());
  QDK_RESUME_NEXT(pWindow.reset());
}

std::string ImageBrowser::Path() const { return pWindow ? pWindow->Browser().Path() : std::string(); }

void ImageBrowser::Path(const std::string& Value) { zWindow().Browser().Path(Value); }

std::string ImageBrowser::Title() const { return pWindow ? pWindow->Title() : std::string(); }

void ImageBrowser::Title(const std::string& Value) { zWindow().Title(Value); }

bool ImageBrowser::Visible() const { return zWindow().Form().Visible(); }

void ImageBrowser::Show(bool Modal) { zWindow().Form().Show(Modal); }

frmImageBrowser& ImageBrowser::zWindow() const { return Required(pWindow); }

}  // namespace kestrel
