#pragma once

#include <memory>
#include <string>

#include "FormWindow.h"

namespace kestrel::qt {

/// The window built from the .ui file of that name; null if there is none.
std::unique_ptr<FormWindow> buildForm(const std::string& name);

}  // namespace kestrel::qt
