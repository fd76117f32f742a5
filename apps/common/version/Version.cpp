#include "Version.h"

namespace kestrel::app {

std::string versionText(const std::string& program) {
  return program + " " + std::to_string(KESTREL_VERSION_MAJOR) + "." + std::to_string(KESTREL_VERSION_MINOR) +
         "." + std::to_string(KESTREL_VERSION_REVISION);
}

}  // namespace kestrel::app
