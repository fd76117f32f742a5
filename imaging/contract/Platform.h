#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "AppInfo.h"
#include "Canvas.h"
#include "Clipboard.h"
#include "Colors.h"
#include "DebugClient.h"
#include "FileHelpers.h"
#include "Form.h"
#include "FormSkin.h"
#include "FormUtility.h"
#include "HelpViewer.h"
#include "ImgX.h"
#include "ImgXDialog.h"
#include "MouseTracker.h"
#include "ObjectFactory.h"
#include "RegistryStore.h"
#include "Screen.h"
#include "Shell.h"
#include "SinkHolder.h"
#include "StackResolver.h"
#include "UserInterface.h"
#include "WindowFunctions.h"
#include "WindowPositions.h"
#include "base/OpenCalls.h"

namespace kestrel {

/// Factory of the services and objects that the logic needs. One per process; the objects returned by
/// reference live as long.
class Platform {
 public:
  virtual ~Platform() = default;

  // Objects owned by the caller.
  virtual std::shared_ptr<ImgX> CreateImgX() = 0;
  virtual std::shared_ptr<Colors> CreateColors() = 0;
  virtual std::unique_ptr<ImgXDialog> CreateImgXDialog() = 0;
  /// Raises RuntimeError 429 for a name that has no form.
  virtual std::unique_ptr<Form> CreateForm(const std::string& name) = 0;
  virtual std::unique_ptr<HelpViewer> CreateHelpViewer() = 0;
  virtual std::unique_ptr<SinkHolder> CreateSinkHolder() = 0;
  virtual std::unique_ptr<MouseTracker> CreateMouseTracker() = 0;
  virtual std::unique_ptr<Canvas> CreateCanvas(std::int32_t width, std::int32_t height) = 0;

  // Services, each one object for the whole process.
  virtual kestrel::FormUtility& FormUtility() = 0;
  virtual kestrel::FormSkin& FormSkin() = 0;
  virtual kestrel::WindowFunctions& WindowFunctions() = 0;
  virtual kestrel::WindowPositions& WindowPositions() = 0;
  virtual kestrel::RegistryStore& RegistryStore() = 0;
  virtual kestrel::FileHelpers& FileHelpers() = 0;
  virtual kestrel::UserInterface& UserInterface() = 0;
  virtual kestrel::Clipboard& Clipboard() = 0;
  virtual kestrel::Shell& Shell() = 0;
  virtual kestrel::Screen& Screen() = 0;
  virtual const kestrel::AppInfo& App() = 0;

  // Diagnostics.
  /// Null where no diagnostics client is installed.
  virtual std::unique_ptr<DebugClientLibrary> CreateDebugClientLibrary() = 0;
  virtual kestrel::ObjectFactory& ObjectFactory() = 0;
  virtual kestrel::StackResolver& StackResolver() = 0;

  /// The calls to hosts and users under way on this platform's thread.
  OpenCalls Calls;

  /// Destroys an object once no stack frame can use it: when all `Calls` have returned and control is back in
  /// the event loop. For objects that a host may end during one of their own calls; what the host can notice
  /// of them must have ended already. The platform's end destroys those that are left.
  virtual void Retire(std::shared_ptr<void> object) = 0;
};

}  // namespace kestrel
