#pragma once

#include <memory>
#include <string>

#include "Options.h"
#include "imaging/contract/Colors.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/Platform.h"

/// What all objects of the component share within one process, or more exactly within one apartment: a thread
/// and the platform it was given. It is the one place with state of its own outside of objects.
namespace kestrel::modProcessing {

/// Binds the calling thread to a platform, before anything else of the component is used on it. The platform
/// must outlive `Detach`.
void Attach(kestrel::Platform& platform);
/// Releases the shared objects and the platform.
void Detach();

/// The component's start: diagnostics, then the keys of window positions and settings. Run once, after
/// `Attach`.
void Main();

/// Releases the shared settings and colors; who asks next gets new ones.
void KillShared();
/// The shared settings and the shared colors, made on first use.
std::shared_ptr<Options> GetOptions();
std::shared_ptr<Colors> GetColors();

/// Sets the caption of a window: the file's name (or "Untitled") and the application's, which is the
/// application's title where `AppName` is empty.
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
