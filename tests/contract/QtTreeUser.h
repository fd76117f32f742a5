#pragma once

#include <memory>

#include "TreeUser.h"
#include "platform/qt/site/SiteServices.h"

namespace kestrel::contract {

/// What the services refer to must live as long.
std::unique_ptr<TreeUser> qtTreeUser(const qt::SiteServices& services);

}  // namespace kestrel::contract
