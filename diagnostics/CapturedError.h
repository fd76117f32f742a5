#pragma once

#include "Trailer.h"
#include "base/CallStack.h"
#include "modTollgarthSupport.h"

namespace kestrel::qdk {

/// The error that is being handled, as a trailer reports it. `caught` is the stack at the trailer: its first
/// frame is the trailer's own, the second that of the procedure.
modTollgarthSupport::CapturedError CurrentError(const Site& site, const CallStack& caught);

}  // namespace kestrel::qdk
