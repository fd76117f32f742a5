#pragma once

#include <memory>

#include "ThumbnailsUser.h"
#include "platform/headless/Platform.h"

namespace kestrel::contract {

/// The platform must live as long.
std::unique_ptr<ThumbnailsUser> headlessThumbnailsUser(headless::Platform& platform);

}  // namespace kestrel::contract
