#pragma once

#include <string>

#include "imaging/contract/Moorage.h"

namespace kestrel::app {

/// Runs the command of that dispatch key ("fileopen"). Raises RuntimeError 5 for an unknown or disabled
/// command.
void runCommand(Moorage& suite, const std::string& key);

}  // namespace kestrel::app
