#pragma once

#include <string>

namespace kestrel::app {

/// What `--version` prints, as "kestrel-editor 2.0.0".
std::string versionText(const std::string& program);

}  // namespace kestrel::app
