#pragma once

#include <memory>
#include <string>

#include "imaging/contract/ObjectFactory.h"
#include "imaging/contract/RegistryStore.h"

namespace kestrel::posix {

/// Makes the reporting object from a shared library with the functions of BrindleError.h.
///
/// The library's absolute path is the environment variable KESTREL_ERROR_REPORTER or else, in the key store,
/// the text value "Library" of the user's key "Software\Classes\" followed by the object's identifier.
class SharedLibraryFactory : public ObjectFactory {
 public:
  explicit SharedLibraryFactory(RegistryStore& store) : store_(store) {}

  std::unique_ptr<ErrorReporter> CreateErrorReporter(const std::string& Identifier) override;

 private:
  std::string libraryOf(const std::string& identifier);

  RegistryStore& store_;
};

}  // namespace kestrel::posix
