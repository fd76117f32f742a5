#pragma once

#include "Trailer.h"
#include "base/CallStack.h"
#include "modTollgarthSupport.h"

namespace kestrel::qdk {

/// The error that is being handled, as a trailer reports it. `caught` is the stack at the trailer: frame 0 is
/// the trailer's, frame 1 the procedure's.
modTollgarthSupport::CapturedError CurrentError(const Site& site, const CallStack& caught);

}  // namespace kestrel::qdk
