#include "ImageBrowser.h"

#include <utility>

#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "settings/RootKey.h"
#include "settings/modProcessing.h"

namespace kestrel {

// The members pass errors on to the host.

ImageBrowser::ImageBrowser() : iCount(modTollgarthSupport::Counted::kImageBrowser) {
  modProcessing::RegistryStore().RootKey(kRootKey);
  modProcessing::RegistryStore().RootHive(HKEY_CURRENT_USER);
  pWindow = std::make_shared<frmImageBrowser>();
}

ImageBrowser::~ImageBrowser() { Terminate(); }

void ImageBrowser::Terminate() {
  if (!pWindow) return;
  const auto window = std::exchange(pWindow, nullptr);
  window->End();
  QDK_RESUME_NEXT(modProcessing::Platform().Retire(window));
}

std::string ImageBrowser::Path() const { return pWindow ? pWindow->Browser().Path() : std::string(); }

void ImageBrowser::Path(const std::string& Value) { zWindow().Browser().Path(Value); }

std::string ImageBrowser::Title() const { return pWindow ? pWindow->Title() : std::string(); }

void ImageBrowser::Title(const std::string& Value) { zWindow().Title(Value); }

bool ImageBrowser::Visible() const { return zWindow().Form().Visible(); }

void ImageBrowser::Show(bool Modal) { zWindow().Form().Show(Modal); }

frmImageBrowser& ImageBrowser::zWindow() const { return Required(pWindow); }

}  // namespace kestrel
