#include "FileTransfer.h"

#include "Work.h"

namespace kestrel::transfer {

Report carryOut(const Request& request, Caller& caller) { return Work(request, caller).run(); }

}  // namespace kestrel::transfer
