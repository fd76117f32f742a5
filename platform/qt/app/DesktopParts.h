#pragma once

#include <memory>
#include <string>

#include "imaging/contract/ObjectFactory.h"
#include "imaging/contract/RegistryStore.h"
#include "imaging/contract/StackResolver.h"
#include "imaging/contract/UserInterface.h"
#include "platform/qt/services/ProgramVersion.h"

namespace kestrel::qt {

/// What the desktop itself does not provide.
struct DesktopParts {
  ProgramVersion version;
  std::unique_ptr<kestrel::RegistryStore> store;
  std::unique_ptr<kestrel::ObjectFactory> objectFactory;
  std::unique_ptr<kestrel::StackResolver> stackResolver;
  /// The boxes that ask and tell; null for those of the desktop.
  std::unique_ptr<kestrel::UserInterface> boxes;
  /// Holds a folder of pages for each help book.
  std::string helpFolder;
};

}  // namespace kestrel::qt
