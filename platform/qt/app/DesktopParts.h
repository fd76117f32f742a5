#pragma once

#include <functional>
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
  /// Makes the message boxes of the program from those of the desktop; empty for the latter.
  std::function<std::unique_ptr<kestrel::UserInterface>(std::unique_ptr<kestrel::UserInterface>)> wrapBoxes;
  /// Contains one folder of pages per help book.
  std::string helpFolder;
};

}  // namespace kestrel::qt
