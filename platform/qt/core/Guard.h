#pragma once

#include <functional>
#include <string>

namespace kestrel::qt {

/// Sets the handler of errors that a handler of the logic throws into the toolkit, which cannot propagate
/// them. Without one (null) they are written to standard error, one line each.
void setStrayErrorHandler(std::function<void(const std::string& description)> handler);

/// Runs a callback of the toolkit. Errors do not leave it: they go to the stray-error handler, unless a
/// reporting object has taken them.
void guarded(const std::function<void()>& work) noexcept;

}  // namespace kestrel::qt
