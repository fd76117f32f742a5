#pragma once

#include <memory>
#include <utility>

#include "DesktopParts.h"
#include "RetiredObjects.h"
#include "imaging/contract/Platform.h"
#include "platform/qt/core/NeededTimer.h"
#include "platform/qt/files/QtFileHelpers.h"
#include "platform/qt/services/QtAppInfo.h"
#include "platform/qt/services/QtClipboard.h"
#include "platform/qt/services/QtClipboardPort.h"
#include "platform/qt/services/QtFormSkin.h"
#include "platform/qt/services/QtFormUtility.h"
#include "platform/qt/services/QtScreen.h"
#include "platform/qt/services/QtShell.h"
#include "platform/qt/services/QtWindowFunctions.h"
#include "platform/qt/site/SiteServices.h"
#include "platform/store/StoredPositions.h"

namespace kestrel::qt {

/// The desktop platform. The toolkit's application object must exist before it and outlive it.
class QtPlatform final : public Platform {
 public:
  explicit QtPlatform(DesktopParts parts);
  ~QtPlatform() override;

  /// For the controls on sites and forms.
  const SiteServices& siteServices() const { return siteServices_; }

  std::shared_ptr<ImgX> CreateImgX() override;
  std::shared_ptr<Colors> CreateColors() override;
  std::unique_ptr<ImgXDialog> CreateImgXDialog() override;
  std::unique_ptr<Form> CreateForm(const std::string& name) override;
  std::unique_ptr<HelpViewer> CreateHelpViewer() override;
  std::unique_ptr<SinkHolder> CreateSinkHolder() override;
  std::unique_ptr<MouseTracker> CreateMouseTracker() override;
  std::unique_ptr<Canvas> CreateCanvas(std::int32_t width, std::int32_t height) override;

  kestrel::FormUtility& FormUtility() override { return formUtility_; }
  kestrel::FormSkin& FormSkin() override { return formSkin_; }
  kestrel::WindowFunctions& WindowFunctions() override { return windowFunctions_; }
  kestrel::WindowPositions& WindowPositions() override { return windowPositions_; }
  kestrel::RegistryStore& RegistryStore() override { return *parts_.store; }
  kestrel::FileHelpers& FileHelpers() override { return fileHelpers_; }
  kestrel::UserInterface& UserInterface() override { return *boxes_; }
  kestrel::Clipboard& Clipboard() override { return clipboard_; }
  kestrel::Shell& Shell() override { return shell_; }
  kestrel::Screen& Screen() override { return screen_; }
  const kestrel::AppInfo& App() override { return appInfo_; }

  /// There is no diagnostics client for this desktop.
  std::unique_ptr<DebugClientLibrary> CreateDebugClientLibrary() override { return nullptr; }
  kestrel::ObjectFactory& ObjectFactory() override { return *parts_.objectFactory; }
  kestrel::StackResolver& StackResolver() override { return *parts_.stackResolver; }

  void Retire(std::shared_ptr<void> object) override { retired_.take(std::move(object)); }
  /// Destroys the retired objects at once. None of their members may be on the stack.
  void clearRetired() { retired_.clear(); }

 private:
  DesktopParts parts_;
  std::unique_ptr<kestrel::UserInterface> boxes_;
  QtAppInfo appInfo_;
  QtClipboardPort clipboardPort_;
  QtClipboard clipboard_;
  QtFormUtility formUtility_;
  QtFormSkin formSkin_;
  QtWindowFunctions windowFunctions_;
  store::StoredPositions windowPositions_;
  QtFileHelpers fileHelpers_;
  SiteServices siteServices_;
  QtShell shell_;
  QtScreen screen_;
  NeededTimer memoryRelease_;
  RetiredObjects retired_{Calls};  // last: they use the services
};

}  // namespace kestrel::qt
