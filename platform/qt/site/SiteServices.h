#pragma once

#include "base/OpenCalls.h"
#include "imaging/contract/FileHelpers.h"

namespace kestrel::engine {
class ClipboardPort;
}

namespace kestrel::qt {

/// What the controls on a site or form use of the platform. All must outlive the controls.
struct SiteServices {
  engine::ClipboardPort& clipboard;  ///< pictures
  FileHelpers& files;
  OpenCalls& calls;
};

}  // namespace kestrel::qt
