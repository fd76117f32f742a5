#pragma once

#include <memory>
#include <string>

#include "FormWindow.h"

namespace kestrel::qt {

/// The window of that name as its .ui file describes it; null for a name that has no form.
std::unique_ptr<FormWindow> buildForm(const std::string& name);

}  // namespace kestrel::qt
