#pragma once

#include <functional>
#include <string>

namespace kestrel::qt {

/// Where an error goes that a handler of the logic lets out into the toolkit, which cannot carry it.
/// Without one (null) it is written to standard error, one line.
void setStrayErrorHandler(std::function<void(const std::string& description)> handler);

/// Runs what the toolkit calls back. No error leaves it: it goes to the stray-error handler instead, unless a
/// reporting object has taken it already.
void guarded(const std::function<void()>& work) noexcept;

}  // namespace kestrel::qt
