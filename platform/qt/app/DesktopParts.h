#pragma once

#include <memory>
#include <string>

#include "imaging/contract/ObjectFactory.h"
#include "imaging/contract/RegistryStore.h"
#include "imaging/contract/StackResolver.h"
#include "imaging/contract/UserInterface.h"
#include "platform/qt/services/ProgramVersion.h"

namespace kestrel::qt {

/// Components that the program provides to the desktop.
struct DesktopParts {
  ProgramVersion version;
  std::unique_ptr<kestrel::RegistryStore> store;
  std::unique_ptr<kestrel::ObjectFactory> objectFactory;
  std::unique_ptr<kestrel::StackResolver> stackResolver;
  /// The message boxes; null for those of the desktop.
  std::unique_ptr<kestrel::UserInterface> boxes;
  /// Contains one folder of pages per help book.
  std::string helpFolder;
};

}  // namespace kestrel::qt
