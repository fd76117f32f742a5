#pragma once

#include <memory>

namespace kestrel {
class Platform;
class RecoveryStore;
}  // namespace kestrel

namespace kestrel::qt {

struct SiteServices;

/// The component inside a host program. A host creates one on its main thread, after its application object
/// and before any editor, and keeps it until after the last editor. All Component objects share one state.
/// The desktop's platform and the shared services are created with the first component and end with the
/// host's application object. A component that outlives it serves the next application object.
class Component {
 public:
  Component();
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// For the controls on the sites of editors.
  const SiteServices& siteServices();
  Platform& platform();
  /// Null if the user has no place for it.
  RecoveryStore* recoveryStore();

 private:
  struct Inside;
  /// That of the present application object.
  Inside& inside();

  std::shared_ptr<Inside> inside_;
};

}  // namespace kestrel::qt
