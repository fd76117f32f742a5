#pragma once

#include "Trailer.h"
#include "base/CallStack.h"
#include "modTollgarthSupport.h"

namespace kestrel::qdk {

/// The error that is being handled, as a trailer reports it. `caught` is the stack at the trailer: its first
/// frame is the trailer's own, the second that of the procedure.
///
/// Errors of the standard library get the number that says the same of them, and, as they carry no stack,
/// the line of the trailer itself.
modTollgarthSupport::CapturedError CurrentError(const Site& site, const CallStack& caught);

/// The line of the procedure's statement under which the stack was recorded, or the trailer's where that
/// can't be told.
std::int32_t FailedLine(const Site& site, const CallStack& raised, const CallStack& caught);

}  // namespace kestrel::qdk
