#pragma once

#include <memory>

#include "TreeUser.h"
#include "platform/headless/Platform.h"

namespace kestrel::contract {

std::unique_ptr<TreeUser> headlessTreeUser(headless::Platform& platform);

}  // namespace kestrel::contract
