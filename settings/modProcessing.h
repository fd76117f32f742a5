#pragma once

#include <memory>
#include <string>

#include "Options.h"
#include "imaging/contract/Colors.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/Platform.h"

/// State shared by all objects of the component within one process, more exactly within one apartment: a
/// thread and its platform. It is the only state outside of objects.
namespace kestrel::modProcessing {

/// Binds the calling thread to a platform. Call before anything else of the component on this thread. The
/// platform must outlive `Detach`.
void Attach(kestrel::Platform& platform);
/// Releases the shared objects and the platform.
void Detach();

/// Starts the component: diagnostics, then the keys of window positions and settings. Call once, after
/// `Attach`.
void Main();

/// Releases the shared settings and colors; the next caller gets new ones.
void KillShared();
/// The shared settings and the shared colors, created on first use.
std::shared_ptr<Options> GetOptions();
std::shared_ptr<Colors> GetColors();

/// Sets the caption of a window: the file's name (or "Untitled") and the application's. An empty `AppName`
/// means the application's title.
void SetWindowCaption(Form& form, std::string AppName, const std::string& Filename);

/// The platform of this apartment and its shared services. Raise 91 before `Attach`.
kestrel::Platform& Platform();
kestrel::RegistryStore& RegistryStore();
kestrel::WindowPositions& WindowPositions();
kestrel::FormUtility& FormUtility();
kestrel::FileHelpers& FileHelpers();
kestrel::WindowFunctions& WindowFunctions();
kestrel::FormSkin& FormSkin();

}  // namespace kestrel::modProcessing
