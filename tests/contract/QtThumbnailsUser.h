#pragma once

#include <memory>

#include "ThumbnailsUser.h"
#include "platform/qt/site/SiteServices.h"

namespace kestrel::contract {

/// What the services refer to must live as long.
std::unique_ptr<ThumbnailsUser> qtThumbnailsUser(const qt::SiteServices& services);

}  // namespace kestrel::contract
