#pragma once

#include <sys/stat.h>

#include "platform/os/Entries.h"

namespace kestrel::os {

EntryFacts factsOf(const struct stat& status);

}  // namespace kestrel::os
