#pragma once

#include <string>

#include "base/Event.h"

namespace kestrel {

/// The events of the image browser, in the order of its interface. A handler may destroy the browser.
class ImageBrowserCtlEvents {
 public:
  /// The browser shows another folder, which may have no pictures.
  Event<const std::string&> PathChange;
  /// The user asked to close the browser. It stays as it is; the host closes it.
  Event<> ExitRequest;
  /// The user chose a place that is no folder, such as the desktop.
  Event<> InvalidPathChange;

 protected:
  ~ImageBrowserCtlEvents() = default;
};

}  // namespace kestrel
